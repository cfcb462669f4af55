#include "ui/settings/about_pane.h"

#include "core/base/product.h"
#include "ui/design/scroll_bar.h"
#include "ui/design/symbols.h"
#include "ui/design/text.h"
#include "ui/design/texts.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace hopsel {

using design::Text;
using design::TextStyle;
using design::Tone;
using l10n::Key;

namespace {

constexpr int iconSide = 96;
constexpr int padding = 28;

Text* centred(const QString& words, TextStyle style, Tone tone = Tone::primary) {
    Text* label = (new Text(words, style, tone))->wrapped();
    label->setAlignment(Qt::AlignCenter);
    return label;
}

/// No wider than its text, so that symbol and text are centred as one.
QHBoxLayout* privacyLine() {
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addStretch(1);
    row->addWidget(new design::Symbol("lock.shield", 16, Tone::secondary));
    auto* sentence = (new Text(text(Key::aboutPrivacy), TextStyle::callout))->wrapped();
    sentence->setMaximumWidth(sentence->fontMetrics().horizontalAdvance(sentence->text()) + 2);
    row->addWidget(sentence, 1000);
    row->addStretch(1);
    return row;
}

} // namespace

AboutPane::AboutPane(const AppModel& model, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    design::makeSlim(verticalScrollBar());
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(8);
    column->addStretch(1);
    column->addWidget(new design::Picture(design::applicationIcon(), iconSide), 0, Qt::AlignHCenter);
    column->addSpacing(4);
    column->addWidget(centred(QString::fromStdString(std::string(product::name)), TextStyle::largeTitle));
    column->addWidget(centred(text(Key::aboutTagline), TextStyle::body, Tone::secondary));
    column->addWidget(
        centred(text(Key::aboutVersion, {model.appVersion()}), TextStyle::callout, Tone::secondary));
    column->addSpacing(12);
    column->addLayout(privacyLine());
    column->addStretch(1);
    setWidget(page);
}

} // namespace hopsel
