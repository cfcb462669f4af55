// Whether the object that has the focus is a password field, by what programs tell on the accessibility bus.
//
// Owned by AtspiSecureInput, one for each connection. Programs differ in what they tell: GTK 3 says when a
// field loses the focus, also to another program's window; Qt 6.4 only when another of its own fields gets
// it. So a field that is believed to have the focus is asked again from time to time.
#pragma once

#include "platform/linux/bus/bus_call.h"
#include "platform/linux/bus/bus_name.h"

namespace hopsel {

class PasswordFocus final {
  public:
    explicit PasswordFocus(std::shared_ptr<BusLink> bus);

    bool isPassword() const { return isPassword_; }
    /// Asks the field, in a moment, whether it still has the focus: programs take their time to notice that
    /// another window came to the front. An answer that is not plainly yes is no.
    void check();

  private:
    void registerEvents();
    void stateChanged(const QDBusMessage& event);
    void askState();
    void forget();

    std::shared_ptr<BusLink> bus_;
    QTimer checking_;
    bus_call::Object focused_;
    unsigned turn_ = 0; ///< answers of an earlier turn come too late
    bool isPassword_ = false;
    BusSubscription changes_;
    BusSubscription deactivations_;
    BusName registry_;
    std::unique_ptr<BusName> program_; ///< the one whose field has the focus
    QObject context_;                  ///< answers end with it
};

} // namespace hopsel
