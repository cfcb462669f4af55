#include "platform/linux/files/desktop_entry.h"

#include <string_view>

namespace hopsel {

namespace {

constexpr const char* group = G_KEY_FILE_DESKTOP_GROUP;

struct FreeText {
    void operator()(char* text) const { g_free(text); }
};
using OwnedText = std::unique_ptr<char, FreeText>;

/// One argument of Exec. What it escapes with a backslash the file format escapes once more.
std::string quotedArgument(std::string_view argument) {
    std::string text;
    bool needsQuotes = argument.empty();
    for (const char c : argument) {
        needsQuotes =
            needsQuotes || std::string_view(" \t\n\"'\\><~|&;$*?#()`").find(c) != std::string_view::npos;
        if (std::string_view("\"`$\\").find(c) != std::string_view::npos) text += '\\';
        if (c == '%') text += '%'; // a single one begins a field code
        text += c;
    }
    return needsQuotes ? '"' + text + '"' : text;
}

std::string firstArgument(std::string_view line) {
    std::string argument;
    const auto start = line.find_first_not_of(" \t");
    if (start == std::string_view::npos) return argument;
    line.remove_prefix(start);
    const bool isQuoted = line.front() == '"';
    if (isQuoted) line.remove_prefix(1);
    const std::string_view end = isQuoted ? "\"" : " \t";
    for (std::size_t i = 0; i < line.size() && end.find(line[i]) == std::string_view::npos; ++i) {
        const bool isPair =
            i + 1 < line.size() && ((isQuoted && line[i] == '\\') || (line[i] == '%' && line[i + 1] == '%'));
        if (isPair) ++i;
        argument += line[i];
    }
    return argument;
}

} // namespace

DesktopEntry::DesktopEntry() : file_(g_key_file_new()) {}

std::optional<DesktopEntry> DesktopEntry::parse(const std::string& text) {
    DesktopEntry entry;
    const auto keepAll = static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
    if (g_key_file_load_from_data(entry.file_.get(), text.data(), text.size(), keepAll, nullptr) == FALSE ||
        g_key_file_has_group(entry.file_.get(), group) == FALSE)
        return std::nullopt;
    return entry;
}

bool DesktopEntry::has(const char* key) const {
    return g_key_file_has_key(file_.get(), group, key, nullptr) != FALSE;
}

std::optional<std::string> DesktopEntry::text(const char* key) const {
    const OwnedText value(g_key_file_get_string(file_.get(), group, key, nullptr));
    if (!value) return std::nullopt;
    return value.get();
}

bool DesktopEntry::flag(const char* key, bool byDefault) const {
    GError* error = nullptr;
    const bool value = g_key_file_get_boolean(file_.get(), group, key, &error) != FALSE;
    if (error == nullptr) return value;
    g_error_free(error);
    return byDefault;
}

void DesktopEntry::setText(const char* key, const std::string& value) {
    g_key_file_set_string(file_.get(), group, key, value.c_str());
}

void DesktopEntry::setFlag(const char* key, bool value) {
    g_key_file_set_boolean(file_.get(), group, key, value ? TRUE : FALSE);
}

std::string DesktopEntry::program() const {
    return firstArgument(text(G_KEY_FILE_DESKTOP_KEY_EXEC).value_or(""));
}

void DesktopEntry::setProgram(const std::filesystem::path& program, const std::string& argument) {
    setText(G_KEY_FILE_DESKTOP_KEY_EXEC, quotedArgument(program.string()) + ' ' + argument);
}

std::string DesktopEntry::toText() const {
    gsize size = 0;
    const OwnedText text(g_key_file_to_data(file_.get(), &size, nullptr));
    return {text.get(), size};
}

} // namespace hopsel
