#include "ui/settings/design/pane_container.h"

#include "ui/settings/design/scroll_bar.h"
#include "ui/settings/design/text.h"

namespace hopsel::design {

PaneContainer::PaneContainer(const QString& title, const QString& subtitle, QWidget* parent)
    : QScrollArea(parent), content_(new QVBoxLayout) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    makeSlim(verticalScrollBar());

    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(28, 28, 28, 28);
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
