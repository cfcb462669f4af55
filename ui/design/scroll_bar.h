// A scroll bar that is only a thin rounded handle, in light and dark alike.
#pragma once

#include <QScrollBar>

namespace hopsel::design {

inline constexpr int slimBarWidth = 12;

void makeSlim(QScrollBar* bar);

} // namespace hopsel::design
