// What other programs tell as names, made fit to be stored and shown. Stateless.
//
// A layout's name may come from any program of the session. Whatever it holds, what is made of it here is
// short, one line and valid UTF-8.
#pragma once

#include <QString>
#include <cstddef>
#include <string>
#include <vector>

namespace hopsel::told_text {

/// More sources than anybody switches between; what is told beyond that is left out.
inline constexpr std::size_t maxSources = 64;

/// On one line, with nothing unprintable, cut after 64 characters.
std::string plain(const QString& told);

/// Appends "#2", "#3" and so on to those that are there before. Empty ones stay as they are.
std::vector<std::string> distinct(std::vector<std::string> ids);

} // namespace hopsel::told_text
