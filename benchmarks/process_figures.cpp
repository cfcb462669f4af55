#include "benchmarks/process_figures.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace hopsel::bench {

namespace {

long figureIn(const std::filesystem::path& file, const std::string& name) {
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        if (line.compare(0, name.size(), name) == 0) return std::stol(line.substr(name.size()));
    }
    throw std::runtime_error(file.string() + " does not tell " + name);
}

std::filesystem::path folderOf(pid_t process) { return "/proc/" + std::to_string(process); }

} // namespace

Memory memoryOf(pid_t process) {
    const auto file = folderOf(process) / "smaps_rollup";
    return {.proportional = figureIn(file, "Pss:"), .own = figureIn(file, "Private_Dirty:")};
}

double processorTime(pid_t process) {
    constexpr double nanosecondsPerMillisecond = 1e6;
    double total = 0;
    for (const auto& thread : std::filesystem::directory_iterator(folderOf(process) / "task")) {
        double nanoseconds = 0;
        if (!(std::ifstream(thread.path() / "schedstat") >> nanoseconds))
            throw std::runtime_error("the kernel does not tell processor times");
        total += nanoseconds / nanosecondsPerMillisecond;
    }
    return total;
}

long wakeUps(pid_t process) {
    long total = 0;
    for (const auto& thread : std::filesystem::directory_iterator(folderOf(process) / "task"))
        total += figureIn(thread.path() / "status", "voluntary_ctxt_switches:");
    return total;
}

} // namespace hopsel::bench
