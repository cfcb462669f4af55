// A scroll bar that is only a thin rounded handle, in light and dark alike.
#pragma once

#include <QScrollBar>

namespace hopsel::design {

void makeSlim(QScrollBar* bar);

} // namespace hopsel::design
