// A connection to Hyprland: its stream of events, and questions, each of which has a socket of its own.
//
// A member of who talks to it; needs the event loop. Written from Hyprland's public description of its
// sockets
// ("socket" answers one request and closes, "socket2" has a line for each event: name, ">>", data). Where
// they are follows from $XDG_RUNTIME_DIR and $HYPRLAND_INSTANCE_SIGNATURE. What is longer than any answer of
// it should be ends the connection.
#pragma once

#include <QByteArray>
#include <QLocalSocket>
#include <QObject>
#include <functional>

namespace hopsel {

class HyprlandIpc {
  public:
    static constexpr qint64 longestLine = 64 << 10;
    static constexpr qint64 longestAnswer = 1 << 20;

    HyprlandIpc();
    ~HyprlandIpc();
    HyprlandIpc(const HyprlandIpc&) = delete;
    HyprlandIpc& operator=(const HyprlandIpc&) = delete;

    /// Nothing happens while there is a connection, one is on its way, or the environment names none.
    void open();
    void close();
    bool isOpen() const { return events_.state() == QLocalSocket::ConnectedState; }

    /// `onAnswer` gets the whole answer, or an empty one after five seconds or a failure, while this lives
    /// and the stream of events is open; answers come in any order.
    void ask(const QByteArray& request, std::function<void(const QByteArray& answer)> onAnswer);

    std::function<void()> onOpened;
    std::function<void()> onClosed;
    std::function<void(const QByteArray& name, const QByteArray& data)> onEvent;

  private:
    void read();

    QLocalSocket events_;
    unsigned connection_ = 0; ///< answers count for the one that they were asked in
    QObject questions_;       ///< owns the sockets of those that are open
};

} // namespace hopsel
