#include "ui/design/pane_container.h"

#include "ui/design/scroll_bar.h"
#include "ui/design/text.h"

namespace hopsel::design {

namespace {
constexpr int margin = 28;
}

PaneContainer::PaneContainer(const QString& title, const QString& subtitle, QWidget* parent)
    : QScrollArea(parent), content_(new QVBoxLayout) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setFocusPolicy(Qt::NoFocus);
    makeSlim(verticalScrollBar());

    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(margin, margin, margin, margin);
    // The bar takes its width from the margin, so that what stands beside it never moves.
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, column, [column](int /*least*/, int most) {
        column->setContentsMargins(margin, margin, most > 0 ? margin - slimBarWidth : margin, margin);
    });
    column->setSpacing(6);
    column->addWidget((new Text(title, TextStyle::title))->wrapped());
    if (!subtitle.isEmpty())
        column->addWidget((new Text(subtitle, TextStyle::callout, Tone::secondary))->wrapped());
    column->addSpacing(10);
    content_->setSpacing(16);
    column->addLayout(content_);
    column->addStretch(1);
    setWidget(page);
}

} // namespace hopsel::design
