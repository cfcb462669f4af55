// What the tests of the desktop's adapters share: variables set for a while, and a PATH with nothing in it
// but scripts that note how they were called.
#pragma once

#include "core/rules/temporary_folder.h"
#include "session/temporary_folder.h"
#include "support/fakes/engine_fakes.h"
#include "support/qt_waiting.h"

#include <gmock/gmock.h>
#include <optional>

namespace hopsel::test {

class Environment {
  public:
    Environment(const char* name, const std::string& value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        ::setenv(name, value.c_str(), 1);
    }
    ~Environment() { old_ ? ::setenv(name_, old_->c_str(), 1) : ::unsetenv(name_); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

  private:
    const char* name_;
    std::optional<std::string> old_;
};

class ProgramsInPath {
  public:
    void install(const std::string& name) {
        const auto program =
            folder_.write(name, "#!/bin/sh\nIFS='|'\necho \"${0##*/}|$*\" >> '" + calls_.string() + "'\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    }
    bool wasCalled() const { return contents(calls_).find('\n', seen_) != std::string::npos; }
    /// The next call since the last one asked for: name and arguments, with bars between.
    std::string nextCall() {
        if (!runLoopUntil([&] { return wasCalled(); })) return {};
        const std::string all = contents(calls_);
        const std::string call = all.substr(seen_, all.find('\n', seen_) - seen_);
        seen_ += call.size() + 1;
        return call;
    }

  private:
    session::TemporaryFolder folder_;
    std::filesystem::path calls_ = folder_.path() / "calls";
    std::size_t seen_ = 0;
    Environment path_{"PATH", folder_.path().string()};
};

} // namespace hopsel::test
