#include "ui/design/scroll_bar.h"

namespace hopsel::design {

// A style sheet, because the handle's place has to agree with where the style looks for clicks.
void makeSlim(QScrollBar* bar) {
    bar->setStyleSheet(
        QStringLiteral("QScrollBar:vertical { background: transparent; width: %1px; }").arg(slimBarWidth) +
        "QScrollBar::handle:vertical { background: rgba(128, 128, 134, 130); border-radius: 3px;"
        " margin: 3px; min-height: 32px; }"
        "QScrollBar::handle:vertical:hover { background: rgba(128, 128, 134, 200); }"
        "QScrollBar::add-line, QScrollBar::sub-line { height: 0; }"
        "QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }");
}

} // namespace hopsel::design
