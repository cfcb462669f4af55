// Whether the object that has the focus is a password field, by what programs tell on the accessibility bus.
//
// Owned by AtspiSecureInput, one for each connection. Programs differ in what they tell: GTK 3 says when a
// field loses the focus, also to another program's window; Qt 6.4 only when another of its own fields gets
// it. So a field that is believed to have the focus is asked again from time to time.
#pragma once

#include "platform/linux/bus/bus_call.h"

#include <QDBusServiceWatcher>
#include <QTimer>

namespace hopsel {

class PasswordFocus final : public QObject {
    Q_OBJECT

  public:
    explicit PasswordFocus(const QDBusConnection& bus);

    bool isPassword() const { return isPassword_; }

  public Q_SLOTS:
    /// Asks the field, in a moment, whether it still has the focus: programs take their time to notice that
    /// another window came to the front. An answer that is not plainly yes is no.
    void check();

  private Q_SLOTS:
    void registerEvents();
    void stateChanged(const QDBusMessage& event);

  private:
    void askState();
    void forget();

    QDBusConnection bus_;
    QDBusServiceWatcher programs_; ///< watches the one whose field has the focus
    QTimer checking_;
    bus_call::Object focused_;
    unsigned turn_ = 0; ///< answers of an earlier turn come too late
    bool isPassword_ = false;
};

} // namespace hopsel
