// The seam of the user's preferences. The rules are not among them; they have a file of their own.
//
// Owned by the application model.
#pragma once

#include <optional>

namespace hopsel {

class PreferencesStoring {
  public:
    PreferencesStoring() = default;
    PreferencesStoring(const PreferencesStoring&) = delete;
    PreferencesStoring& operator=(const PreferencesStoring&) = delete;
    virtual ~PreferencesStoring() = default;

    // Each write is stored at once; what was never written reads as its default.

    /// By default true.
    virtual bool showCurrentSourceLabel() const = 0;
    virtual void setShowCurrentSourceLabel(bool on) = 0;
    /// By default true.
    virtual bool engineEnabled() const = 0;
    virtual void setEngineEnabled(bool on) = 0;
    /// By default false.
    virtual bool onboardingCompleted() const = 0;
    virtual void setOnboardingCompleted(bool completed) = 0;
    /// By default true. Platforms that cannot do it do not keep it.
    virtual bool guardsTaps() const { return true; }
    virtual void setGuardsTaps(bool /*on*/) {}
    /// Whether a switch shows the new source beside the pointer, by default not. Absent where that cannot be.
    virtual std::optional<bool> indicatesSwitches() const { return std::nullopt; }
    virtual void setIndicatesSwitches(bool /*on*/) {}
    /// The user has been told that the program goes on without a window. By default false.
    virtual bool toldThatItRunsOn() const = 0;
    virtual void setToldThatItRunsOn(bool told) = 0;
};

} // namespace hopsel
