// The daemon of an input method, on a connection of the benchmark's own: which method it says is current from
// now on, and its own call to switch, with nothing around it.
//
// IBus tells everybody. Fcitx5 tells the text field alone, so this listens in, which the bus of
// session/private_bus.h lets everybody do. Needs a Qt application; destroy it before the daemon's bus.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <chrono>
#include <memory>
#include <optional>

namespace hopsel::bench {

class MethodWatch final : public QObject {
    Q_OBJECT

  public:
    /// Each throws `std::runtime_error` when it cannot listen.
    static std::unique_ptr<MethodWatch> ofIbus();
    static std::unique_ptr<MethodWatch> ofFcitx();
    ~MethodWatch() override;

    /// As the daemon calls it; empty until it has told.
    const QString& current() const { return current_; }
    /// Runs the event loop until that method is current; the time at which this was heard, in
    /// `monotonicSeconds()`. Nothing at the deadline.
    std::optional<double> waitFor(const QString& method, std::chrono::milliseconds timeout);
    /// Asks for the method and does not wait.
    void select(const QString& method);

  private:
    MethodWatch(const QString& address, QDBusMessage selection);
    void listen(const QString& interface, const QString& signal);
    Q_SLOT void hear(const QDBusMessage& signal);

    QDBusConnection bus_;
    QDBusMessage selection_; ///< the call, without the method
    QString current_;
    double heardAt_ = 0;
};

} // namespace hopsel::bench
