// Where the parts of a rule's row go: side by side where there is room, else over several lines. Pure.
#pragma once

#include <QRect>
#include <vector>

namespace hopsel::rule_row_layout {

/// How wide a part is: at least, better, and at most.
struct Cell {
    int smallest = 0;
    int wanted = 0;
    int largest = 0;
    int height = 0;
};

struct Parts {
    Cell toggle;
    Cell trigger;
    Cell sourceA;
    Cell sourceB;
    std::vector<Cell> notes;
    Cell remove;
};

struct Places {
    QRect toggle;
    QRect trigger;
    QRect sourceA;
    QRect sourceB;
    std::vector<QRect> notes;
    QRect remove;
    int height = 0;
};

/// In the order of reading; the button that removes the rule is the last, at the right end of its line. Lines
/// after the first begin where the trigger does.
Places arrange(const Parts& parts, int width, int spacing);

} // namespace hopsel::rule_row_layout
