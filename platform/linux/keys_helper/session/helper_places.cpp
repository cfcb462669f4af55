#include "platform/linux/keys_helper/session/helper_places.h"

#include <QCoreApplication>
#include <QString>
#include <array>
#include <filesystem>
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
