#include "platform/linux/keys_helper/session/helper_places.h"

#include <QCoreApplication>
#include <QString>
#include <array>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace hopsel {

namespace fs = std::filesystem;

namespace {

constexpr const char* programName = "hopsel-keys";

bool isProgram(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error) && access(path.c_str(), X_OK) == 0;
}

/// Whether nobody but the system's administrator can have put anything into it.
bool isOfTheSystem(const fs::path& path) {
    struct stat facts{};
    return stat(path.c_str(), &facts) == 0 && facts.st_uid == 0 && (facts.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

} // namespace

HelperPlaces HelperPlaces::live() {
    const QString socket = qEnvironmentVariable("HOPSEL_KEYS_SOCKET", "/run/hopsel/keys.sock");
    HelperPlaces places{.socket = socket.toStdString(), .program = {}};
    const fs::path folder = QCoreApplication::applicationDirPath().toStdString();
    // Installed, or where it was built.
    const std::array candidates{folder / ".." / "libexec" / programName,
                                folder / "platform" / "linux" / programName};
    for (const fs::path& candidate : candidates)
        if (places.program.empty() && isProgram(candidate))
            places.program = candidate.lexically_normal().string();
    const fs::path enabler = (folder / ".." / "libexec" / "hopsel-keys-enable").lexically_normal();
    if (isProgram(enabler) && isOfTheSystem(enabler)) places.enabler = enabler.string();
    return places;
}

bool HelperPlaces::hasService() const {
    std::error_code error;
    return fs::is_socket(socket, error);
}

bool HelperPlaces::canReadDevices() const {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(devices, error))
        if (entry.path().filename().string().starts_with("event") &&
            access(entry.path().c_str(), R_OK | W_OK) == 0)
            return true;
    return false;
}

} // namespace hopsel
