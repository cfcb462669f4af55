// Why the key helper does not help, in words for the user, with what mends it. Stateless.
#pragma once

#include "platform/linux/keys_helper/protocol/helper_messages.h"

#include <string>

namespace hopsel::helper_words {

/// The one command that lets the system's service manager listen for us.
inline constexpr const char* enableCommand = "sudo systemctl enable --now hopsel-keys.socket";

std::string notInstalled();
std::string notEnabled();
std::string doesNotAnswer();
std::string cannotStart(const std::string& program);
std::string otherVersion(int version);
std::string gone();

std::string of(const to_session::Trouble& trouble);
/// Empty if every keyboard can be read.
std::string unreadable(const to_session::State& state);

} // namespace hopsel::helper_words
