// One step of the onboarding as people see it: a title, a line about it, and what there is to do.
//
// The onboarding view makes one page for each step, owns them and asks the shown one to look again whenever a
// model changed. A page reads and sets the models, both of which outlive it, and keeps nothing but widgets.
#pragma once

#include "model/onboarding_model.h"
#include "model/texts/l10n.h"
#include "ui/design/text.h"

#include <QVBoxLayout>
#include <QWidget>

namespace hopsel {

inline QString words(l10n::Key key, const std::vector<std::string>& arguments = {}) {
    return QString::fromStdString(l10n::t(key, arguments));
}

class OnboardingPage : public QWidget {
  public:
    virtual void refresh() = 0;
    /// Where the keyboard begins; null when the page has nothing to operate.
    virtual QWidget* firstControl() const { return nullptr; }

    /// Free at both sides of everything in the window.
    static constexpr int margin = 28;

  protected:
    OnboardingPage(l10n::Key title, const QString& subtitle,
                   design::Tone subtitleTone = design::Tone::secondary);

    void setSubtitle(const QString& text);
    /// Has all the height that is left.
    QVBoxLayout* column() const { return column_; }

  private:
    design::Text* subtitle_;
    QVBoxLayout* column_;
};

OnboardingPage* makeKeyPage(OnboardingModel& model);
OnboardingPage* makeSourcesPage(OnboardingModel& model, AppModel& app);
OnboardingPage* makePermissionPage(OnboardingModel& model);
OnboardingPage* makeTestPage(OnboardingModel& model, AppModel& app);

} // namespace hopsel
