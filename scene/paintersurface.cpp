// The drawing surface over Qt's painter. Lines of one pen are gathered and painted together, since a painter
// has much to do for each call.
#include "scene/paintersurface.h"

#include "base/files.h"
#include "shell/sessionstate.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QString>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>
#include <utility>

namespace orv {

namespace {

constexpr int textsize = 13;            // pixels
constexpr double screendpi = 96;        // at which a printed pixel is a screen's
constexpr std::size_t mostlines = 4096; // gathered at most
constexpr int largeststamp = 100;       // radius of a circle in device pixels; larger ones are no markers
constexpr std::size_t mosttexts = 1024; // of a map, remembered at most

paintersurface& owner(void* context) {
    return *static_cast<paintersurface*>(context);
}

QColor colourof(std::int32_t colour) {
    return QColor(colour & 255, colour >> 8 & 255, colour >> 16 & 255);
}

int pixel(double position) {
    return static_cast<int>(std::floor(position));
}

void touch(paintersurface& to) {
    if (to.touched) return;
    to.touched = true;
    if (to.changed) to.changed();
}

void flush(paintersurface& to) {
    if (to.lines.empty()) return;
    to.painter.drawLines(to.lines.data(), static_cast<int>(to.lines.size()));
    to.lines.clear();
}

bool samepen(const surfacepen& a, const surfacepen& b) {
    return a.colour == b.colour && a.width == b.width && a.style == b.style && a.mode == b.mode;
}

QPainter::CompositionMode compositionof(const paintersurface& to, int mode) {
    if (to.image.isNull()) return QPainter::CompositionMode_SourceOver;
    switch (mode) {
    case drawmodexor:
        return QPainter::RasterOp_SourceXorDestination;
    case drawmodeinversexor:
        return QPainter::RasterOp_NotSourceXorDestination;
    default:
        return QPainter::CompositionMode_SourceOver;
    }
}

bool iswide(const paintersurface& to, const surfacepen& pen) {
    return pen.width > to.surface.scale;
}

QPen penof(const paintersurface& to, const surfacepen& pen, const QColor& colour) {
    return QPen(colour, pen.width, pen.style == drawstyle::dotted ? Qt::DotLine : Qt::SolidLine,
                iswide(to, pen) ? Qt::FlatCap : Qt::SquareCap, Qt::MiterJoin);
}

void usepen(paintersurface& to, const surfacepen& pen) {
    if (to.penset && samepen(to.pen, pen)) return;
    flush(to);
    if (!to.penset || to.pen.mode != pen.mode) to.painter.setCompositionMode(compositionof(to, pen.mode));
    to.painter.setPen(penof(to, pen, colourof(pen.colour)));
    to.pen = pen;
    to.penset = true;
}

void clear(void* context, std::int32_t colour) {
    paintersurface& to = owner(context);
    to.lines.clear();
    to.standing.clear();
    to.painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    to.painter.fillRect(QRectF(0, 0, to.surface.deviceWidth, to.surface.deviceHeight), colourof(colour));
    to.penset = false;
    touch(to);
}

void line(void* context, const surfacepen& pen, double x1, double y1, double x2, double y2) {
    paintersurface& to = owner(context);
    usepen(to, pen);
    if (iswide(to, pen)) {
        // It has the pixels of its ends like a plain one, so that thick lines end to end, the strips of a
        // map, leave no pixel between.
        flush(to);
        QLineF stroke(pixel(x1), pixel(y1), pixel(x2), pixel(y2));
        const double length = stroke.length();
        if (length > 0) {
            const QPointF half = (stroke.p2() - stroke.p1()) * (0.5 / length);
            stroke = QLineF(stroke.p1() - half, stroke.p2() + half);
        }
        to.painter.drawLine(stroke);
        return touch(to);
    }
    to.lines.emplace_back(pixel(x1), pixel(y1), pixel(x2), pixel(y2));
    if (to.lines.size() == mostlines) flush(to);
    touch(to);
}

void plot(void* context, const surfacepen& pen, double x, double y) {
    line(context, pen, x, y, x, y);
}

// The outline covers the corners' pixels; the inside lies within it, so that no pixel is painted twice.
void box(void* context, const surfacepen& pen, const std::int32_t* fill, double x1, double y1, double x2,
         double y2) {
    paintersurface& to = owner(context);
    const QRect frame(QPoint(pixel(x1), pixel(y1)), QPoint(pixel(x2), pixel(y2)));
    if (fill && *fill == pen.colour && pen.style == drawstyle::solid && pen.mode == drawmodecopy) {
        // One colour within and around, as the cells of maps are.
        if (!to.penset || to.pen.mode != drawmodecopy) usepen(to, pen);
        flush(to);
        const double around = (pen.width - 1) / 2;
        to.painter.fillRect(QRectF(frame).adjusted(-around, -around, around, around), colourof(*fill));
        return touch(to);
    }
    usepen(to, pen);
    flush(to);
    if (fill) to.painter.fillRect(frame.adjusted(1, 1, -1, -1), colourof(*fill));
    to.painter.drawRect(frame.adjusted(0, 0, -1, -1));
    touch(to);
}

void filledbox(void* context, const surfacepen& pen, double x1, double y1, double x2, double y2) {
    paintersurface& to = owner(context);
    usepen(to, pen);
    flush(to);
    to.painter.fillRect(QRect(QPoint(pixel(x1), pixel(y1)), QPoint(pixel(x2), pixel(y2))),
                        colourof(pen.colour));
    touch(to);
}

QRect squareabout(int x, int y, int radius) {
    return QRect(x - radius, y - radius, 2 * radius, 2 * radius);
}

// Has a painter draw the circle in two colours on a sheet of its own, and takes the runs from there.
void makestamp(paintersurface& to, const surfacepen& pen, int radius) {
    circlestamp& stamp = to.stamp;
    const double scale = to.surface.scale;
    if (stamp.radius == radius && stamp.penwidth == pen.width && stamp.scale == scale &&
        stamp.style == pen.style)
        return;
    stamp = {radius, pen.width, scale, pen.style, {}};
    const int middle = radius + static_cast<int>(std::ceil(pen.width)) + 1, size = 2 * middle + 1;
    constexpr QRgb paper = qRgb(255, 255, 255), inside = qRgb(0, 0, 255);
    QImage sheet(size, size, QImage::Format_RGB32);
    sheet.fill(paper);
    {
        QPainter painter(&sheet);
        painter.setPen(penof(to, pen, Qt::black));
        painter.setBrush(QColor(inside));
        painter.drawEllipse(squareabout(middle, middle, radius));
    }
    for (int y = 0; y < size; ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(sheet.constScanLine(y));
        for (int x = 0, next = 0; x < size; x = next) {
            while (next < size && row[next] == row[x]) ++next;
            if (row[x] != paper) stamp.runs.push_back({x - middle, y - middle, next - x, row[x] == inside});
        }
    }
}

void paintrun(QRgb* from, QRgb* to, QRgb colour, int mode) {
    constexpr QRgb opaque = 0xFF000000;
    if (mode == drawmodexor)
        for (; from < to; ++from) *from = (*from ^ colour) | opaque;
    else if (mode == drawmodeinversexor)
        for (; from < to; ++from) *from = ~(*from ^ colour) | opaque;
    else
        std::fill(from, to, colour);
}

void paintstamp(paintersurface& to, const surfacepen& pen, const std::int32_t* fill, int cx, int cy) {
    const QRgb outline = colourof(pen.colour).rgb(), inside = fill ? colourof(*fill).rgb() : 0;
    const int width = to.image.width(), height = to.image.height();
    for (const circlestamp::run& run : to.stamp.runs) {
        const int y = cy + run.y, from = std::max(cx + run.x, 0),
                  end = std::min(cx + run.x + run.length, width);
        if (y < 0 || y >= height || from >= end || (run.inside && !fill)) continue;
        auto* const row = reinterpret_cast<QRgb*>(to.image.scanLine(y));
        paintrun(row + from, row + end, run.inside ? inside : outline, pen.mode);
    }
}

void circle(void* context, const surfacepen& pen, const std::int32_t* fill, double x, double y,
            double radius) {
    paintersurface& to = owner(context);
    const int r = static_cast<int>(std::lround(radius)), cx = pixel(x), cy = pixel(y);
    if (r == 0) return plot(context, pen, x, y);
    if (r <= largeststamp && !to.image.isNull()) {
        flush(to);
        makestamp(to, pen, r);
        paintstamp(to, pen, fill, cx, cy);
        return touch(to);
    }
    usepen(to, pen);
    flush(to);
    if (fill) to.painter.setBrush(colourof(*fill));
    to.painter.drawEllipse(squareabout(cx, cy, r));
    if (fill) to.painter.setBrush(Qt::NoBrush);
    touch(to);
}

std::size_t code(char byte) {
    return static_cast<unsigned char>(byte);
}

void drawglyphs(paintersurface& to, const QPointF& start, std::string_view words) {
    constexpr std::size_t most = 64; // glyphs in one run
    std::array<quint32, most> index;
    std::array<QPointF, most> place;
    double along = 0;
    while (!words.empty()) {
        const std::string_view run = words.substr(0, most);
        words.remove_prefix(run.size());
        for (std::size_t i = 0; i < run.size(); ++i) {
            index[i] = to.glyph[code(run[i])];
            place[i] = QPointF(along, 0);
            along += to.advance[code(run[i])];
        }
        QGlyphRun glyphs;
        glyphs.setRawFont(to.glyphs);
        glyphs.setRawData(index.data(), place.data(), static_cast<int>(run.size()));
        to.painter.drawGlyphRun(start, glyphs);
    }
}

// Takes a text away where it stands as it was drawn.
void takeaway(QImage& image, const QRect& place, const paintersurface::standingtext& text) {
    const auto row = [](const QImage& pixels, int y) {
        return reinterpret_cast<const QRgb*>(pixels.constScanLine(y));
    };
    for (int y = 0; y < place.height(); ++y) {
        QRgb* now = reinterpret_cast<QRgb*>(image.scanLine(place.y() + y)) + place.x();
        const QRgb *before = row(text.before, y), *with = row(text.with, y);
        for (int x = 0; x < place.width(); ++x)
            if (now[x] == with[x]) now[x] = before[x];
    }
}

// Draws a text of a map, the same one as if for the first time.
void drawonce(paintersurface& to, std::int32_t colour, const QPointF& start, std::string_view words) {
    const QPoint at = start.toPoint(); // texts begin on whole pixels
    std::string key = std::to_string(colour) + ' ' + std::to_string(at.x()) + ' ' + std::to_string(at.y());
    key.append(1, ' ').append(words);
    const auto found = to.standing.find(key);
    constexpr double overhang = 3; // of a glyph beyond its box
    const double wide = to.surface.device.textwidth(&to, words);
    const QRect place = QRectF(start.x(), start.y() - to.ascent, wide, to.surface.device.lineheight)
                            .adjusted(-overhang, -overhang, overhang, overhang)
                            .toAlignedRect() &
                        to.image.rect();
    const bool stands = found != to.standing.end();
    if (place.isEmpty() || (!stands && to.standing.size() >= mosttexts)) return drawglyphs(to, start, words);
    if (stands) takeaway(to.image, place, found->second);
    QImage before = to.image.copy(place);
    drawglyphs(to, start, words);
    to.standing[key] = {std::move(before), to.image.copy(place)};
}

void text(void* context, const surfacepen& pen, double x, double y, std::string_view words) {
    paintersurface& to = owner(context);
    surfacepen plain = pen;
    plain.mode = drawmodecopy;
    usepen(to, plain);
    flush(to);
    const QPointF start(std::round(x), std::round(y) + to.ascent);
    if (to.image.isNull()) {
        QString string;
        for (const char byte : words) string += QChar(to.character[code(byte)]);
        to.painter.drawText(start, string);
        return;
    }
    if (SessionState.mapInProgress)
        drawonce(to, pen.colour, start, words);
    else
        drawglyphs(to, start, words);
    touch(to);
}

double textwidth(void* context, std::string_view words) {
    const paintersurface& to = owner(context);
    return std::accumulate(words.begin(), words.end(), 0.0,
                           [&](double sum, char byte) { return sum + to.advance[code(byte)]; });
}

void keep(void* context) {
    paintersurface& to = owner(context);
    flush(to);
    if (to.kept.size() != to.image.size()) to.kept = QImage(to.image.size(), to.image.format());
    std::memcpy(to.kept.bits(), to.image.constBits(), static_cast<std::size_t>(to.image.sizeInBytes()));
}

void restore(void* context) {
    paintersurface& to = owner(context);
    if (to.kept.isNull()) return;
    clear(context, to.surface.backColour);
    to.painter.drawImage(0, 0, to.kept);
}

// The font in the size of the surface's scale, and its measures.
void choosefont(paintersurface& to) {
    to.font = QFont();
    to.font.setPixelSize(static_cast<int>(std::lround(textsize * to.surface.scale)));
    to.font.setKerning(false);
    to.font.setStyleStrategy(QFont::NoSubpixelAntialias);
    to.font.setHintingPreference(QFont::PreferFullHinting);
    to.glyphs = QRawFont::fromFont(to.font);
    const QFontMetricsF metrics(to.font);
    to.ascent = std::ceil(metrics.ascent());
    to.surface.device.lineheight = to.ascent + std::ceil(metrics.descent());
    for (std::size_t byte = 0; byte < to.character.size(); ++byte) {
        const char page = static_cast<char>(byte);
        const QString string = QString::fromStdString(utf8text(std::string_view(&page, 1)));
        to.character[byte] = string.isEmpty() ? u'?' : string[0].unicode();
        const QList<quint32> indexes = to.glyphs.glyphIndexesForString(QString(QChar(to.character[byte])));
        to.glyph[byte] = indexes.isEmpty() ? 0 : indexes[0];
        to.advance[byte] = std::round(metrics.horizontalAdvance(QChar(to.character[byte])));
    }
}

void startpainting(paintersurface& to, QPaintDevice* on) {
    to.painter.begin(on);
    choosefont(to);
    to.painter.setFont(to.font);
    to.penset = false;
    to.surface.device = {.context = &to,
                         .clear = clear,
                         .window = nullptr,
                         .line = line,
                         .plot = plot,
                         .box = box,
                         .filledbox = filledbox,
                         .circle = circle,
                         .text = text,
                         .textwidth = textwidth,
                         .lineheight = to.surface.device.lineheight,
                         .keep = to.image.isNull() ? nullptr : keep,
                         .restore = to.image.isNull() ? nullptr : restore};
}

} // namespace

paintersurface::paintersurface(int width, int height, double ratio) {
    resizepicture(*this, width, height, ratio);
}

paintersurface::paintersurface(QPrinter& printer) {
    const QRectF page = printer.pageRect(QPrinter::DevicePixel);
    surface.resize(page.width(), page.height(), printer.resolution() / screendpi);
    startpainting(*this, &printer);
    painter.setClipRect(QRectF(0, 0, surface.deviceWidth, surface.deviceHeight)); // the margins stay white
}

void resizepicture(paintersurface& picture, int width, int height, double ratio) {
    const QSize size(std::max(1, static_cast<int>(std::lround(width * ratio))),
                     std::max(1, static_cast<int>(std::lround(height * ratio))));
    if (picture.painter.isActive()) {
        flush(picture);
        picture.painter.end();
    }
    const QImage former = picture.image;
    picture.image = QImage(size, QImage::Format_RGB32);
    picture.surface.resize(size.width(), size.height(), ratio);
    startpainting(picture, &picture.image);
    clear(&picture, picture.surface.backColour);
    if (!former.isNull()) picture.painter.drawImage(0, 0, former);
}

QImage picturecontents(paintersurface& picture) {
    flush(picture);
    picture.touched = false;
    const QImage& image = picture.image;
    QImage view(image.constBits(), image.width(), image.height(), image.bytesPerLine(), image.format());
    view.setDevicePixelRatio(picture.surface.scale);
    return view;
}

} // namespace orv
