// How screen readers are told of the application: its name, and its windows.
//
// Takes the place of the toolkit's own description, whose list of windows is read without a look at its end:
// a screen reader that asks for a window which has just closed would end the program. Main thread.
#pragma once

namespace hopsel {

/// After the application object was made, and before its first window.
void describeApplicationToScreenReaders();

} // namespace hopsel
