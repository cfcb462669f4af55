#include "platform/linux/fcitx/fcitx_profile_watch.h"

#include <QStandardPaths>
#include <utility>

namespace hopsel {

namespace {

using namespace std::chrono_literals;

// Fcitx5 has the new list before it writes the file.
constexpr auto quiet = 30ms, atMost = 300ms;

} // namespace

std::filesystem::path FcitxProfileWatch::defaultProfile() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return std::filesystem::path(folder.toStdString()) / "fcitx5" / "profile";
}

FcitxProfileWatch::FcitxProfileWatch(std::filesystem::path profile, std::function<void()> onChanged)
    : profile_(std::move(profile)),
      onChanged_(std::move(onChanged)),
      version_(FileVersion::of(profile_)),
      timer_(quiet, atMost, [this] { look(); }),
      folder_(profile_, [this] { timer_.noteChange(); }) {}

void FcitxProfileWatch::look() {
    if (const auto found = FileVersion::of(profile_); found != version_) {
        version_ = found;
        onChanged_();
    }
}

} // namespace hopsel
