// Whether the process may have as many files open as it will need.
//
// Asked once, at the start: what is short of a descriptor later fails here and there, and a program that
// hears no key for want of one looks as if it worked.
#pragma once

namespace hopsel::posix {

/// Raises the process's own limit as far as needed and allowed. Throws `std::runtime_error`, in words for the
/// user, if so many more files cannot be opened.
void requireOpenFiles(int count);

} // namespace hopsel::posix
