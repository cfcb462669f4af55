// A key helper that is played by the test, at the place of the service's socket.
//
// Owned by a test, in its own temporary folder; the toolkit's loop runs while something is waited for.
#pragma once

#include "platform/linux/keys_helper/protocol/helper_wire.h"

#include <QTemporaryDir>
#include <optional>
#include <string>
#include <vector>

namespace hopsel {

class PlayedHelper {
  public:
    PlayedHelper();
    ~PlayedHelper();
    PlayedHelper(const PlayedHelper&) = delete;
    PlayedHelper& operator=(const PlayedHelper&) = delete;

    std::string path() const { return folder_.filePath("keys.sock").toStdString(); }
    /// Somebody has connected and said hello.
    bool isCalled();
    void tell(const std::vector<to_session::Message>& messages) const;
    /// As a helper does that has one keyboard.
    bool greet();
    /// The next that is said to it; nothing if nothing comes.
    std::optional<to_helper::Message> next();
    /// The combinations of the next declaration, in the words of the settings file.
    std::optional<std::vector<std::string>> declared();
    void hangUp();

  private:
    QTemporaryDir folder_;
    int listening_ = -1;
    int socket_ = -1;
};

} // namespace hopsel
