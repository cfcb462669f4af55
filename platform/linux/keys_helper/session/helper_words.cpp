#include "platform/linux/keys_helper/session/helper_words.h"

#include <algorithm>

namespace hopsel::helper_words {

namespace {

/// The name comes from a device and ends in a terminal.
std::string quoted(std::string name) {
    std::replace_if(name.begin(), name.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; }, '?');
    return "\"" + name + "\"";
}

} // namespace

std::string notInstalled() {
    return "on Wayland keys are heard through the key helper hopsel-keys, which is not installed";
}

std::string notEnabled() {
    return std::string("on Wayland keys are heard through the key helper, which is not turned on: ") +
           enableCommand;
}

std::string doesNotAnswer() {
    return "the key helper's service does not answer: systemctl status hopsel-keys.socket "
           "hopsel-keys.service";
}

std::string cannotStart(const std::string& program) {
    return "the key helper " + program + " does not start";
}

std::string otherVersion(int version) {
    return "the key helper that runs is of another version (" + std::to_string(version) + ", not " +
           std::to_string(helperProtocolVersion) + "): sudo systemctl stop hopsel-keys.service";
}

std::string gone() { return "the key helper has ended"; }

std::string of(const to_session::Trouble& trouble) {
    using Kind = to_session::Trouble::Kind;
    switch (trouble.kind) {
    case Kind::lateAnswers: return "three keys had to wait too long for this program";
    case Kind::inactive: return "the key helper says that another session is in front at this computer";
    case Kind::busy: return "another copy of the program has the key helper";
    case Kind::heldElsewhere:
        return "another program holds the keyboard " + quoted(trouble.keyboard) +
               ", so that no combination can be swallowed there";
    case Kind::noMirror:
        return "the key helper may not make the virtual keyboard that filtering needs (/dev/uinput)";
    }
    return {};
}

std::string unreadable(const to_session::State& state) {
    if (state.unreadable == 0) return {};
    const int all = state.keyboards + state.unreadable;
    return std::to_string(state.unreadable) + " of " + std::to_string(all) +
           (all == 1 ? " keyboard" : " keyboards") + " cannot be read";
}

} // namespace hopsel::helper_words
