// The places where the user can change what Hopsel depends on: the desktop's own settings programs where it
// is known to have them, else a page that says what to do.
//
// Owned by the application model. On X11 there is no permission to grant: what keeps the filter from working
// is a combination that someone else has taken, so "accessibility" leads to the keyboard shortcuts.
#pragma once

#include "core/platform/log.h"
#include "core/platform/permissions.h"
#include "core/platform/system_settings_opening.h"
#include "platform/linux/keys/way_out.h"

#include <QObject>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <memory>

namespace hopsel {

/// The page that comes with the program, or in the build tree with a program that is not installed; empty
/// when there is none.
std::filesystem::path helpPage();

class DesktopSettingsOpener final : public SystemSettingsOpening {
  public:
    /// The program in which an input method is set up; null where there is none.
    using SourcesProgram = std::function<const char*()>;

    /// Does what can be done about keys that are not heard, and calls the function where that is nothing.
    using Remedy =
        std::function<void(const QObject* context, const std::function<void(const WayOut&)>& otherwise)>;

    /// The log outlives this object.
    DesktopSettingsOpener(std::shared_ptr<Permissions> permissions, std::filesystem::path helpPage, Log& log,
                          SourcesProgram sourcesProgram = nullptr, Remedy remedy = nullptr);

    void requestInputMonitoring() override { permissions_->requestInputMonitoring(); }
    void openInputMonitoring() override;
    bool inputMonitoringGranted() const override { return permissions_->inputMonitoringGranted(); }
    bool accessibilityGranted() const override { return permissions_->accessibilityGranted(); }
    void requestAccessibility() override { permissions_->requestAccessibility(); }
    void openAccessibility() override;
    void openLoginItems() override;
    void openInputSources() override;

  private:
    void openHelp(const char* section);

    std::shared_ptr<Permissions> permissions_;
    std::filesystem::path helpPage_;
    Log& log_;
    SourcesProgram sourcesProgram_;
    Remedy remedy_;
    std::unique_ptr<QWidget> message_;
    QObject context_; ///< the remedy's answer ends with it
};

} // namespace hopsel
