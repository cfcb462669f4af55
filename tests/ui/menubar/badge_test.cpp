// The badge on the grounds that panels have, by its pixels.
#include "ui/design/symbols.h"
#include "ui/menubar/badge_renderer.h"

#include <QPainter>
#include <cmath>
#include <gtest/gtest.h>

namespace hopsel {
namespace {

constexpr double readable = 4.5; // to one, as the accessibility guidelines ask of text

double luminance(const QColor& color) {
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const double a = luminance(one) + 0.05, b = luminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

QImage on(const QColor& ground, const QImage& badge) {
    QImage all(badge.size(), QImage::Format_RGB32);
    all.fill(ground);
    QPainter(&all).drawImage(0, 0, badge);
    return all;
}

/// The share of pixels that can be told from the colour.
double shareAgainst(const QColor& color, const QImage& picture) {
    int count = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (contrast(picture.pixelColor(x, y), color) >= readable) ++count;
    return double(count) / (picture.width() * picture.height());
}

/// Without what surrounds the labels.
QImage inner(const QImage& badge) {
    const int margin = badge.width() / 4;
    return badge.copy(badge.rect().adjusted(margin, margin, -margin, -margin));
}

TEST(SquareBadge, CanBeReadOnAnyPanelAtEverySize) {
    for (const int pixels : {16, 22, 24, 32, 48}) {
        const int side = badge_renderer::symbolSide(pixels);
        const QImage pause = design::symbolPixmap("pause.circle", {side, side}, Qt::black, 1).toImage();
        const std::pair<const char*, QImage> badges[] = {
            {"single", badge_renderer::square(StatusBadge::single("A"), pixels)},
            {"pair", badge_renderer::square({"한", "A", true}, pixels)},
            {"symbol", badge_renderer::square(pause, pixels)}};
        for (const auto& [name, badge] : badges) {
            for (const char* ground : {"white", "black", "#808080", "#3465a4", "#2e3436", "#eff0f1"}) {
                const QImage seen = on(ground, badge);
                EXPECT_GE(shareAgainst(ground, seen), 0.12) << name << " at " << pixels << " on " << ground;
            }
            // Whatever is behind it, the label stands on a ground of its own.
            const QImage label = inner(on("#808080", badge));
            EXPECT_GE(shareAgainst(Qt::white, label), 0.1) << name << " at " << pixels;
            EXPECT_GE(shareAgainst(Qt::black, label), 0.1) << name << " at " << pixels;
        }
    }
}

TEST(SquareBadge, TellsWhichOfTwoIsCurrent) {
    EXPECT_NE(badge_renderer::square({"A", "B", true}, 32), badge_renderer::square({"A", "B", false}, 32));
}

} // namespace
} // namespace hopsel
