#include "core/platform/linux/ibus/ibus_settings.h"

#include "core/platform/linux/ibus/ibus_engine.h"

#include <string_view>
#include <utility>

namespace hopsel {

namespace {

using Value = StoredSettings::Owned<GVariant>;

template <class Take>
void forEachString(const Value& list, Take take) {
    const gsize count = list ? g_variant_n_children(list.get()) : 0;
    for (gsize i = 0; i < count; ++i) {
        const Value item(g_variant_get_child_value(list.get(), i));
        take(QString::fromUtf8(g_variant_get_string(item.get(), nullptr)));
    }
}

} // namespace

IbusSettings::IbusSettings(const QDBusConnection& sessionBus, std::function<void()> onChanged)
    : bus_(sessionBus), onChanged_(std::move(onChanged)), values_(stored()) {
    bus_.connect(QString(), "/ca/desrt/dconf/Writer/user", "ca.desrt.dconf.Writer", "Notify", this,
                 SLOT(noteChange()));
}

void IbusSettings::read() {
    Values now = stored();
    if (now == values_) return;
    values_ = std::move(now);
    onChanged_();
}

IbusSettings::Values IbusSettings::stored() {
    Values values;
    forEachString(general_.value("preload-engines", G_VARIANT_TYPE_STRING_ARRAY), [&](const QString& id) {
        const auto count = static_cast<std::size_t>(values.engines.size());
        if (ibus_engine::isUsableID(id) && count < ibus_engine::maxEngines && !values.engines.contains(id))
            values.engines << id;
    });
    forEachString(general_.value("xkb-latin-layouts", G_VARIANT_TYPE_STRING_ARRAY), [&](const QString& told) {
        values.layoutsWithoutLatin.push_back(ibus_engine::layout(told));
    });
    const Value keeps = general_.value("use-system-keyboard-layout", G_VARIANT_TYPE_BOOLEAN);
    values.keepsSystemLayout = keeps && g_variant_get_boolean(keeps.get()) != FALSE;
    const Value mode = hangul_.value("initial-input-mode", G_VARIANT_TYPE_STRING);
    const Value hasNoLatin = hangul_.value("disable-latin-mode", G_VARIANT_TYPE_BOOLEAN);
    const bool startsInHangul =
        mode && std::string_view(g_variant_get_string(mode.get(), nullptr)) == "hangul";
    values.hangulStartsInLatin =
        !startsInHangul && (!hasNoLatin || g_variant_get_boolean(hasNoLatin.get()) == FALSE);
    return values;
}

} // namespace hopsel
