// What JSON's grammar allows and no program can hold: half of a surrogate pair, a number beyond every
// floating point number. The parser refuses a whole document over one of them, even in a member that nobody
// reads; a file with a stranger's note in it would count as broken.
#pragma once

#include <string>
#include <string_view>

namespace hopsel::json_representable {

/// Stands for half a surrogate pair. No character, so nobody means it; UTF-8, in the bytes of `\uffff`.
inline constexpr std::string_view noCharacter = "\xEF\xBF\xBF";

/// The text with `\uffff` for each half of a pair and 0.5, which is no integer, for each number without
/// bounds. As long as before, byte for byte in its place, so that positions in error messages stay true. What
/// is no JSON stays none.
std::string replacing(std::string_view text);

} // namespace hopsel::json_representable
