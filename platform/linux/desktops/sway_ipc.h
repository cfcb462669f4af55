// A connection to sway: its messages, out and in.
//
// A member of the framework that talks to it; needs the event loop. A message is "i3-ipc", the length and
// the type of the payload as 32-bit numbers in the machine's order, and the payload. What breaks these rules,
// or is longer than any answer of sway, ends the connection.
#pragma once

#include <QByteArray>
#include <QLocalSocket>
#include <functional>

namespace hopsel {

class SwayIpc {
  public:
    static constexpr quint32 runCommand = 0, subscribe = 2, getTree = 4, getInputs = 100;
    static constexpr quint32 workspaceEvent = 0x80000000, windowEvent = 0x80000003, inputEvent = 0x80000015;
    static constexpr quint32 maxPayload = 1 << 20;

    SwayIpc();
    ~SwayIpc();
    SwayIpc(const SwayIpc&) = delete;
    SwayIpc& operator=(const SwayIpc&) = delete;

    /// Nothing happens while there is a connection, or one is on its way.
    void open(const QString& path);
    /// As if sway had closed it.
    void close();
    bool isOpen() const { return socket_.state() == QLocalSocket::ConnectedState; }
    void send(quint32 type, const QByteArray& payload = {});

    std::function<void()> onOpened;
    std::function<void()> onClosed;
    std::function<void(quint32 type, const QByteArray& payload)> onMessage;

  private:
    void read();

    QLocalSocket socket_;
};

} // namespace hopsel
