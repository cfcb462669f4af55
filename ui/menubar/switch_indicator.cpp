#include "ui/menubar/switch_indicator.h"

#include "ui/design/colors.h"
#include "ui/design/text.h"
#include "ui/design/window_placement.h"

#include <QCursor>
#include <QPainter>
#include <QScreen>
#include <algorithm>
#include <chrono>
#include <utility>

namespace hopsel {

namespace {

constexpr std::chrono::milliseconds shownFor{600};
constexpr QPoint besidePointer{18, 22};

class Label final : public QWidget {
  public:
    explicit Label(QString text)
        : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                               Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus |
                               Qt::BypassWindowManagerHint),
          text_(std::move(text)) {
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_QuitOnClose, false);
        setFont(design::fontOf(design::TextStyle::headline));
        const QSize words = fontMetrics().size(Qt::TextSingleLine, text_);
        resize(std::max(words.width() + design::scaled(16), design::scaled(34)),
               words.height() + design::scaled(8));
    }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.fillRect(rect(), palette().color(QPalette::ToolTipBase));
        painter.setPen(design::primary(palette(), 0.5));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
        painter.setPen(palette().color(QPalette::ToolTipText));
        painter.drawText(rect(), Qt::AlignCenter, text_);
    }

  private:
    QString text_;
};

/// As the panel shows it, told apart from its partner.
QString labelOf(const AppModel& model) {
    if (const auto pair = model.currentSourcePair())
        return QString::fromStdString(pair->firstIsCurrent ? pair->first : pair->second.value_or(""));
    return QString::fromStdString(model.currentSourceLabel().value_or(std::string()));
}

} // namespace

SwitchIndicator::SwitchIndicator(AppModel& model) : model_(model), shownFiring_(model.lastFiring().number) {
    end_.setSingleShot(true);
    end_.setInterval(shownFor);
    connect(&end_, &QTimer::timeout, this, [this] { window_.reset(); });
    model_.observe(this, [this] { look(); });
}

SwitchIndicator::~SwitchIndicator() = default;

void SwitchIndicator::look() {
    const Firing& firing = model_.lastFiring();
    if (std::exchange(shownFiring_, firing.number) == firing.number) return;
    if (!model_.indicatesSwitches().value_or(false) || !firing.worked) return;
    if (const QString label = labelOf(model_); !label.isEmpty()) show(label);
}

void SwitchIndicator::show(const QString& label) {
    window_ = std::make_unique<Label>(label);
    const QRect screen = design::screenInUse().availableGeometry();
    QRect place = window_->rect().translated(QCursor::pos() + besidePointer);
    if (place.right() > screen.right()) place.moveRight(QCursor::pos().x() - besidePointer.x());
    if (place.bottom() > screen.bottom()) place.moveBottom(QCursor::pos().y() - besidePointer.y());
    window_->setGeometry(place);
    window_->show();
    end_.start();
}

} // namespace hopsel
