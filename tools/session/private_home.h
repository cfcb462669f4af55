// A home folder of a test's own, and the environment variables that lead to it.
//
// For the rest of the process HOME and the XDG folders name it, or the next one made; the folders themselves
// go with this object. Whatever finds an input method by the environment finds none but the test's.
#pragma once

#include "session/temporary_folder.h"

namespace hopsel::session {

class PrivateHome {
  public:
    PrivateHome();

    /// What $XDG_CONFIG_HOME names.
    std::filesystem::path configuration() const { return folder_.path() / "config"; }
    /// Writes a file beneath it, and returns its full path.
    std::filesystem::path configure(const std::filesystem::path& name, std::string_view text) const {
        return folder_.write("config" / name, text);
    }

  private:
    TemporaryFolder folder_;
};

} // namespace hopsel::session
