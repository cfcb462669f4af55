// A daemon in IBus's place that answers as the test says: on a private bus of its own, with the name on the
// session's bus held by the test.
#pragma once

#include "session/private_bus.h"
#include "support/played_object.h"

namespace hopsel::test {

/// A description as the daemon sends it.
struct FakeEngine {
    QString id, name, language, layout, variant;
};

class FakeIbus final : public session::PrivateBus, public PlayedObject {
  public:
    /// From here on $IBUS_ADDRESS names it. It answers nothing yet.
    FakeIbus();
    ~FakeIbus() override { unsetenv("IBUS_ADDRESS"); }

    /// A daemon as it should be, with these engines and the first of them current.
    void behave(const QList<FakeEngine>& engines);
    /// Makes the engine that is asked for current.
    Answer obeying();
    static QVariant variant(const FakeEngine& engine);
    static QVariantList variants(const QList<FakeEngine>& engines);
};

} // namespace hopsel::test
