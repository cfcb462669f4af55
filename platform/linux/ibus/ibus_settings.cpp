#include "platform/linux/ibus/ibus_settings.h"

#include "platform/linux/ibus/ibus_engine.h"

#include <utility>

namespace hopsel {

IbusSettings::IbusSettings(std::shared_ptr<BusLink> sessionBus, std::function<void()> onChanged)
    : onChanged_(std::move(onChanged)),
      values_(stored()),
      // From whomever it comes: it is only the reason to read.
      changes_(std::move(sessionBus),
               {"", "/ca/desrt/dconf/Writer/user", "ca.desrt.dconf.Writer", "Notify", "sass", ""},
               [this](const QDBusMessage&) { read(); }) {}

void IbusSettings::read() {
    Values now = stored();
    if (now == values_) return;
    values_ = std::move(now);
    onChanged_();
}

IbusSettings::Values IbusSettings::stored() {
    using Texts = std::vector<std::string>;
    Values values;
    for (const std::string& told : general_.texts("preload-engines").value_or(Texts())) {
        const QString id = QString::fromStdString(told);
        const auto count = static_cast<std::size_t>(values.engines.size());
        if (ibus_engine::isUsableID(id) && count < ibus_engine::maxEngines && !values.engines.contains(id))
            values.engines << id;
    }
    for (const std::string& told : general_.texts("xkb-latin-layouts").value_or(Texts()))
        values.layoutsWithoutLatin.push_back(ibus_engine::layout(QString::fromStdString(told)));
    values.keepsSystemLayout = general_.flag("use-system-keyboard-layout");
    values.runsXmodmap = general_.flag("use-xmodmap");
    return values;
}

} // namespace hopsel
