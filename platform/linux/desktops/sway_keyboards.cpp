#include "platform/linux/desktops/sway_keyboards.h"

#include "platform/linux/base/told_text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>
#include <string_view>

namespace hopsel {

std::optional<SwayKeyboard> SwayKeyboard::from(const QJsonObject& input) {
    if (input["type"].toString() != u"keyboard" || !input["xkb_layout_names"].isArray()) return std::nullopt;
    SwayKeyboard keyboard;
    keyboard.identifier = input["identifier"].toString().toStdString();
    for (const QJsonValue name : input["xkb_layout_names"].toArray()) {
        if (keyboard.names.size() == told_text::maxSources) break;
        keyboard.names.push_back(told_text::plain(name.toString()));
        keyboard.ids.push_back(keyboard.names.back().empty() ? "" : "sway:" + keyboard.names.back());
    }
    keyboard.ids = told_text::distinct(std::move(keyboard.ids));
    const int active = input["xkb_active_layout_index"].toInt(-1);
    keyboard.active = active < 0 ? keyboard.ids.size() : static_cast<std::size_t>(active);
    return keyboard;
}

std::optional<std::string> SwayKeyboard::activeID() const {
    if (active >= ids.size() || ids[active].empty()) return std::nullopt;
    return ids[active];
}

std::optional<std::size_t> SwayKeyboard::positionOf(const std::string& id) const {
    const auto found = std::find(ids.begin(), ids.end(), id);
    if (found == ids.end()) return std::nullopt;
    return static_cast<std::size_t>(std::distance(ids.begin(), found));
}

namespace sway_keyboards {

namespace {

// It is part of a command, and a keyboard may call itself anything.
bool isSafe(const std::string& identifier) {
    constexpr std::string_view safe =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_:.-+/()@";
    return !identifier.empty() && identifier.find_first_not_of(safe) == std::string::npos;
}

QByteArray command(const std::string& which, std::size_t position) {
    return QByteArray::fromStdString("input " + which + " xkb_switch_layout " + std::to_string(position));
}

} // namespace

std::optional<std::vector<SwayKeyboard>> parse(const QByteArray& inputs) {
    const QJsonDocument document = QJsonDocument::fromJson(inputs);
    if (!document.isArray()) return std::nullopt;
    std::vector<SwayKeyboard> several;
    std::vector<SwayKeyboard> single;
    for (const QJsonValue input : document.array()) {
        auto keyboard = SwayKeyboard::from(input.toObject());
        if (!keyboard || several.size() == told_text::maxSources) continue;
        if (keyboard->ids.size() > 1)
            several.push_back(std::move(*keyboard));
        else if (keyboard->ids.size() == 1 && !keyboard->ids[0].empty() &&
                 single.size() < told_text::maxSources)
            single.push_back(std::move(*keyboard));
    }
    return several.empty() ? single : several;
}

std::optional<QByteArray> switchCommand(const std::vector<SwayKeyboard>& keyboards, const std::string& id) {
    if (keyboards.empty()) return std::nullopt;
    const auto position = keyboards.front().positionOf(id);
    const bool isEverywhereTheSame =
        std::all_of(keyboards.begin(), keyboards.end(),
                    [&](const SwayKeyboard& keyboard) { return keyboard.positionOf(id) == position; });
    // A keyboard with fewer layouts leaves the number alone.
    if (position && isEverywhereTheSame) return command("type:keyboard", *position);
    QByteArray commands;
    for (const SwayKeyboard& keyboard : keyboards) {
        const auto own = keyboard.positionOf(id);
        if (!own || !isSafe(keyboard.identifier)) continue;
        if (!commands.isEmpty()) commands += ';';
        commands += command('"' + keyboard.identifier + '"', *own);
    }
    if (commands.isEmpty()) return std::nullopt;
    return commands;
}

} // namespace sway_keyboards

} // namespace hopsel
