// The painter behind the drawing surface: pixels on an image, and a printed page.
#include "scene/paintersurface.h"

#include "shell/sessionstate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace orv {
namespace {

constexpr std::int32_t red = 0x0000FF, blue = 0xFF0000, white = 0xFFFFFF;

// Something of everything, dense.
void scribble(DrawSurface& s, unsigned seed, int rounds) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> x(-30, 230), y(-20, 170), size(0, 40);
    std::uniform_int_distribution<std::int32_t> colour(0, white), width(-2, 6), coin(0, 1);
    for (int i = 0; i < rounds; ++i) {
        s.setDrawWidth(std::max(1, width(random)));
        s.setDrawStyle(coin(random) == 0 ? drawstyle::dotted : drawstyle::solid);
        s.setFillStyle(coin(random) == 0 ? fillstyle::solid : fillstyle::transparent);
        s.setFillColor(colour(random));
        s.setForeColor(colour(random));
        s.line(x(random), y(random), x(random), y(random));
        s.circle(x(random), y(random), size(random));
        s.box(x(random), y(random), x(random), y(random));
        s.filledBox(x(random), y(random), x(random), y(random), colour(random));
        s.plot(x(random), y(random));
    }
    s.setDrawWidth(1);
    s.setDrawStyle(drawstyle::solid);
}

QImage snapshot(paintersurface& picture) {
    return picturecontents(picture).copy();
}

int pixelsof(const QImage& image, std::int32_t colour) {
    const QRgb wanted = qRgb(colour & 255, colour >> 8 & 255, colour >> 16 & 255);
    int found = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) found += image.pixel(x, y) == wanted;
    return found;
}

QRect extentof(const QImage& image) {
    QRect extent;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != qRgb(255, 255, 255)) extent |= QRect(x, y, 1, 1);
    return extent;
}

TEST(paintersurface, Reversiblemodesrestoreeverypixel) {
    for (const double ratio : {1.0, 2.0})
        for (const int mode : {drawmodexor, drawmodeinversexor})
            for (unsigned seed = 1; seed <= 25; ++seed) {
                paintersurface picture(200, 150, ratio);
                DrawSurface& s = picture.surface;
                scribble(s, seed, 10);
                s.setTextPoint(20, 60);
                s.text("Orvanta 12345");
                const QImage before = snapshot(picture);
                s.setDrawMode(mode);
                scribble(s, 1000 + seed, 7);
                ASSERT_NE(snapshot(picture), before);
                scribble(s, 1000 + seed, 7);
                ASSERT_EQ(snapshot(picture), before)
                    << "ratio " << ratio << " mode " << mode << " seed " << seed;
            }
}

TEST(paintersurface, Modesmixcolours) {
    paintersurface picture(20, 20, 1);
    DrawSurface& s = picture.surface;
    s.filledBox(0, 0, 9, 19, 0x123456);
    s.setDrawMode(drawmodexor);
    s.line(0, 5, 9, 5, 0x0000FF);
    s.setDrawMode(drawmodeinversexor);
    s.line(0, 7, 9, 7, 0x0000FF);
    const QImage image = snapshot(picture);
    EXPECT_EQ(image.pixel(4, 5), qRgb(0x56 ^ 0xFF, 0x34, 0x12));
    EXPECT_EQ(image.pixel(4, 7), qRgb(0x56, 0x34 ^ 0xFF, 0x12 ^ 0xFF));
}

