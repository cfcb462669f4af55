// The system log on Linux: the journal, or standard error.
//
// Standard error when a person is watching it or when no journal runs; else the journal, with the identifier
// "hopsel" and the category in a field of its own. Made by start-up, outlives everyone who writes to it.
#pragma once

#include "core/platform/log.h"

#include <string>

namespace hopsel {

class SystemLog final : public Log {
  public:
    SystemLog();
    /// For tests: another descriptor for standard error, another place where a journal would listen.
    SystemLog(int standardError, const std::string& journalSocket);

    void write(Level level, std::string_view category, std::string_view message) override;

  private:
    int standardError_;
    bool usesJournal_;
};

} // namespace hopsel
