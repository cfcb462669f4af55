#include "ui/onboarding/onboarding_page.h"

namespace hopsel {

using design::Text;
using design::TextStyle;

OnboardingPage::OnboardingPage(l10n::Key title, const QString& subtitle, design::Tone subtitleTone)
    : subtitle_(new Text({}, TextStyle::body, subtitleTone)), column_(new QVBoxLayout) {
    setAccessibleName(words(title));
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(margin, 0, margin, 0);
    page->setSpacing(6);
    page->addWidget((new Text(words(title), TextStyle::title))->wrapped());
    page->addWidget(subtitle_->wrapped());
    page->addSpacing(14);
    column_->setSpacing(12);
    page->addLayout(column_, 1);
    setSubtitle(subtitle);
}

void OnboardingPage::setSubtitle(const QString& text) {
    subtitle_->setText(text);
    setAccessibleDescription(text);
}

} // namespace hopsel
