// The contour file. A DXF drawing: pairs of lines, a group code and its value. Ahead of the entities stands
// what a program may ask of a drawing of release 2000 (header, tables, blocks), behind them its one
// dictionary. A line is
//
//     0 LWPOLYLINE      5 handle      100 AcDbEntity      8 layer     62 colour number
//   100 AcDbPolyline   90 count      70 0
//    10 x              20 y           count times; a closed line repeats its first point
#include "maps/contourfile.h"

#include "base/files.h"
#include "base/formatpattern.h"
#include "base/listoutput.h"

#include <array>
#include <charconv>
#include <string_view>

namespace orv {

namespace {

constexpr std::string_view coordinatepattern = "0.0#####";

struct group {
    int code;
    std::string_view value;
};

constexpr group beforehandles[] = {
    {0, "SECTION"},   {2, "HEADER"}, {9, "$ACADVER"},  {1, "AC1015"},
    {9, "$INSUNITS"}, {70, "6"},     {9, "$HANDSEED"},
};

// clang-format off
constexpr group beforeentities[] = {
    {0, "ENDSEC"}, {0, "SECTION"}, {2, "TABLES"},
    // Ways to look at it: one.
    {0, "TABLE"}, {2, "VPORT"}, {5, "1"}, {100, "AcDbSymbolTable"}, {70, "1"},
    {0, "VPORT"}, {5, "2"}, {100, "AcDbSymbolTableRecord"}, {100, "AcDbViewportTableRecord"},
    {2, "*ACTIVE"}, {70, "0"}, {10, "0.0"}, {20, "0.0"}, {11, "1.0"}, {21, "1.0"},
    {0, "ENDTAB"},
    // Line types
    {0, "TABLE"}, {2, "LTYPE"}, {5, "3"}, {100, "AcDbSymbolTable"}, {70, "3"},
    {0, "LTYPE"}, {5, "4"}, {100, "AcDbSymbolTableRecord"}, {100, "AcDbLinetypeTableRecord"},
    {2, "ByBlock"}, {70, "0"}, {3, ""}, {72, "65"}, {73, "0"}, {40, "0.0"},
    {0, "LTYPE"}, {5, "5"}, {100, "AcDbSymbolTableRecord"}, {100, "AcDbLinetypeTableRecord"},
    {2, "ByLayer"}, {70, "0"}, {3, ""}, {72, "65"}, {73, "0"}, {40, "0.0"},
    {0, "LTYPE"}, {5, "6"}, {100, "AcDbSymbolTableRecord"}, {100, "AcDbLinetypeTableRecord"},
    {2, "Continuous"}, {70, "0"}, {3, "Solid line"}, {72, "65"}, {73, "0"}, {40, "0.0"},
    {0, "ENDTAB"},
    // Layers
    {0, "TABLE"}, {2, "LAYER"}, {5, "7"}, {100, "AcDbSymbolTable"}, {70, "1"},
    {0, "LAYER"}, {5, "8"}, {100, "AcDbSymbolTableRecord"}, {100, "AcDbLayerTableRecord"}, {2, "0"},
    {70, "0"}, {62, "7"}, {6, "Continuous"},
    {0, "ENDTAB"},
    // Text styles
    {0, "TABLE"}, {2, "STYLE"}, {5, "9"}, {100, "AcDbSymbolTable"}, {70, "1"},
    {0, "STYLE"}, {5, "A"}, {100, "AcDbSymbolTableRecord"}, {100, "AcDbTextStyleTableRecord"},
    {2, "Standard"}, {70, "0"}, {40, "0.0"}, {41, "1.0"}, {50, "0.0"}, {71, "0"}, {42, "2.5"}, {3, "txt"},
    {4, ""}, {0, "ENDTAB"},
    {0, "TABLE"}, {2, "VIEW"}, {5, "B"}, {100, "AcDbSymbolTable"}, {70, "0"},
    {0, "ENDTAB"}, {0, "TABLE"}, {2, "UCS"}, {5, "C"}, {100, "AcDbSymbolTable"}, {70, "0"},
    {0, "ENDTAB"}, {0, "TABLE"}, {2, "APPID"}, {5, "D"}, {100, "AcDbSymbolTable"}, {70, "1"},
    {0, "APPID"}, {5, "E"}, {100, "AcDbSymbolTableRecord"}, {100, "AcDbRegAppTableRecord"}, {2, "ACAD"},
    {70, "0"}, {0, "ENDTAB"},
    {0, "TABLE"}, {2, "DIMSTYLE"}, {5, "F"}, {100, "AcDbSymbolTable"}, {70, "1"},
    {100, "AcDbDimStyleTable"},
    {0, "DIMSTYLE"}, {105, "10"}, {100, "AcDbSymbolTableRecord"}, {100, "AcDbDimStyleTableRecord"},
    {2, "Standard"}, {70, "0"},
    {0, "ENDTAB"},
    // Blocks: the two every drawing has
    {0, "TABLE"}, {2, "BLOCK_RECORD"}, {5, "11"}, {100, "AcDbSymbolTable"}, {70, "2"},
    {0, "BLOCK_RECORD"}, {5, "12"}, {100, "AcDbSymbolTableRecord"}, {100, "AcDbBlockTableRecord"},
    {2, "*Model_Space"},
    {0, "BLOCK_RECORD"}, {5, "13"}, {100, "AcDbSymbolTableRecord"}, {100, "AcDbBlockTableRecord"},
    {2, "*Paper_Space"},
    {0, "ENDTAB"}, {0, "ENDSEC"},
    {0, "SECTION"}, {2, "BLOCKS"},
    {0, "BLOCK"}, {5, "14"}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbBlockBegin"}, {2, "*Model_Space"},
    {70, "0"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {3, "*Model_Space"}, {1, ""},
    {0, "ENDBLK"}, {5, "15"}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbBlockEnd"},
    {0, "BLOCK"}, {5, "16"}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbBlockBegin"}, {2, "*Paper_Space"},
    {70, "0"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {3, "*Paper_Space"}, {1, ""},
    {0, "ENDBLK"}, {5, "17"}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbBlockEnd"},
    {0, "ENDSEC"}, {0, "SECTION"}, {2, "ENTITIES"},
};

constexpr group behindentities[] = {
    {0, "ENDSEC"}, {0, "SECTION"}, {2, "OBJECTS"},
    {0, "DICTIONARY"}, {5, "18"}, {330, "0"}, {100, "AcDbDictionary"}, {281, "1"}, {3, "ACAD_GROUP"},
    {350, "19"}, {0, "DICTIONARY"}, {5, "19"}, {330, "18"}, {100, "AcDbDictionary"}, {281, "1"},
    {0, "ENDSEC"}, {0, "EOF"},
};
// clang-format on
constexpr unsigned firsthandle = 0x1A; // the tables above have those before

void appendcode(std::string& text, int code) {
    constexpr std::size_t codewidth = 3;
    const std::string digits = std::to_string(code);
    if (digits.size() < codewidth) text.append(codewidth - digits.size(), ' ');
    text.append(digits).append(lineend);
}

void appendgroup(std::string& text, int code, std::string_view value) {
    appendcode(text, code);
    text.append(value).append(lineend);
}

void appendgroup(std::string& text, int code, double value) {
    appendcode(text, code);
    appendformatted(text, value, coordinatepattern);
    text += lineend;
}

template <std::size_t count>
void appendgroups(std::string& text, const group (&groups)[count]) {
    for (const group& one : groups) appendgroup(text, one.code, one.value);
}

std::string handletext(unsigned handle) {
    std::array<char, 16> digits;
    const auto end = std::to_chars(digits.begin(), digits.end(), handle, 16).ptr;
    std::string text(digits.data(), end);
    for (char& c : text)
        if (c >= 'a') c = static_cast<char>(c - 'a' + 'A');
    return text;
}

void appendline(std::string& text, unsigned handle, std::int32_t colour, const contourline& line) {
    appendgroup(text, 0, "LWPOLYLINE");
    appendgroup(text, 5, handletext(handle));
    appendgroup(text, 100, "AcDbEntity");
    appendgroup(text, 8, "0");
    appendgroup(text, 62, std::to_string(colour));
    appendgroup(text, 100, "AcDbPolyline");
    appendgroup(text, 90, std::to_string(line.points.size()));
    appendgroup(text, 70, "0");
    for (const contourpoint& point : line.points) {
        appendgroup(text, 10, point.x);
        appendgroup(text, 20, point.y);
    }
}

} // namespace

void writecontours(const std::string& path, const std::vector<colouredlines>& contours) {
    std::string entities;
    unsigned handle = firsthandle;
    for (const colouredlines& level : contours)
        for (const contourline& line : level.lines) appendline(entities, handle++, level.colourNumber, line);
    filewriter file(path);
    std::string text;
    appendgroups(text, beforehandles);
    appendgroup(text, 5, handletext(handle));
    appendgroups(text, beforeentities);
    file.write(text);
    file.write(entities);
    text.clear();
    appendgroups(text, behindentities);
    file.write(text);
    file.finish();
}

} // namespace orv
