// What the fakes tell each other.
#pragma once

namespace hopsel::macos_fakes {

void resetPreferences();

} // namespace hopsel::macos_fakes
