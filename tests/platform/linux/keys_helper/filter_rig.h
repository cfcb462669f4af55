// A key filter whose keyboards are written as words: "rctrl+ a+ a* a- rctrl-". What comes out is words as
// well: what the desktop gets, and what the session is told.
//
// A test owns one. Each keyboard types one frame a word, a millisecond apart.
#pragma once

#include "platform/linux/keys_helper/filter/key_filter.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace hopsel {

class FilterRig final : public KeyFilter::Output {
  public:
    /// Keyboards 1 and 2, both through their mirrors.
    FilterRig();

    void type(std::string_view words, KeyboardId keyboard = 1);
    /// Combinations as the settings file writes them.
    void declare(std::initializer_list<std::string_view> combinations);
    /// To the question that waits.
    void answer(bool swallow) { filter.answer(filter.asked().value_or(0), swallow); }

    /// What has come since the last call.
    std::string desktop(KeyboardId keyboard = 1);
    std::string told();

    KeyFilter filter;

  private:
    void forward(KeyboardId keyboard, const std::vector<DeviceEvent>& events) override;
    void tell(const to_session::Message& message) override;

    std::map<KeyboardId, std::string> desktop_;
    std::string told_;
    std::uint64_t microseconds_ = 0;
};

} // namespace hopsel
