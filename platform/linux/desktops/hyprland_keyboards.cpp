#include "platform/linux/desktops/hyprland_keyboards.h"

#include "platform/linux/base/told_text.h"
#include "platform/linux/desktops/layout_names.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <algorithm>
#include <functional>
#include <string_view>
#include <utility>

namespace hopsel::hyprland_keyboards {

namespace {

/// More keyboards than anybody has; what is told beyond that is left out.
constexpr std::size_t maxKeyboards = 32;

// It is part of a command, and a keyboard may call itself anything.
bool isSafe(const std::string& name) {
    constexpr std::string_view safe =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_:.-+/()@";
    return !name.empty() && name.find_first_not_of(safe) == std::string::npos;
}

std::string idOf(const XkbLayout& layout) {
    if (layout.layout.empty()) return {};
    return "hyprland:" + layout.layout + (layout.variant.empty() ? "" : "(" + layout.variant + ")");
}

std::optional<HyprlandKeyboard> keyboardFrom(const QJsonObject& told) {
    HyprlandKeyboard keyboard;
    keyboard.name = told["name"].toString().toStdString();
    if (!isSafe(keyboard.name) || !told["layout"].isString()) return std::nullopt;
    const QStringList layouts = told["layout"].toString().split(',');
    const QStringList variants = told["variant"].toString().split(',');
    for (qsizetype i = 0; i < layouts.size() && i < qsizetype{told_text::maxSources}; ++i) {
        keyboard.layouts.push_back(
            {told_text::plain(layouts[i].trimmed()), told_text::plain(variants.value(i).trimmed())});
        keyboard.ids.push_back(idOf(keyboard.layouts.back()));
    }
    keyboard.ids = told_text::distinct(std::move(keyboard.ids));
    keyboard.activeName = told_text::plain(told["active_keymap"].toString());
    keyboard.isMain = told["main"].toBool();
    const int index = told["active_layout_index"].toInt(-1); // later versions tell it
    keyboard.active = index >= 0 && static_cast<std::size_t>(index) < keyboard.ids.size()
                          ? std::optional(static_cast<std::size_t>(index))
                          : positionOf(keyboard, keyboard.activeName);
    return keyboard;
}

} // namespace

std::optional<std::vector<HyprlandKeyboard>> parse(const QByteArray& devices) {
    const QJsonDocument document = QJsonDocument::fromJson(devices);
    if (!document["keyboards"].isArray()) return std::nullopt;
    std::vector<HyprlandKeyboard> keyboards;
    for (const QJsonValue told : document["keyboards"].toArray()) {
        if (keyboards.size() == maxKeyboards) break;
        if (auto keyboard = keyboardFrom(told.toObject())) keyboards.push_back(*std::move(keyboard));
    }
    // Power buttons and the like have a single layout.
    const auto hasSeveral = [](const HyprlandKeyboard& keyboard) { return keyboard.ids.size() > 1; };
    if (std::any_of(keyboards.begin(), keyboards.end(), hasSeveral))
        keyboards.erase(std::remove_if(keyboards.begin(), keyboards.end(), std::not_fn(hasSeveral)),
                        keyboards.end());
    std::stable_partition(keyboards.begin(), keyboards.end(),
                          [](const HyprlandKeyboard& keyboard) { return keyboard.isMain; });
    return keyboards;
}

std::optional<std::size_t> positionOf(const HyprlandKeyboard& keyboard, const std::string& activeName) {
    if (keyboard.layouts.size() == 1) return 0;
    const auto layout = layout_names::layoutsOf({activeName}).front();
    if (!layout) return std::nullopt;
    const auto found = std::find(keyboard.layouts.begin(), keyboard.layouts.end(), *layout);
    if (found == keyboard.layouts.end() || std::count(found, keyboard.layouts.end(), *layout) > 1)
        return std::nullopt;
    return static_cast<std::size_t>(std::distance(keyboard.layouts.begin(), found));
}

std::vector<QByteArray> switchCommands(const std::vector<HyprlandKeyboard>& keyboards,
                                       const std::string& id) {
    std::vector<QByteArray> commands;
    for (const HyprlandKeyboard& keyboard : keyboards) {
        const auto found = std::find(keyboard.ids.begin(), keyboard.ids.end(), id);
        if (found == keyboard.ids.end()) continue;
        const auto position = std::distance(keyboard.ids.begin(), found);
        commands.push_back(
            QByteArray::fromStdString("switchxkblayout " + keyboard.name + " " + std::to_string(position)));
    }
    return commands;
}

} // namespace hopsel::hyprland_keyboards
