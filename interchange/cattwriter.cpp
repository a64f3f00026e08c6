// Writing Catt Acoustics geometry.
#include "interchange/cattwriter.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/formatpattern.h"
#include "base/listinput.h"
#include "base/listoutput.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "interchange/materialtable.h"
#include "platform/platform.h"
#include "results/sourcedescription.h"
#include "room/roommodel.h"
#include "shell/sessionstate.h"

#include <array>
#include <bit>
#include <ctime>
#include <vector>

namespace orv {

namespace {

constexpr std::string_view levelpattern = "####.0", percentpattern = "###0.0";
constexpr std::string_view labelpattern = "### ", receiverpattern = "#####.000000";
constexpr std::string_view separatedpattern = "#####.000000 ", cornerpattern = "#####0.000000";
constexpr std::size_t mostmaterials = 100;
constexpr std::size_t extensionlength = 3;
constexpr std::size_t lowbands = 6; // 125 Hz to 4 kHz, in front of the colon

// One value for each band from 125 Hz to 16 kHz.
constexpr int firstband = 3, lastband = 10;
using bandvalues = std::array<float, lastband - firstband + 1>;

void showaction(const std::string& action) {
    platform::statustext(1, action);
    platform::yield();
}

void addline(std::string& text, std::string_view line) {
    text.append(line).append(lineend);
}

template <class patterns>
void addfield(std::string& text, float value, const patterns& pattern, std::size_t width) {
    const std::size_t begin = text.size();
    appendformatted(text, value, pattern);
    const std::size_t length = text.size() - begin;
    if (length < width) text.insert(begin, width - length, ' ');
    if (length > width) text.erase(begin, length - width);
}

void addpadded(std::string& text, float value, std::string_view pattern) {
    addfield(text, value, pattern, pattern.size());
}

// --- Header ---

// Day and time as a user of the one region that the program runs under reads them: 11/21/2026 7:05:09 PM.
std::string presenttime() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    const auto twodigits = [](int number) { return std::to_string(100 + number).substr(1); };
    const int hour = local.tm_hour % 12 == 0 ? 12 : local.tm_hour % 12;
    return std::to_string(local.tm_mon + 1) + "/" + std::to_string(local.tm_mday) + "/" +
           std::to_string(local.tm_year + 1900) + " " + std::to_string(hour) + ":" + twodigits(local.tm_min) +
           ":" + twodigits(local.tm_sec) + (local.tm_hour < 12 ? " AM" : " PM");
}

void addheader(std::string& text, const std::string& shown) {
    addline(text, ";" + shown);
    addline(text, ";Original file " + pagetext(SessionState.geometryFileName));
    addline(text, ";" + presenttime());
    addline(text, "");
    addline(text, ";TEMPERATURE" + numbertext(static_cast<double>(SessionState.temperature)));
    addline(text, ";HUMIDITY" + numbertext(static_cast<double>(SessionState.humidity)));
    addline(text, "");
}

// --- Sources and receivers ---

// Six values, a colon, two values, as all groups of a Catt file are.
void addgroup(std::string& text, const bandvalues& values, std::string_view pattern) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i == lowbands) text += " : ";
        addpadded(text, values[i], pattern);
    }
}

void addlevels(std::string& text, std::int32_t source) {
    const std::string path =
        sourcefilepath(RoomModel.sourceFile(source), directoryof(SessionState.geometryFileName));
    std::int16_t found = 0;
    fileexists(path, found);
    if (found == 0) {
        addline(text, "; Lp1m_a = < : >");
        return;
    }
    sourcefile file;
    readsourcefile(path, file);
    bandvalues levels{};
    for (const sourceband& record : file.bands)
        if (record.band >= firstband && record.band <= lastband)
            levels[static_cast<std::size_t>(record.band - firstband)] = single(record.level);
    text += "; Lp1m_a = <";
    addgroup(text, levels, levelpattern);
    addline(text, ">");
}

std::string pointtext(float x, float y, float z) {
    std::string text = numbertext(static_cast<double>(x));
    for (const float coordinate : {y, z})
        text.append(1, ' ').append(numbertext(static_cast<double>(coordinate)));
    return text;
}

