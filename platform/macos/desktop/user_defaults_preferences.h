// The preferences in the user defaults of the program's bundle. Owned by the application model.
//
// Nothing is remembered between calls: what the user or a profile sets from outside counts at once.
#pragma once

#include "core/platform/preferences_storing.h"

#include <CoreFoundation/CoreFoundation.h>

namespace hopsel {

class UserDefaultsPreferences final : public PreferencesStoring {
  public:
    /// The domain lives as long as this object.
    explicit UserDefaultsPreferences(CFStringRef domain = kCFPreferencesCurrentApplication)
        : domain_(domain) {}

    bool showCurrentSourceLabel() const override { return read(CFSTR("showCurrentSourceLabel"), true); }
    void setShowCurrentSourceLabel(bool on) override { write(CFSTR("showCurrentSourceLabel"), on); }
    bool engineEnabled() const override { return read(CFSTR("engineEnabled"), true); }
    void setEngineEnabled(bool on) override { write(CFSTR("engineEnabled"), on); }
    bool onboardingCompleted() const override { return read(CFSTR("onboardingCompleted"), false); }
    void setOnboardingCompleted(bool completed) override { write(CFSTR("onboardingCompleted"), completed); }
    bool toldThatItRunsOn() const override { return read(CFSTR("toldThatItRunsOn"), false); }
    void setToldThatItRunsOn(bool told) override { write(CFSTR("toldThatItRunsOn"), told); }
    /// Not among the user's three: a way round for input methods that only seem to be switched to. By default
    /// false; set with "defaults write".
    bool passesThroughLayout() const { return read(CFSTR("passThroughLayout"), false); }

  private:
    /// A value that is neither a number nor a boolean counts as never written.
    bool read(CFStringRef key, bool byDefault) const;
    void write(CFStringRef key, bool on);

    CFStringRef domain_;
};

} // namespace hopsel
