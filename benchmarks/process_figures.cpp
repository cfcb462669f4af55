#include "benchmarks/process_figures.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>

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
        std::string name;
        std::getline(std::ifstream(thread.path() / "comm"), name);
        threads[thread.path().filename()] = {std::move(name), nanoseconds / nanosecondsPerMillisecond,
                                             figureIn(thread.path() / "status", "voluntary_ctxt_switches:")};
    }
    return threads;
}

Threads between(const Threads& before, const Threads& after) {
    Threads meanwhile = after;
    for (auto& [thread, activity] : meanwhile) {
        const auto earlier = before.find(thread);
        if (earlier == before.end()) continue;
        activity.processorTime -= earlier->second.processorTime;
        activity.wakeUps -= earlier->second.wakeUps;
    }
    return meanwhile;
}

} // namespace hopsel::bench
