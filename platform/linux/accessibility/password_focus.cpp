#include "platform/linux/accessibility/password_focus.h"

#include <QDBusArgument>
#include <chrono>

namespace hopsel {

namespace {

const bus_call::Object registry{"org.a11y.atspi.Registry", "/org/a11y/atspi/registry"};
constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";
constexpr uint passwordTextRole = 40;
constexpr uint focusedBit = 1U << 12U; ///< in the first of the state's words

/// Qt needed 0.11 s to say that its field had lost the focus; GTK announces one before the field says yes.
constexpr std::chrono::milliseconds untilNoticed{250};

bool saysFocused(const QVariant& states) {
    if (!states.canConvert<QDBusArgument>()) return false;
    const auto argument = states.value<QDBusArgument>();
    return argument.currentSignature() == "au" &&
           (qdbus_cast<QList<uint>>(argument).value(0) & focusedBit) != 0;
}

} // namespace

PasswordFocus::PasswordFocus(const QDBusConnection& bus) : bus_(bus) {
    bus_.connect(QString(), QString(), "org.a11y.atspi.Event.Object", "StateChanged", {"focused"}, QString(),
                 this, SLOT(stateChanged(QDBusMessage)));
    bus_.connect(QString(), QString(), "org.a11y.atspi.Event.Window", "Deactivate", this, SLOT(check()));
    programs_.setConnection(bus_);
    programs_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&programs_, &QDBusServiceWatcher::serviceUnregistered, this, [this] { forget(); });
    checking_.setSingleShot(true);
    checking_.callOnTimeout(this, [this] { askState(); });
    auto* registries =
        new QDBusServiceWatcher(registry.service, bus_, QDBusServiceWatcher::WatchForRegistration, this);
    connect(registries, &QDBusServiceWatcher::serviceRegistered, this, &PasswordFocus::registerEvents);
    registerEvents();
}

void PasswordFocus::registerEvents() {
    for (const char* event : {"object:state-changed:focused", "window:deactivate"}) {
        QDBusMessage call = bus_call::method(registry, "org.a11y.atspi.Registry", "RegisterEvent",
                                             {event, QStringList(), QString()});
        // The registry alone may be started: else the first program does it, whose first focus goes unheard.
        call.setAutoStartService(true);
        bus_.send(call);
    }
}

void PasswordFocus::stateChanged(const QDBusMessage& event) {
    const QVariant gained = event.arguments().value(1);
    if (gained.typeId() != QMetaType::Int) return;
    const bus_call::Object object{event.service(), event.path()};
    if (gained.toInt() != 1) {
        if (object == focused_) forget();
        return;
    }
    if (object == focused_ && isPassword_) return; // GTK says it twice
    forget();
    focused_ = object;
    programs_.setWatchedServices({object.service});
    bus_call::ask(bus_, bus_call::method(object, accessibleInterface, "GetRole"), this,
                  [this, turn = turn_](const QVariant& role) {
                      if (turn == turn_)
                          isPassword_ = role.typeId() == QMetaType::UInt && role.toUInt() == passwordTextRole;
                  });
}

void PasswordFocus::check() {
    if (isPassword_) checking_.start(untilNoticed);
}

void PasswordFocus::askState() {
    bus_call::ask(bus_, bus_call::method(focused_, accessibleInterface, "GetState"), this,
                  [this, turn = turn_](const QVariant& states) {
                      if (turn == turn_ && !saysFocused(states)) forget();
                  });
}

void PasswordFocus::forget() {
    ++turn_;
    isPassword_ = false;
    focused_ = {};
    checking_.stop();
    programs_.setWatchedServices({});
}

} // namespace hopsel
