#include "platform/linux/applications/proc_running_apps.h"

#include "platform/linux/files/desktop_entry.h"
#include "platform/linux/files/small_files.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace hopsel {

namespace fs = std::filesystem;

namespace {

using IdentifiersByProgram = std::unordered_map<std::string, std::vector<std::string>>;

/// Programs that start another one: the desktop files that name them say nothing about a process of theirs.
bool startsOthers(std::string_view program) {
    static const std::set<std::string_view> names = {
        "bash",   "dash",   "electron", "env",  "flatpak", "gjs",  "java", "node",    "perl",
        "pkexec", "python", "python3",  "ruby", "sh",      "snap", "wine", "xdg-open"};
    return names.count(program) > 0;
}

/// The kernel cuts the name that a process goes by.
constexpr std::size_t maxProcessName = 15;

/// The lines that matter here: most of a desktop file are translations, and reading them all takes longer
/// than everything else together.
std::string essence(std::string_view text) {
    std::string kept;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const bool matters =
            line.rfind('[', 0) == 0 || line.rfind("Exec", 0) == 0 || line.rfind("Hidden", 0) == 0;
        if (matters) kept.append(line) += '\n';
    }
    return kept;
}

void readEntry(const fs::path& file, const std::string& identifier, IdentifiersByProgram& found) {
    const auto text = readSmallFile(file);
    const auto entry = text ? DesktopEntry::parse(essence(*text)) : std::nullopt;
    if (!entry || entry->flag("Hidden", false)) return;
    const std::string program = fs::path(entry->program()).filename().string();
    if (program.empty() || startsOthers(program)) return;
    found[program].push_back(identifier);
    if (program.size() > maxProcessName) found[program.substr(0, maxProcessName)].push_back(identifier);
}

IdentifiersByProgram installedEntries(const std::vector<fs::path>& dataFolders) {
    constexpr int deepest = 4;
    constexpr std::size_t mostEntries = 20'000;
    IdentifiersByProgram found;
    std::unordered_set<std::string> seen; // what an earlier folder has, a later one cannot bring back
    for (const fs::path& dataFolder : dataFolders) {
        const fs::path folder = dataFolder / "applications";
        std::error_code error;
        fs::recursive_directory_iterator file(folder, fs::directory_options::skip_permission_denied, error);
        for (; !error && file != fs::recursive_directory_iterator() && seen.size() < mostEntries;
             file.increment(error)) {
            if (file.depth() >= deepest) file.disable_recursion_pending();
            if (file->path().extension() != ".desktop") continue;
            std::string identifier = file->path().lexically_relative(folder).replace_extension().string();
            std::replace(identifier.begin(), identifier.end(), '/', '-');
            if (seen.insert(identifier).second) readEntry(file->path(), identifier, found);
        }
    }
    return found;
}

std::vector<int> processNumbers(const fs::path& processes) {
    std::vector<int> numbers;
    std::error_code error;
    for (fs::directory_iterator entry(processes, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        int number = 0;
        const auto [end, failure] = std::from_chars(name.data(), name.data() + name.size(), number);
        if (failure == std::errc() && end == name.data() + name.size()) numbers.push_back(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::string executableName(const fs::path& process) {
    std::error_code error;
    std::string path = fs::read_symlink(process / "exe", error).string();
    constexpr std::string_view replaced = " (deleted)"; // by an update, while it runs
    if (path.size() > replaced.size() &&
        path.compare(path.size() - replaced.size(), replaced.size(), replaced) == 0)
        path.resize(path.size() - replaced.size());
    return fs::path(path).filename().string();
}

std::string processName(const fs::path& process) {
    std::string name = readSmallFile(process / "comm").value_or("");
    if (!name.empty() && name.back() == '\n') name.pop_back();
    return name;
}

} // namespace

ProcRunningApps::ProcRunningApps(fs::path processes, std::vector<fs::path> dataFolders)
    : processes_(std::move(processes)), dataFolders_(std::move(dataFolders)) {}

std::vector<std::string> ProcRunningApps::runningBundleIDs() {
    const IdentifiersByProgram installed = installedEntries(dataFolders_);
    std::vector<std::string> names;
    std::unordered_set<std::string> listed;
    const auto list = [&](const std::string& name) {
        const std::string cut = name.substr(0, maxLength);
        if (!cut.empty() && names.size() < maxNames && listed.insert(cut).second) names.push_back(cut);
    };
    for (const int number : processNumbers(processes_)) {
        const fs::path process = processes_ / std::to_string(number);
        const std::string own[] = {executableName(process), processName(process)};
        for (const std::string& name : own) list(name);
        for (const std::string& name : own)
            if (const auto entry = installed.find(name); entry != installed.end())
                for (const std::string& identifier : entry->second) list(identifier);
    }
    return names;
}

} // namespace hopsel
