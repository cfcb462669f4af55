// Hyprland, played at its two sockets, as its public description has them.
//
// A test owns one; XDG_RUNTIME_DIR and HYPRLAND_INSTANCE_SIGNATURE name it while it lives.
#pragma once

#include "session/temporary_folder.h"
#include "support/qt_waiting.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QPointer>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>

namespace hopsel::test {

class PlayedHyprland {
  public:
    PlayedHyprland() {
        const auto place = folder_.path() / "hypr" / "played";
        std::filesystem::create_directories(place);
        setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1);
        setenv("HYPRLAND_INSTANCE_SIGNATURE", "played", 1);
        EXPECT_TRUE(requests_.listen(QString::fromStdString((place / ".socket.sock").string())));
        EXPECT_TRUE(events_.listen(QString::fromStdString((place / ".socket2.sock").string())));
        QObject::connect(&events_, &QLocalServer::newConnection, &events_,
                         [this] { listener_ = events_.nextPendingConnection(); });
        QObject::connect(&requests_, &QLocalServer::newConnection, &requests_, [this] {
            QLocalSocket* one = requests_.nextPendingConnection();
            QObject::connect(one, &QLocalSocket::readyRead, one, [this, one] { answer(*one); });
        });
    }
    ~PlayedHyprland() {
        for (const char* variable : {"XDG_RUNTIME_DIR", "HYPRLAND_INSTANCE_SIGNATURE"}) unsetenv(variable);
    }
    PlayedHyprland(const PlayedHyprland&) = delete;
    PlayedHyprland& operator=(const PlayedHyprland&) = delete;

    void tell(const QByteArray& line) const {
        if (listener_ != nullptr) listener_->write(line);
    }
    void hangUp() const {
        if (listener_ != nullptr) listener_->abort();
    }
    bool isHeard() const {
        return runLoopUntil(
            [this] { return listener_ && listener_->state() == QLocalSocket::ConnectedState; });
    }

    std::map<QByteArray, QByteArray> answers; ///< by request; "ok" to all others
    std::vector<QByteArray> commands;         ///< those others

  private:
    void answer(QLocalSocket& one) {
        const QByteArray request = one.readAll();
        const auto found = answers.find(request);
        if (found == answers.end()) commands.push_back(request);
        one.write(found != answers.end() ? found->second : "ok");
        one.flush();
        one.disconnectFromServer();
    }

    session::TemporaryFolder folder_;
    QLocalServer requests_;
    QLocalServer events_;
    QPointer<QLocalSocket> listener_;
};

} // namespace hopsel::test