TEST(paintersurface, Pixelsatbothratios) {
    for (const int ratio : {1, 2}) {
        SCOPED_TRACE(ratio);
        paintersurface picture(100, 80, ratio);
        DrawSurface& s = picture.surface;
        s.line(10, 20, 30, 20, red); // ends included, as thick as a pixel of the screen
        EXPECT_NEAR(pixelsof(snapshot(picture), red), (20 * ratio + 1) * ratio, ratio);
        s.clear();
        s.setFillStyle(fillstyle::solid);
        s.setFillColor(blue);
        s.circle(50, 40, 15, red);
        const QRect circle = extentof(snapshot(picture));
        EXPECT_NEAR(circle.width(), 30 * ratio + 1, ratio);
        EXPECT_EQ(circle.width(), circle.height());
        EXPECT_EQ(snapshot(picture).pixel(50 * ratio, 40 * ratio), qRgb(0, 0, 255));
        s.clear();
        s.circle(50, 40, 0.1, red); // the smallest is a point
        EXPECT_GT(pixelsof(snapshot(picture), red), 0);

        // What is measured is what is painted, in letters of the code page.
        const std::string euro = "\x80 Helgoland";
        s.clear();
        s.setTextPoint(20, 30);
        s.text(euro);
        const QRect text = extentof(snapshot(picture));
        EXPECT_NEAR(text.left(), 20 * ratio, 3 * ratio);
        EXPECT_NEAR(text.width(), s.textWidth(euro) * ratio, 3 * ratio);
        EXPECT_GE(text.top(), 30 * ratio);
    }
}

// Circles are copied from pixels kept; each must be what a painter makes of it, also at the edges.
TEST(paintersurface, Circlesarethepainters) {
    paintersurface picture(120, 90, 2);
    DrawSurface& s = picture.surface;
    s.setFillStyle(fillstyle::solid);
    s.setFillColor(blue);
    for (const double radius : {0.5, 7.0, 7.0, 30.0, 49.0}) {
        s.clear();
        QImage expected(240, 180, QImage::Format_RGB32);
        expected.fill(Qt::white);
        QPainter painter(&expected);
        painter.setPen(QPen(Qt::red, 2, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.setBrush(Qt::blue);
        const int r = static_cast<int>(2 * radius);
        for (const QPoint middle : {QPoint(120, 90), QPoint(0, 179), QPoint(234, 4)}) {
            s.circle(middle.x() / 2.0, middle.y() / 2.0, radius, red);
            painter.drawEllipse(middle.x() - r, middle.y() - r, 2 * r, 2 * r);
        }
        EXPECT_EQ(snapshot(picture), expected) << radius;
    }
    // Pens of the same pixels at two scales have other ends.
    const auto dotted = [](paintersurface& on, double width, double radius) {
        resizepicture(on, 120, 90, 2 / width);
        on.surface.setFillStyle(fillstyle::transparent);
        on.surface.setDrawStyle(drawstyle::dotted);
        on.surface.setDrawWidth(width);
        on.surface.clear();
        on.surface.circle(30, 30, radius, red);
    };
    paintersurface fresh(120, 90, 1);
    dotted(picture, 1, 7);
    dotted(picture, 2, 14);
    dotted(fresh, 2, 14);
    EXPECT_EQ(snapshot(picture), snapshot(fresh));
}

TEST(paintersurface, Keepsandresizes) {
    paintersurface picture(60, 40, 1);
    DrawSurface& s = picture.surface;
    s.setWindow(-1, 1, 1, -1);
    s.line(-1, 0, 0, 0, red);
    const QImage before = snapshot(picture);
    s.keep();
    s.circle(0, 0, 0.5, blue); // the kept picture is its own
    s.restore();
    EXPECT_EQ(snapshot(picture), before);
    resizepicture(picture, 90, 80, 2);
    EXPECT_EQ(snapshot(picture).pixel(10, 20), qRgb(255, 0, 0)); // what was there stays where it was
    s.clear();
    s.line(-1, 0, 1, 0, red);
    EXPECT_EQ(extentof(snapshot(picture)).width(), 180);
}

// What a map draws twice looks as if drawn once, also where cells have covered half of a text between.
TEST(paintersurface, Textsofmapsarenotbold) {
    paintersurface once(120, 40, 1), twice(120, 40, 1);
    const auto cells = [](DrawSurface& s) { s.filledBox(0, 0, 30, 39, 0x80FF40); };
    const auto label = [](DrawSurface& s) {
        s.setTextPoint(5, 5);
        s.textLine("-100.0");
    };
    SessionState.mapInProgress = true;
    label(twice.surface);
    cells(twice.surface);
    label(twice.surface);
    label(twice.surface);
    SessionState.mapInProgress = false;
    cells(once.surface);
    label(once.surface);
    EXPECT_EQ(snapshot(twice), snapshot(once));
}

} // namespace
} // namespace orv
