// The new mail into which the user pastes a report, and the name of a saved one. Pure.
#pragma once

#include "core/base/product.h"

#include <string>

namespace hopsel::bug_report_mail {

inline constexpr std::string_view recipient = product::supportAddress;

/// A "mailto:" URL with subject and body. The report is not in it: mail programs limit the length.
/// `pasteKeys`: with which it is pasted here.
std::string composeURL(std::string_view appVersion, std::string_view pasteKeys = "⌘V");

/// `date`: local time as "20261116-104223".
std::string suggestedFileName(std::string_view date);

} // namespace hopsel::bug_report_mail
