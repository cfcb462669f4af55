// Whatever happens on the keyboard and around it, in whatever order: the engine keeps its invariants.
#include "core/engine/engine_stream.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace hopsel;
    if (size == 0) return 0;
    const StreamKind kind = data[0] % 2 == 0 ? StreamKind::honest : StreamKind::wild;
    try {
        runEngineStream({data + 1, size - 1}, kind);
    } catch (const std::logic_error& broken) {
        std::fprintf(stderr, "%s\n", broken.what());
        std::abort();
    }
    return 0;
}
