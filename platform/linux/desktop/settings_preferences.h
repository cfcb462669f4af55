// The preferences in an INI file. Owned by the application model.
//
// Nothing is remembered between calls but what could not be written, so another process' changes count at
// once, and a file system that refuses costs the user no more than the next start.
#pragma once

#include "core/platform/log.h"
#include "core/platform/preferences_storing.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace hopsel {

class SettingsPreferences final : public PreferencesStoring {
  public:
    /// The log outlives this object. A file that is no INI file reads as if it were missing, and is copied
    /// aside before the first write.
    explicit SettingsPreferences(Log& log, std::filesystem::path file = defaultFile());

    /// "hopsel/preferences.ini" where the user's configuration lies.
    static std::filesystem::path defaultFile();

    bool showCurrentSourceLabel() const override { return read("showCurrentSourceLabel", true); }
    void setShowCurrentSourceLabel(bool on) override { write("showCurrentSourceLabel", on); }
    bool engineEnabled() const override { return read("engineEnabled", true); }
    void setEngineEnabled(bool on) override { write("engineEnabled", on); }
    bool onboardingCompleted() const override { return read("onboardingCompleted", false); }
    void setOnboardingCompleted(bool completed) override { write("onboardingCompleted", completed); }
    bool guardsTaps() const override { return read("guardsTaps", true); }
    void setGuardsTaps(bool on) override { write("guardsTaps", on); }
    /// Only an X server lets a window stand beside the pointer.
    std::optional<bool> indicatesSwitches() const override;
    void setIndicatesSwitches(bool on) override { write("indicatesSwitches", on); }
    bool toldThatItRunsOn() const override { return read("toldThatItRunsOn", false); }
    void setToldThatItRunsOn(bool told) override { write("toldThatItRunsOn", told); }

  private:
    bool read(const char* key, bool byDefault) const;
    void write(const char* key, bool on);
    /// Throws `std::runtime_error`.
    void store();
    /// Throws `std::runtime_error`.
    void setAside() const;

    Log& log_;
    std::filesystem::path file_;
    std::map<std::string, bool> unsaved_; ///< what the user chose and the disk refused
    bool isRefused_ = false;              ///< said so in the log
};

} // namespace hopsel
