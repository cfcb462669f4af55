// What macOS asks of the process while it starts. Made by `main`, which tells it how far the start has come.
#pragma once

#include <string>
#include <vector>

namespace hopsel {

class MacosLaunch {
  public:
    MacosLaunch();
    /// The application object has just been made.
    void applicationMade();
    /// Everything runs, or nothing ever will.
    void finished() {}

    /// Most wanted first.
    static std::vector<std::string> preferredLanguages();
};

} // namespace hopsel
