#include "ui/onboarding/onboarding_widgets.h"

#include "ui/design/accessible_roles.h"
#include "ui/design/colors.h"
#include "ui/design/focus_ring.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <utility>

namespace hopsel {

using design::scaled;
using design::Tone;

namespace {

constexpr int capsuleWidth = 28;
constexpr int capsuleHeight = 4;
constexpr int capsuleGap = 6;

constexpr int choiceHeight = 84;
constexpr int choicePadding = 12;

constexpr int badgeSide = 64;
constexpr int badgePixelSize = 32;
constexpr int widestName = 380;

constexpr qreal radius = 12;

} // namespace

StepBar::StepBar(int steps, QWidget* parent) : QWidget(parent), steps_(steps) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void StepBar::setSteps(int steps, int current) {
    if (std::exchange(steps_, steps) != steps) updateGeometry();
    current_ = current;
    update();
}

QSize StepBar::sizeHint() const { return {steps_ * capsuleWidth + (steps_ - 1) * capsuleGap, capsuleHeight}; }

void StepBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < steps_; ++i) {
        painter.setBrush(i < current_ ? design::color(Tone::accent, palette())
                                      : design::primary(palette(), 0.15));
        painter.drawRoundedRect(i * (capsuleWidth + capsuleGap), 0, capsuleWidth, capsuleHeight,
                                capsuleHeight / 2.0, capsuleHeight / 2.0);
    }
}

KeyChoice::KeyChoice(const QString& keyName, QWidget* parent) : QRadioButton(keyName, parent) {
    setFont(design::fontOf(design::TextStyle::title3));
    setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
}

QSize KeyChoice::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + 2 * choicePadding, scaled(choiceHeight)};
}

void KeyChoice::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF bounds = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    if (isChecked()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(design::accentGradient(bounds));
    } else {
        painter.setPen(design::primary(palette(), 0.1));
        painter.setBrush(design::primary(palette(), isDown() ? 0.14 : underMouse() ? 0.09 : 0.06));
    }
    painter.drawRoundedRect(bounds, radius, radius);
    painter.setPen(isChecked() ? QColor(Qt::white) : design::primary(palette()));
    painter.drawText(rect(), Qt::AlignCenter, text());
    design::drawFocusRing(painter, *this, radius);
}

void KeyChoice::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->ignore();
    else
        QRadioButton::keyPressEvent(event);
}

/// The label on the accent gradient.
class SourceTile::Badge final : public QWidget {
  public:
    explicit Badge(QWidget* parent) : QWidget(parent) {
        QFont font = design::fontOf(design::TextStyle::headline);
        font.setPixelSize(scaled(badgePixelSize));
        setFont(font);
        setFixedSize(scaled(badgeSide), scaled(badgeSide));
    }

    void setLabel(const QString& label) {
        setAccessibleName(label);
        update();
    }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(design::accentGradient(rect()));
        painter.drawRoundedRect(rect(), width() / 4.0, width() / 4.0);
        painter.setPen(Qt::white);
        painter.drawText(rect(), Qt::AlignCenter, accessibleName());
    }
};

SourceTile::SourceTile(QWidget* parent)
    : QWidget(parent), badge_(new Badge(this)), name_(new design::Text({}, design::TextStyle::title)) {
    design::setAccessibleRole(name_, QAccessible::StaticText); // large, and yet no heading
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(16, 12, 16, 12);
    row->setSpacing(16);
    row->addStretch(1);
    row->addWidget(badge_);
    row->addWidget(name_);
    row->addStretch(1);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::MinimumExpanding);
}

void SourceTile::setSource(const QString& label, const QString& name) {
    badge_->setLabel(label);
    // Names come from outside, in any length.
    name_->setText(name_->fontMetrics().elidedText(name, Qt::ElideMiddle, widestName));
    name_->setAccessibleName(name);
    name_->setToolTip(name);
}

void SourceTile::setPassed(bool passed) {
    if (std::exchange(passed_, passed) != passed) update();
}

void SourceTile::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ground = design::primary(palette(), 0.045);
    QPen edge(design::primary(palette(), 0.08));
    if (passed_) {
        ground = design::color(Tone::positive, palette());
        edge = QPen(ground, 2);
        ground.setAlphaF(0.1F);
    }
    painter.setBrush(ground);
    painter.setPen(edge);
    const qreal inset = edge.widthF() / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
}

} // namespace hopsel
