#include "ui/settings/rules/rule_row_layout.h"

#include <algorithm>
#include <numeric>

namespace hopsel::rule_row_layout {

namespace {

struct Part {
    Cell cell;
    QRect* place;
    bool isAtEnd = false; ///< goes to the right end of its line
};
using Line = std::vector<Part>;
using Lines = std::vector<Line>;

int sum(const Line& line, int Cell::* width, int spacing) {
    const int gaps = line.empty() ? 0 : (static_cast<int>(line.size()) - 1) * spacing;
    return std::accumulate(line.begin(), line.end(), gaps,
                           [&](int total, const Part& part) { return total + part.cell.*width; });
}

/// The widths of the parts of one line: what they want, then the rest shared, or what is lacking taken away,
/// evenly among those that can.
std::vector<int> widths(const Line& line, int room, int spacing) {
    std::vector<int> result;
    for (const Part& part : line) result.push_back(part.cell.wanted);
    int left = room - sum(line, &Cell::wanted, spacing);
    while (left != 0) {
        std::vector<std::size_t> able;
        for (std::size_t i = 0; i < line.size(); ++i) {
            const bool isAble =
                left > 0 ? result[i] < line[i].cell.largest : result[i] > line[i].cell.smallest;
            if (isAble) able.push_back(i);
        }
        if (able.empty()) break;
        const int share = std::max(1, std::abs(left) / static_cast<int>(able.size()));
        for (const std::size_t i : able) {
            if (left == 0) break;
            const Cell& cell = line[i].cell;
            const int change = left > 0 ? std::min({share, cell.largest - result[i], left})
                                        : -std::min({share, result[i] - cell.smallest, -left});
            result[i] += change;
            left -= change;
        }
    }
    return result;
}

/// Returns the height of the line.
int place(const Line& line, int left, int top, int room, int spacing) {
    int height = 0;
    for (const Part& part : line) height = std::max(height, part.cell.height);
    const std::vector<int> widthOf = widths(line, room, spacing);
    int x = left;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const Part& part = line[i];
        if (part.isAtEnd) x = std::max(x, left + room - widthOf[i]);
        *part.place = {x, top + (height - part.cell.height) / 2, widthOf[i], part.cell.height};
        x += widthOf[i] + spacing;
    }
    return height;
}

template <class List>
List joined(List first, const List& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// What comes after the sources on lines of its own: side by side, else each note on one line and the button
/// behind the last of them, if it can be.
Lines tailLines(const Line& notes, const Line& remove, int room, int spacing) {
    if (sum(joined(notes, remove), &Cell::wanted, spacing) <= room) return {joined(notes, remove)};
    Lines lines;
    for (const Part& note : notes) lines.push_back({note});
    if (!lines.empty() && sum(joined(lines.back(), remove), &Cell::smallest, spacing) <= room)
        lines.back() = joined(lines.back(), remove);
    else
        lines.push_back(remove);
    return lines;
}

} // namespace

Places arrange(const Parts& parts, int width, int spacing) {
    Places places;
    places.notes.resize(parts.notes.size());
    const Line head{{parts.toggle, &places.toggle}, {parts.trigger, &places.trigger}};
    const Line a{{parts.sourceA, &places.sourceA}};
    const Line b{{parts.sourceB, &places.sourceB}};
    const Line remove{{parts.remove, &places.remove, true}};
    Line notes;
    for (std::size_t i = 0; i < parts.notes.size(); ++i) notes.push_back({parts.notes[i], &places.notes[i]});

    const int indent = parts.toggle.wanted + spacing;
    const auto fits = [&](const Line& line, int room) { return sum(line, &Cell::wanted, spacing) <= room; };
    const Line sources = joined(a, b);

    const int room = width - indent; // of the lines after the first
    const Line tail = joined(notes, remove);
    const bool hasNotes = !notes.empty();

    Lines lines;
    if (const Line whole = joined(joined(head, sources), tail); fits(whole, width))
        lines = {whole};
    else if (hasNotes && fits(joined(head, sources), width))
        lines = joined({joined(head, sources)}, tailLines(notes, remove, room, spacing));
    else if (fits(joined(sources, tail), room))
        lines = {head, joined(sources, tail)};
    else if (hasNotes && fits(sources, room))
        lines = joined({head, sources}, tailLines(notes, remove, room, spacing));
    else if (!hasNotes && sum(joined(b, remove), &Cell::smallest, spacing) <= room)
        lines = {head, a, joined(b, remove)};
    else
        lines = joined({head, a, b}, tailLines(notes, remove, room, spacing));

    for (const Line& line : lines) {
        if (places.height > 0) places.height += spacing;
        const int left = &line == &lines.front() ? 0 : indent;
        places.height += place(line, left, places.height, width - left, spacing);
    }
    return places;
}

} // namespace hopsel::rule_row_layout
