#include "platform/linux/desktops/hyprland_ipc.h"

#include <QString>
#include <QTimer>
#include <chrono>
#include <utility>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 5000ms;

/// Empty where there is none.
QString socketPath(const char* name) {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString instance = qEnvironmentVariable("HYPRLAND_INSTANCE_SIGNATURE");
    if (runtime.isEmpty() || instance.isEmpty() || instance.contains('/')) return {};
    return runtime + "/hypr/" + instance + "/" + name;
}

} // namespace

HyprlandIpc::HyprlandIpc() {
    events_.setReadBufferSize(longestLine);
    QObject::connect(&events_, &QLocalSocket::connected, &events_, [this] { onOpened(); });
    QObject::connect(&events_, &QLocalSocket::disconnected, &events_, [this] {
        ++connection_;
        onClosed();
    });
    QObject::connect(&events_, &QLocalSocket::readyRead, &events_, [this] { read(); });
}

// The socket would tell of its own end, to whoever is ending too.
HyprlandIpc::~HyprlandIpc() {
    QObject::disconnect(&events_, nullptr, &events_, nullptr);
    ++connection_;
}

void HyprlandIpc::open() {
    const QString path = socketPath(".socket2.sock");
    if (!path.isEmpty() && events_.state() == QLocalSocket::UnconnectedState)
        events_.connectToServer(path, QIODevice::ReadOnly);
}

void HyprlandIpc::close() { events_.abort(); }

void HyprlandIpc::read() {
    while (events_.canReadLine()) {
        const QByteArray line = events_.readLine(longestLine).trimmed();
        const qsizetype end = line.indexOf(">>");
        if (end > 0) onEvent(line.first(end), line.sliced(end + 2));
    }
    if (events_.bytesAvailable() >= longestLine) close();
}

void HyprlandIpc::ask(const QByteArray& request, std::function<void(const QByteArray& answer)> onAnswer) {
    if (!isOpen()) return;
    auto* question = new QLocalSocket(&questions_); // the parent owns it
    question->setReadBufferSize(longestAnswer);
    const auto end = [this, question, connection = connection_,
                      onAnswer = std::move(onAnswer)](bool isWhole) {
        QObject::disconnect(question, nullptr, question, nullptr);
        question->deleteLater();
        if (connection == connection_) onAnswer(isWhole ? question->readAll() : QByteArray());
    };
    QObject::connect(question, &QLocalSocket::connected, question,
                     [question, request] { question->write(request); });
    QObject::connect(question, &QLocalSocket::disconnected, question, [end] { end(true); });
    QObject::connect(question, &QLocalSocket::errorOccurred, question,
                     [end](QLocalSocket::LocalSocketError error) {
                         if (error != QLocalSocket::PeerClosedError) end(false);
                     });
    QObject::connect(question, &QLocalSocket::readyRead, question, [question, end] {
        if (question->bytesAvailable() >= longestAnswer) end(false);
    });
    QTimer::singleShot(patience, question, [end] { end(false); });
    question->connectToServer(socketPath(".socket.sock"));
}

} // namespace hopsel
