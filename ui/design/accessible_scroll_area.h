// How screen readers are told of pages that scroll.
//
// Takes the place of the toolkit's own description, which looks into the list of a page's parts without a
// look at its length: a screen reader that asks for a scroll bar which has just disappeared would end the
// program.
#pragma once

namespace hopsel::design {

/// After the application object was made, and before its first window.
void describeScrollAreasSafely();

} // namespace hopsel::design
