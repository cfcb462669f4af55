#include "platform/linux/files/xdg_folders.h"

#include "platform/posix/posix_file_storage.h"

#include <QDir>
#include <cstdlib>
#include <sstream>
#include <string>

namespace hopsel {

namespace fs = std::filesystem;

fs::path xdgConfigHome() {
    const char* folder = std::getenv("XDG_CONFIG_HOME");
    if (folder != nullptr && fs::path(folder).is_absolute()) return folder;
    return fs::path(QDir::homePath().toStdString()) / ".config";
}

std::vector<fs::path> xdgDataFolders() {
    std::vector<fs::path> folders{PosixFileStorage::xdgDataHome()};
    const char* listed = std::getenv("XDG_DATA_DIRS");
    std::istringstream names(listed != nullptr && *listed != '\0' ? listed : "/usr/local/share:/usr/share");
    for (std::string name; std::getline(names, name, ':');)
        if (fs::path(name).is_absolute()) folders.emplace_back(name);
    return folders;
}

} // namespace hopsel
