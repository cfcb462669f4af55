#include "ui/menubar/badge_renderer.h"

#include <gtest/gtest.h>

namespace hopsel {
namespace {

const StatusBadge firstCurrent{"A", "B", true};
const StatusBadge secondCurrent{"A", "B", false};

int alpha(const QImage& image, int x, int y) { return qAlpha(image.pixel(x, y)); }

int holes(const QImage& image, const QRect& area) {
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x) count += alpha(image, x, y) < 64 ? 1 : 0;
    return count;
}

TEST(WideBadge, OfTwoLabelsFillsTheCurrentHalfAndOutlinesTheOther) {
    const QImage left = badge_renderer::wide(firstCurrent, Qt::red);
    const QImage right = badge_renderer::wide(secondCurrent, Qt::red);
    EXPECT_EQ(left.size(), QSize(40, 16));
    EXPECT_EQ(badge_renderer::wide(firstCurrent, Qt::red, 2).size(), QSize(80, 32));
    EXPECT_EQ(left.pixelColor(18, 3), QColor(Qt::red));
    EXPECT_EQ(alpha(left, 21, 3), 0);
    EXPECT_EQ(alpha(right, 18, 3), 0);
    EXPECT_EQ(alpha(right, 21, 3), 255);
    // The line is 1.5 wide around an outline at 0.75: a whole pixel and half of one.
    EXPECT_EQ(alpha(left, 25, 0), 255);
    EXPECT_NEAR(alpha(left, 25, 1), 127, 2);
    EXPECT_EQ(alpha(left, 25, 2), 0);
    EXPECT_EQ(alpha(left, 1, 1), 0) << "the ends are round";
}

TEST(WideBadge, OfOneLabelIsFilledFromThreeQuartersOfAPoint) {
    const QImage image = badge_renderer::wide(StatusBadge::single("A"), Qt::black, 4);
    EXPECT_EQ(image.size(), QSize(88, 64));
    EXPECT_EQ(alpha(image, 2, 32), 0);
    EXPECT_EQ(alpha(image, 3, 32), 255);
    EXPECT_EQ(alpha(image, 84, 32), 255);
    EXPECT_EQ(alpha(image, 85, 32), 0);
    // Corners with a radius of 4: the arc crosses the diagonal at 0.75 + 4 * (1 - 0.707) = 1.92 points.
    EXPECT_EQ(alpha(image, 6, 6), 0);
    EXPECT_EQ(alpha(image, 8, 8), 255);
    EXPECT_GT(holes(image, {32, 12, 24, 40}), 40) << "the letter is cut out";
}

// The same letter is a hole in the one and ink in the other, so that together they fill the inside.
void expectInverse(const QImage& one, const QImage& other, const QRect& inside) {
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        for (int x = inside.left(); x <= inside.right(); ++x)
            EXPECT_NEAR(alpha(one, x, y) + alpha(other, x, y), 255, 2) << x << ", " << y;
    const QRect left(inside.topLeft(), QSize(inside.width() / 2, inside.height()));
    const QRect right = left.translated(left.width(), 0);
    EXPECT_GT(holes(one, left), 10);
    EXPECT_GT(holes(other, right), 10);
}

TEST(Badge, CutsTheCurrentLabelOutAndDrawsTheOtherIfItIsLegible) {
    const auto square = [](const StatusBadge& badge, int pixels) {
        return badge_renderer::square(badge, pixels, Qt::black);
    };
    expectInverse(badge_renderer::wide(firstCurrent, Qt::black, 2),
                  badge_renderer::wide(secondCurrent, Qt::black, 2), {10, 5, 60, 22});
    for (const int pixels : {32, 48, 64})
        expectInverse(square(firstCurrent, pixels), square(secondCurrent, pixels),
                      {pixels / 8, pixels / 4 + 1, pixels * 3 / 4, pixels / 2 - 2});
    for (const int pixels : {16, 22, 24}) {
        EXPECT_EQ(square(firstCurrent, pixels), square(StatusBadge::single("A"), pixels));
        EXPECT_EQ(square(secondCurrent, pixels), square(StatusBadge::single("B"), pixels));
    }
}

} // namespace
} // namespace hopsel