void addsource(std::string& text, std::int32_t source) {
    const roommodel& r = RoomModel;
    const std::string& file = r.sourceFile(source);
    const std::string stem(file, 0, file.size() < extensionlength ? 0 : file.size() - extensionlength);
    addline(text, ";SOURCE A" + wholetext(source));
    addline(text, "; DIRECTIVITY = \"" + stem + "SD0\"");
    addline(text, "; POS = " + pointtext(r.sourceX(source), r.sourceY(source), r.sourceZ(source)));
    addline(text,
            "; AIMPOS = " + pointtext(r.sourceAimX(source), r.sourceAimY(source), r.sourceAimZ(source)));
    addlevels(text, source);
    addline(text, ";END");
}

void addreceiver(std::string& text, std::int32_t receiver) {
    text += ';';
    addpadded(text, static_cast<float>(receiver), labelpattern); // 1000 and above lose their front
    addpadded(text, RoomModel.receiverX(receiver), separatedpattern);
    addpadded(text, RoomModel.receiverY(receiver), separatedpattern);
    addpadded(text, RoomModel.receiverZ(receiver), receiverpattern);
    text += lineend;
}

// --- Materials ---

// The materials of the faces in the order in which they are first met.
std::vector<std::int16_t> usedmaterials() {
    std::vector<std::int16_t> used;
    std::array<bool, highestmaterial + 1> listed{};
    for (std::int32_t face = 1; face <= RoomModel.faceCount; ++face) {
        const std::int16_t material = RoomModel.faceMaterial(face);
        if (material < 0 || material > highestmaterial)
            subscriptfailure("materialName", material, 0, highestmaterial);
        bool& known = listed[static_cast<std::size_t>(material)];
        if (known) continue;
        known = true;
        if (used.size() == mostmaterials)
            throw runtimeerror{errorkind::subscript, "Subscript out of range: a Catt file has room for " +
                                                         std::to_string(mostmaterials) +
                                                         " materials, and the room uses more."};
        used.push_back(material);
    }
    return used;
}

bandvalues percentages(const bandtable& table, int row) {
    bandvalues values{};
    for (int band = firstband; band <= lastband; ++band)
        values[static_cast<std::size_t>(band - firstband)] =
            single(100 * static_cast<double>(table(row, band))); // the product in single precision
    return values;
}

void addmaterial(std::string& text, int row) {
    const std::int32_t colour = SessionState.materialColour(row);
    text.append("ABS ").append(MaterialTable.materialName(row)).append(" = < ");
    addgroup(text, percentages(MaterialTable.absorption, row), percentpattern);
    text += "> L < ";
    addgroup(text, percentages(MaterialTable.scattering, row), percentpattern);
    text += "> {";
    for (const int shift : {0, 8, 16}) text += wholetext(colour >> shift & 0xFF);
    addline(text, "}");
}

// --- Corners ---

using corner = std::array<float, 3>;

// Every vertex of the room as the number of its corner, and the corners in the order in which they are first
// met. Found by an open hash table over the exact coordinates, where a walk over the list would take time by
// the square of their number.
struct cornerlist {
    std::vector<corner> corners;
    std::vector<std::int32_t> numbers; // face after face, vertex after vertex; from 1
    std::vector<std::int32_t> table;   // numbers, 0 for an empty place; its size is a power of two
};

std::size_t placeof(const corner& at, std::size_t size) {
    std::uint64_t hash = 0;
    for (const float coordinate : at) {
        const float exact = coordinate == 0 ? 0.0F : coordinate; // zero of either sign is the same place
        hash = (hash ^ std::bit_cast<std::uint32_t>(exact)) * 0x9E3779B97F4A7C15U;
        hash ^= hash >> 32;
    }
    return hash & (size - 1);
}

// The place of a corner in the table, or the empty one that is its own.
std::int32_t& lookup(cornerlist& list, const corner& at) {
    for (std::size_t place = placeof(at, list.table.size());; place = (place + 1) & (list.table.size() - 1)) {
        std::int32_t& number = list.table[place];
        if (number == 0 || list.corners[static_cast<std::size_t>(number - 1)] == at) return number;
    }
}

