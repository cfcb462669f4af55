#include "platform/linux/accessibility/password_focus.h"

#include <QDBusArgument>
#include <chrono>

namespace hopsel {

namespace {

const bus_call::Object registryObject{"org.a11y.atspi.Registry", "/org/a11y/atspi/registry"};
constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";
constexpr uint passwordTextRole = 40;
constexpr uint focusedBit = 1U << 12U; ///< in the first of the state's words

/// Qt needed 0.11 s to say that its field had lost the focus; GTK announces one before the field says yes.
constexpr std::chrono::milliseconds untilNoticed{250};

bool saysFocused(const QDBusMessage& reply) {
    if (!bus_call::isReply(reply, "au")) return false;
    const QVariant states = reply.arguments().constFirst();
    return (qdbus_cast<QList<uint>>(states.value<QDBusArgument>()).value(0) & focusedBit) != 0;
}

} // namespace

PasswordFocus::PasswordFocus(std::shared_ptr<BusLink> bus)
    : bus_(std::move(bus)),
      // From every program: each tells of its own fields. Versions add arguments at the end.
      changes_(bus_, {"", "", "org.a11y.atspi.Event.Object", "StateChanged", "sii*", "focused"},
               [this](const QDBusMessage& event) { stateChanged(event); }),
      deactivations_(bus_, {"", "", "org.a11y.atspi.Event.Window", "Deactivate", "*", ""},
                     [this](const QDBusMessage&) { check(); }),
      registry_(bus_, registryObject.service, [this] {
          if (registry_.isOwned()) registerEvents();
      }) {
    checking_.setSingleShot(true);
    checking_.callOnTimeout(&context_, [this] { askState(); });
    registerEvents();
}

void PasswordFocus::registerEvents() {
    for (const char* event : {"object:state-changed:focused", "window:deactivate"}) {
        QDBusMessage call = bus_call::method(registryObject, "org.a11y.atspi.Registry", "RegisterEvent",
                                             {event, QStringList(), QString()});
        // The registry alone may be started: else the first program does it, whose first focus goes unheard.
        call.setAutoStartService(true);
        bus_->send(call);
    }
}

void PasswordFocus::stateChanged(const QDBusMessage& event) {
    const bool isGained = event.arguments().at(1).toInt() == 1;
    const bus_call::Object object{event.service(), event.path()};
    if (!isGained) {
        if (object == focused_) forget();
        return;
    }
    if (object == focused_ && isPassword_) return; // GTK says it twice
    forget();
    focused_ = object;
    program_ = std::make_unique<BusName>(bus_, object.service, [this] {
        if (!program_->isOwned()) forget();
    });
    bus_->call(bus_call::method(object, accessibleInterface, "GetRole"), &context_,
               [this, turn = turn_](const QDBusMessage& reply) {
                   if (turn == turn_) isPassword_ = bus_call::numberIn(reply) == passwordTextRole;
               });
}

void PasswordFocus::check() {
    if (isPassword_) checking_.start(untilNoticed);
}

void PasswordFocus::askState() {
    constexpr std::chrono::seconds patience(2);
    bus_->call(
        bus_call::method(focused_, accessibleInterface, "GetState"), &context_,
        [this, turn = turn_](const QDBusMessage& reply) {
            if (turn == turn_ && !saysFocused(reply)) forget();
        },
        patience);
}

void PasswordFocus::forget() {
    ++turn_;
    isPassword_ = false;
    focused_ = {};
    checking_.stop();
    program_.reset();
}

} // namespace hopsel
