// The colour table of the scheme "R-G-B" and its file RGB.BIN:
//
//     offset  0   16 colours 0x00BBGGRR, entries 0..15
//     offset 64   the gridding method, 1..6
//
// All are 32-bit integers with the lowest byte first, 68 bytes in all. An empty file stands for the start
// values; of a colour the highest byte is ignored.
#include "maps/rgbsettings.h"

#include "base/files.h"
#include "base/runtimeerror.h"
#include "maps/gridding.h"
#include "platform/platform.h"
#include "shell/sessionstate.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace orv {

namespace {

// Colours of the "R-G-B" scheme, lowest level first.
constexpr std::array<std::int32_t, 17> startcolours = {
    QBColor(0),  rgb(32, 32, 32), rgb(64, 64, 64), QBColor(8),  QBColor(1),  QBColor(9),
    QBColor(2),  QBColor(6),      QBColor(10),     QBColor(3),  QBColor(11), QBColor(5),
    QBColor(13), QBColor(4),      QBColor(12),     QBColor(14), QBColor(14)};

constexpr std::size_t storedsize = 4;
constexpr std::int32_t colourbits = 0x00FFFFFF;

std::string colourfile() {
    return existingpath(joinpath(SessionState.dataDirectory, "RGB.BIN"));
}

std::int32_t storedinteger(std::string_view bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = storedsize; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return static_cast<std::int32_t>(value);
}

void appendinteger(std::string& bytes, std::int32_t value) {
    for (std::size_t i = 0; i < storedsize; ++i)
        bytes += static_cast<char>(static_cast<std::uint32_t>(value) >> 8 * i & 255);
}

} // namespace

void RGBOpt() {
    platform::showwindow("RGB Settings", true);
}

void loadcolourtable() {
    SessionState.rgbTable = startcolours;
    SessionState.surferMethod = 0;
    const std::string path = colourfile();
    if (!canopen(path)) {
        replacefile(path, "");
        return;
    }
    const filebytes file = readfile(path);
    const std::string_view bytes = file;
    for (std::size_t i = 0; i <= storedcolours && (i + 1) * storedsize <= bytes.size(); ++i) {
        const std::int32_t value = storedinteger(bytes.substr(i * storedsize, storedsize));
        if (i < storedcolours)
            SessionState.rgbTable[i] = value & colourbits;
        else
            SessionState.surferMethod = value;
    }
}

void savecolourtable() {
    std::string bytes;
    for (std::size_t i = 0; i < storedcolours; ++i) appendinteger(bytes, SessionState.rgbTable[i]);
    appendinteger(bytes, usablemethod(SessionState.surferMethod));
    replacefile(colourfile(), bytes);
}

void clickcolourentry(int entry) {
    std::int32_t& colour = SessionState.rgbTable.at(static_cast<std::size_t>(entry));
    untilcancelled([&] { colour = platform::askcolour(colour); });
}

void keepcolourtable() {
    try {
        savecolourtable();
    } catch (const runtimeerror& error) {
        platform::warningbox("RGB Settings", error.text + " The colours are kept for this session only.");
    }
}

std::int32_t usablemethod(std::int32_t method) {
    return static_cast<std::int32_t>(methodof(method));
}

} // namespace orv