void growtable(cornerlist& list) {
    list.table.assign(2 * list.table.size(), 0);
    std::int32_t number = 0;
    for (const corner& each : list.corners) lookup(list, each) = ++number;
}

cornerlist listcorners() {
    cornerlist list;
    list.table.resize(1024);
    for (std::int32_t face = 1; face <= RoomModel.faceCount; ++face) {
        for (int v = 1; v <= RoomModel.faceVertexCount(face); ++v) {
            const corner at = {RoomModel.faceVertexX(face, v), RoomModel.faceVertexY(face, v),
                               RoomModel.faceVertexZ(face, v)};
            std::int32_t& number = lookup(list, at);
            if (number == 0) {
                list.corners.push_back(at);
                number = static_cast<std::int32_t>(list.corners.size());
            }
            list.numbers.push_back(number);
            if (2 * list.corners.size() > list.table.size()) growtable(list);
        }
    }
    return list;
}

void addcorners(std::string& text, const cornerlist& list) {
    const numberpattern pattern(cornerpattern);
    std::int32_t number = 0;
    for (const corner& at : list.corners) {
        appendwhole(text, ++number);
        for (const float coordinate : at)
            addfield(text.append(1, ' '), coordinate, pattern, cornerpattern.size());
        text += lineend;
    }
}

// --- Planes ---

void addplanes(std::string& text, const cornerlist& list, const std::vector<std::int16_t>& materials) {
    std::vector<std::string> lowered(highestmaterial + 1);
    for (const std::int16_t row : materials)
        lowered[static_cast<std::size_t>(row)] = pagelowercase(MaterialTable.materialName(row));
    std::size_t vertex = 0;
    for (std::int32_t face = 1; face <= RoomModel.faceCount; ++face) {
        const std::int16_t row = RoomModel.faceMaterial(face);
        const std::size_t begin = text.size();
        appendwhole(text, face);
        text[begin] = '['; // in the place of the number's blank
        text.append(1, ' ').append(lowered[static_cast<std::size_t>(row)]).append(" / ");
        for (int v = 1; v <= RoomModel.faceVertexCount(face); ++v) appendwhole(text, list.numbers[vertex++]);
        text.append(" / ").append(MaterialTable.materialName(row)).append(" ]").append(lineend);
    }
}

} // namespace

void savecatt(const std::string& name) {
    const std::string shown = pagetext(name);
    platform::pointer(platform::shape::wait);
    std::string text;
    showaction("Writing header to " + shown);
    addheader(text, shown);
    showaction("Writing Sources... ");
    for (std::int32_t source = 1; source <= RoomModel.sourceCount; ++source) addsource(text, source);
    showaction("Writing Receivers... ");
    addline(text, "");
    addline(text, ";RECEIVERS");
    for (std::int32_t receiver = 1; receiver <= RoomModel.receiverCount; ++receiver)
        addreceiver(text, receiver);
    addline(text, "");
    loadmaterials(); // shows its own action
    platform::yield();
    showaction("Creating list of materials... ");
    const std::vector<std::int16_t> materials = usedmaterials();
    showaction("Writing list of materials... ");
    for (const std::int16_t material : materials) addmaterial(text, material);
    addline(text, "");
    showaction("Creating list of corners... ");
    const cornerlist corners = listcorners();
    showaction("Writing list of corners... ");
    addline(text, "CORNERS");
    addline(text, "");
    addcorners(text, corners);
    addline(text, "");
    showaction("Writing list of planes... ");
    addline(text, "PLANES");
    addplanes(text, corners, materials);
    replacefile(name, text);
    platform::pointer(platform::shape::normal);
    showaction("Succesfully saved the .GEO file named " + shown);
}

void fileexists(const std::string& path, std::int16_t& result) {
    result = canopen(path) ? -1 : 0;
}

void padformat(float value, std::string_view pattern, std::string& result) {
    result.clear();
    addpadded(result, value, pattern);
}

} // namespace orv
