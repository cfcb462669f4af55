// One function object out of several lambdas, for `std::visit` over a variant.
#pragma once

namespace hopsel {

template <class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

} // namespace hopsel
