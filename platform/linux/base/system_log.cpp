#include "platform/linux/base/system_log.h"

#include <syslog.h>
#include <unistd.h>

#define SD_JOURNAL_SUPPRESS_LOCATION // where in this file the message was sent tells nobody anything
#include <systemd/sd-journal.h>

namespace hopsel {

namespace {

bool sendToJournal(Log::Level level, const std::string& category, const std::string& line) {
    return sd_journal_send("MESSAGE=%s", line.c_str(), "PRIORITY=%d",
                           level == Log::Level::error ? LOG_ERR : LOG_INFO, "SYSLOG_IDENTIFIER=hopsel",
                           "CATEGORY=%s", category.c_str(), nullptr) == 0;
}

} // namespace

SystemLog::SystemLog() : SystemLog(STDERR_FILENO, "/run/systemd/journal/socket") {}

SystemLog::SystemLog(int standardError, const std::string& journalSocket)
    : standardError_(standardError),
      usesJournal_(isatty(standardError) == 0 && access(journalSocket.c_str(), W_OK) == 0) {}

void SystemLog::write(Level level, std::string_view category, std::string_view message) {
    const std::string line(message);
    if (usesJournal_ && sendToJournal(level, std::string(category), line)) return;
    // One write, so that lines of several programs do not mix.
    const std::string text = "hopsel: " + line + "\n";
    if (::write(standardError_, text.data(), text.size()) < 0) return; // nobody is left to tell
}

} // namespace hopsel
