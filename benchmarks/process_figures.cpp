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

Threads threadsOf(pid_t process) {
    constexpr double nanosecondsPerMillisecond = 1e6;
    Threads threads;
    for (const auto& thread : std::filesystem::directory_iterator(folderOf(process) / "task")) {
        double nanoseconds = 0;
        if (!(std::ifstream(thread.path() / "schedstat") >> nanoseconds))
            throw std::runtime_error("the kernel does not tell processor times");
        threads[thread.path().filename()] = {nanoseconds / nanosecondsPerMillisecond,
                                             figureIn(thread.path() / "status", "voluntary_ctxt_switches:")};
    }
    return threads;
}

Activity between(const Threads& before, const Threads& after) {
    Activity total;
    for (const auto& [thread, now] : after) {
        const auto found = before.find(thread);
        const Activity earlier = found == before.end() ? Activity() : found->second;
        total.processorTime += now.processorTime - earlier.processorTime;
        total.wakeUps += now.wakeUps - earlier.wakeUps;
    }
    return total;
}

} // namespace hopsel::bench
