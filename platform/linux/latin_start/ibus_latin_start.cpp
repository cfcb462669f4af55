#include "platform/linux/latin_start/ibus_latin_start.h"

#include "platform/linux/latin_start/text_proto.h"

#include <algorithm>
#include <array>
#include <vector>

namespace hopsel {

namespace {

struct Row {
    std::string_view engine;
    const char* schema;
    const char* key;
    std::string_view inItsScript;  ///< values with which it begins in its own script, with spaces around each
    bool isLatinUnset;             ///< also where nothing tells
    const char* without = nullptr; ///< a key that says that there is no Latin mode at all
};

constexpr std::array rows{
    Row{"hangul", "org.freedesktop.ibus.engine.hangul", "initial-input-mode", " 'hangul' ", true,
        "disable-latin-mode"},
    // Hiragana, katakana, half-width katakana; then come Latin and wide Latin.
    Row{"anthy", "org.freedesktop.ibus.engine.anthy.common", "input-mode", " 0 1 2 ", true},
    Row{"libpinyin", "com.github.libpinyin.ibus-libpinyin.libpinyin", "init-chinese", " true ", false},
    Row{"libbopomofo", "com.github.libpinyin.ibus-libpinyin.libbopomofo", "init-chinese", " true ", false},
};

const Row* rowOf(std::string_view engine) {
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const Row& r) { return r.engine == engine; });
    return row != rows.end() ? &*row : nullptr;
}

SourceLimit limitOf(const Row& row, const IbusEngineSettings& settings) {
    if (row.without != nullptr && settings.stored(row.schema, row.without) == "true")
        return SourceLimit::none;
    const std::optional<std::string> value = settings.stored(row.schema, row.key);
    const bool isLatin =
        value ? row.inItsScript.find(" " + *value + " ") == std::string_view::npos : row.isLatinUnset;
    return isLatin ? SourceLimit::startsInLatin : SourceLimit::none;
}

// It begins in Latin unless its file says otherwise, for all engines in it or for one: a mode of its own is
// what its user wants, Latin or not. A file that says it twice is not read at all.
SourceLimit limitOfMozc(std::string_view engine, const std::string& file) {
    bool isItsBlock = false, hasMode = false;
    std::vector<std::string> active;
    for (const TextProtoField& field : textProtoFields(file)) {
        if (field.name == "name") isItsBlock = field.value == engine;
        hasMode = hasMode || (field.name == "composition_mode" && isItsBlock);
        if (field.name == "active_on_launch") active.push_back(field.value);
    }
    const bool isActive = !active.empty() && (active[0] == "True" || active[0] == "true" || active[0] == "1");
    return active.size() <= 1 && (hasMode || isActive) ? SourceLimit::none : SourceLimit::startsInLatinByFile;
}

} // namespace

SourceLimit ibusLatinStart(std::string_view engine, const IbusEngineSettings& settings) {
    if (engine.substr(0, 4) == "mozc") return limitOfMozc(engine, settings.mozcFile());
    const Row* row = rowOf(engine);
    return row != nullptr ? limitOf(*row, settings) : SourceLimit::none;
}

std::optional<IbusStartSetting> ibusStartSetting(std::string_view engine) {
    const Row* row = rowOf(engine);
    if (row == nullptr) return std::nullopt;
    const std::string_view first = row->inItsScript.substr(1); // of those that would do
    return IbusStartSetting{row->schema, row->key, std::string(first.substr(0, first.find(' ')))};
}

bool isPathOfIbusEngines(std::string_view path) {
    for (const std::string_view folder : {"/org/freedesktop/ibus/engine/", "/com/github/libpinyin/"})
        if (path.substr(0, folder.size()) == folder || folder.substr(0, path.size()) == path) return true;
    return false;
}

} // namespace hopsel
