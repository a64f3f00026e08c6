// Texts and paths between the core and Qt. For Qt files only.
#pragma once

#include "base/files.h"

#include <QColor>
#include <QString>

#include <cstdint>
#include <string>
#include <string_view>

namespace orv {

// The core's texts are bytes of the files' code page.
inline QString qttext(std::string_view page) {
    return QString::fromStdString(utf8text(page));
}
inline std::string coretext(const QString& text) {
    return pagetext(text.toStdString());
}

// Its paths are the file system's own bytes, and names of controls and commands are plain letters.
inline QString qtpath(std::string_view path) {
    return QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size()));
}
inline std::string corepath(const QString& path) {
    return path.toStdString();
}

// Its colours are 0x00BBGGRR.
inline QColor qtcolour(std::int32_t colour) {
    return QColor(colour & 255, colour >> 8 & 255, colour >> 16 & 255);
}
inline std::int32_t corecolour(const QColor& colour) {
    return colour.red() | colour.green() << 8 | colour.blue() << 16;
}

} // namespace orv
