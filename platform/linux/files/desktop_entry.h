// One desktop file (a program's entry in the menu or in autostart), and what its Exec line means.
//
// A value that its user owns. Writing keeps what it does not know: comments, translations, other groups.
#pragma once

#include <filesystem>
#include <glib.h>
#include <memory>
#include <optional>
#include <string>

namespace hopsel {

class DesktopEntry {
  public:
    /// An empty entry.
    DesktopEntry();
    /// Nothing when the text is no desktop file.
    static std::optional<DesktopEntry> parse(const std::string& text);

    bool has(const char* key) const;
    /// Nothing when the key is missing, or its value is not UTF-8 or badly escaped.
    std::optional<std::string> text(const char* key) const;
    bool flag(const char* key, bool byDefault) const;
    void setText(const char* key, const std::string& value);
    void setFlag(const char* key, bool value);

    /// The program that Exec names, without its arguments: a path, or a name to be looked up in PATH. Empty
    /// when there is none.
    std::string program() const;
    /// Makes Exec start this program with one argument, a plain word.
    void setProgram(const std::filesystem::path& program, const std::string& argument);

    std::string toText() const;

  private:
    struct Free {
        void operator()(GKeyFile* file) const { g_key_file_free(file); }
    };
    std::unique_ptr<GKeyFile, Free> file_;
};

} // namespace hopsel
