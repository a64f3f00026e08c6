// Reading Catt Acoustics geometry.
//
// A text file in code page 1252, lines ended by CR LF (a bare LF is taken too). The first four characters of
// a line, in exact case, say what it is; words are separated by blanks or tabs, and of each number as much is
// read as is one, 0 where none stands.
//
//   ;TEMPERATURE 20              degrees Celsius, from the 14th character on, so without a sign
//   ;HUMIDITY 50                 percent, from the 11th character on
//   ;SOURCE A1                   a source by this and the next three lines:
//   ; DIRECTIVITY = "Omni.SD0"     its file between the first two quotes, whose last three letters become spk
//   ; POS = 1 2 3                  behind the first "="
//   ; AIMPOS = 1 3 3               the same
//   ;RECEIVERS                   receivers by all next lines that begin with ";"
//   ; 1 5.5 2 1.2                  label, x y z
//   ABS Wood = < 15 11 10 7 6 7 : 7 7> L < 10 10 10 10 10 10 : 10 10> { 168 84 0}
//                                a material: absorption in percent at 125 Hz to 4 kHz, then at 8 and 16 kHz;
//                                scattering in the same way; red, green, blue
//   CORNERS                      corners by the next lines of more than 10 characters, up to a line of
//    1 0 0 0.000000                another kind: number 0..100000, x y z
//   PLANES                       faces by the next lines of more than 10 characters that begin with "[":
//   [1 floor / 1 2 3 4 / Wood ]    number, name / corners / material ]
//
// All other lines are skipped. The receivers' second point is the position of the first source before them.
#include "interchange/cattreader.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listinput.h"
#include "base/listoutput.h"
#include "base/numbertext.h"
#include "interchange/materialtable.h"
#include "platform/platform.h"
#include "room/roomload.h"
#include "room/roommodel.h"
#include "shell/sessionstate.h"

#include <array>
#include <vector>

namespace orv {

namespace {

constexpr int highestcorner = 100000;
constexpr std::size_t longestskipped = 10; // characters of a line that is no corner or plane
constexpr std::size_t temperatureat = 13, humidityat = 10;
constexpr std::size_t extensionlength = 3;
constexpr int firstband = 3, lastband = 10; // 125 Hz to 16 kHz
constexpr double percent = 100;

// The lines that belong to what a keyword began.
enum class block { none, receivers, corners, planes };

// What an import keeps between its lines.
struct importing {
    listreader file;
    listreader here; // at the begin of the present line, for messages
    loadprogress progress;
    block present = block::none;
    std::vector<std::array<double, 3>> corners; // x, y, z by number
    roomcounts counts;
};

std::string_view nextline(importing& load) {
    load.here = load.file;
    const std::string_view line = readline(load.file);
    showprogress(load.progress, load.file.position);
    return line;
}

std::int32_t nextslot(const importing& load, std::int32_t& count, std::int32_t highest,
                      const std::string& what) {
    if (count >= highest)
        inputfailure(load.here, errorkind::subscript,
                     "subscript out of range, there are at most " + std::to_string(highest) + " " + what);
    return ++count;
}

// --- Words and numbers ---

bool isblank(char c) {
    return c == ' ' || c == '\t';
}

// Takes the next word off a text; empty when none is left.
std::string_view nextword(std::string_view& text) {
    std::size_t begin = 0;
    while (begin < text.size() && isblank(text[begin])) ++begin;
    std::size_t end = begin;
    while (end < text.size() && !isblank(text[end])) ++end;
    const std::string_view word = text.substr(begin, end - begin);
    text.remove_prefix(end);
    return word;
}

// The number that a word begins with, by `convert`.
template <class converter>
auto numberof(const importing& load, std::string_view word, converter convert) {
    const numberprefix number = readprefix(word);
    try {
        if (!number.overflow) return convert(number.value);
    } catch (const runtimeerror& error) {
        if (error.kind != errorkind::overflow) throw;
    }
    inputfailure(load.here, errorkind::overflow,
                 "the number \"" + std::string(word.substr(0, 40)) + "\" is too large");
}

double nextnumber(const importing& load, std::string_view& text) {
    return numberof(load, nextword(text), [](double value) { return value; });
}

float nextsingle(const importing& load, std::string_view& text) {
    return numberof(load, nextword(text), single);
}

roompoint nextpoint(const importing& load, std::string_view text) {
    const float x = nextsingle(load, text);
    const float y = nextsingle(load, text);
    return {x, y, nextsingle(load, text)};
}

float singleat(const importing& load, std::string_view line, std::size_t at) {
    std::string_view behind = line.size() > at ? line.substr(at) : std::string_view();
    return nextsingle(load, behind);
}

// The text up to a mark, which is taken off with it. Raises typemismatch without one.
std::string_view takeupto(const importing& load, std::string_view& text, char mark, const char* what) {
    const std::size_t at = text.find(mark);
    if (at == std::string_view::npos)
        inputfailure(load.here, errorkind::typemismatch,
                     std::string("expected \"") + mark + "\" behind " + what + ", found \"" +
                         std::string(text.substr(0, 40)) + "\"");
    const std::string_view front = text.substr(0, at);
    text.remove_prefix(at + 1);
    return front;
}

// What stands between two marks, which is taken off with them and all in front; nothing where they are not.
std::string_view takebetween(std::string_view& text, char open, char close) {
    const std::size_t begin = text.find(open);
    if (begin == std::string_view::npos) return {};
    const std::size_t end = text.find(close, begin + 1);
    if (end == std::string_view::npos) return {};
    const std::string_view inner = text.substr(begin + 1, end - begin - 1);
    text.remove_prefix(end + 1);
    return inner;
}

// --- The log: a word, the number of the item, its coordinates ---

void logpoints(const char* word, std::int32_t number, const roompoint& first, const roompoint& second) {
    std::string line = word;
    printwhole(line, number);
    for (const roompoint& each : {first, second})
        for (const float coordinate : {each.x, each.y, each.z})
            printnumber(line, static_cast<double>(coordinate));
    logload(line);
}

// --- Sources and receivers ---

// The file between the first two quotes, with the extension of the source files here.
std::string directivityname(std::string_view line) {
    const std::string name(takebetween(line, '"', '"'));
    return (name.size() < extensionlength ? "" : name.substr(0, name.size() - extensionlength)) + "spk";
}

void readsource(importing& load) {
    const std::int32_t source = nextslot(load, load.counts.sources, highestsource, "sources");
    RoomModel.sourceFile(source) = directivityname(nextline(load));
    const roompoint position = nextpoint(load, behindmark(nextline(load), '='));
    const roompoint aim = nextpoint(load, behindmark(nextline(load), '='));
    setsource(source, position, aim);
    RoomModel.sourceAimExtra(source) = 0;
    extendbox(position.x, position.y, position.z);
    logpoints("Source: ", source, position, aim);
}

void readreceiver(importing& load, std::string_view words) {
    const std::int32_t receiver = nextslot(load, load.counts.receivers, highestreceiver, "receivers");
    nextword(words); // the label
    const roompoint position = nextpoint(load, words);
    roompoint second;
    if (load.counts.sources > 0) second = {RoomModel.sourceX(1), RoomModel.sourceY(1), RoomModel.sourceZ(1)};
    setreceiver(receiver, position, second);
    extendbox(position.x, position.y, position.z);
    logpoints("Receiver: ", receiver, position, second);
}

// --- Materials ---

// A group of percentages, in which colons may stand between the numbers.
void readpercentages(const importing& load, std::string_view group, bandtable& target, int row) {
    for (int band = firstband; band <= lastband; ++band) {
        std::string_view word = nextword(group);
        while (word == ":") word = nextword(group);
        target(row, band) = numberof(load, word, [](double value) { return single(value / percent); });
    }
}

std::int32_t readcolour(const importing& load, std::string_view words) {
    const double red = nextnumber(load, words);
    const double green = nextnumber(load, words);
    const double colour = red + 256 * green + 65536 * nextnumber(load, words);
    try {
        return whole32(colour);
    } catch (const runtimeerror& error) {
        inputfailure(load.here, error.kind, "the colour's numbers are too large");
    }
}

// The row of a material that the file defines: the one of its name, or the next free one.
int rowfor(const importing& load, std::string_view name) {
    const int present = materialrow(name);
    if (present >= 0) return present;
    std::int32_t& count = MaterialTable.materialCount;
    const int row = nextslot(load, count, highestmaterial, "rows in the material table");
    MaterialTable.materialName(row) = name;
    return row;
}

// The two lowest bands keep what the row held.
void readmaterial(const importing& load, std::string_view text) {
    const std::string_view name = trimboth(takeupto(load, text, '=', "the name of a material"));
    const int row = rowfor(load, name);
    materialtable& m = MaterialTable;
    readpercentages(load, takebetween(text, '<', '>'), m.absorption, row);
    readpercentages(load, takebetween(text, '<', '>'), m.scattering, row);
    for (int band = firstband; band <= lastband; ++band) m.secondSet(row, band) = 0;
    SessionState.materialColour(row) = readcolour(load, takebetween(text, '{', '}'));
    m.hasAbsorption(row) = m.hasSecondSet(row) = m.hasScattering(row) = -1;
}

// --- Corners and planes ---

std::size_t cornernumber(const importing& load, std::string_view word) {
    const std::int32_t number = numberof(load, word, whole32);
    if (number < 0 || number > highestcorner)
        inputfailure(load.here, errorkind::subscript,
                     "subscript out of range, corner numbers are 0 to " + std::to_string(highestcorner) +
                         ", not " + std::to_string(number));
    return static_cast<std::size_t>(number);
}

void readcorner(importing& load, std::string_view line) {
    const std::size_t number = cornernumber(load, nextword(line));
    for (double& coordinate : load.corners[number]) coordinate = nextnumber(load, line);
}

void addvertex(const importing& load, std::int32_t face, int vertex, std::size_t corner) {
    if (vertex > facevertices)
        inputfailure(load.here, errorkind::subscript,
                     "subscript out of range, a face has at most " + std::to_string(facevertices) +
                         " vertices");
    const auto& [x, y, z] = load.corners[corner];
    roompoint at;
    try {
        at = {single(x), single(y), single(z)};
    } catch (const runtimeerror& error) {
        inputfailure(load.here, error.kind,
                     "the coordinates of corner " + std::to_string(corner) + " are too large");
    }
    setvertex(face, vertex, at);
    extendbox(at.x, at.y, at.z);
}

void readplane(importing& load, std::string_view text) {
    const std::int32_t face = nextslot(load, load.counts.faces, highestface, "faces");
    nextword(text); // "[" and the plane's number
    const std::string_view name = trimboth(takeupto(load, text, '/', "the name of a plane"));
    std::string_view corners = takeupto(load, text, '/', "the corners of a plane");
    const std::string_view material = trimboth(takeupto(load, text, ']', "the material of a plane"));
    int vertices = 0;
    for (std::string_view word = nextword(corners); !word.empty(); word = nextword(corners))
        addvertex(load, face, ++vertices, cornernumber(load, word));
    const int row = materialrow(material);
    RoomModel.faceVertexCount(face) = static_cast<std::int16_t>(vertices);
    RoomModel.faceMaterial(face) = static_cast<std::int16_t>(row < 0 ? 0 : row);
    RoomModel.faceLayerFlag(face) = RoomModel.faceInWall(face) = RoomModel.faceHasOpening(face) = 0;

    std::string line = "Face n.";
    printwhole(line, face);
    line.append("name:").append(name).append(" - Material:");
    printwhole(line, RoomModel.faceMaterial(face));
    line += "- N. nodes=";
    printwhole(line, vertices);
    logload(line);
}

// --- Lines ---

// A line that begins something. Returns false for any other.
bool readkeyword(importing& load, std::string_view line) {
    const std::string_view kind = line.substr(0, 4);
    block next = block::none;
    if (kind == ";TEM")
        SessionState.temperature = singleat(load, line, temperatureat);
    else if (kind == ";HUM")
        SessionState.humidity = singleat(load, line, humidityat);
    else if (kind == ";SOU")
        readsource(load);
    else if (kind == "ABS ")
        readmaterial(load, line.substr(4));
    else if (kind == ";REC")
        next = block::receivers;
    else if (kind == "CORN")
        next = block::corners;
    else if (kind == "PLAN")
        next = block::planes;
    else
        return false;
    load.present = next;
    return true;
}

void takeline(importing& load, std::string_view line) {
    if (load.present == block::receivers) {
        if (line.starts_with(';')) return readreceiver(load, line.substr(1));
        load.present = block::none;
    }
    if (readkeyword(load, line) || line.size() <= longestskipped) return;
    if (load.present == block::corners) readcorner(load, line);
    if (load.present == block::planes && line.starts_with('[')) readplane(load, line);
}

} // namespace

void loadcatt(const std::string& name) {
    const filebytes bytes = readfile(existingpath(name));
    const std::string shown = pagetext(name);
    loadmaterials();
    totalabsorber();
    const std::int32_t formerbackground = startroomload("Importing geometry from " + shown + " ...");
    platform::clearlog();
    logload("searching for entities...");

    importing load;
    load.file = openlist(bytes, shown);
    load.progress.size = bytes.size;
    load.corners.resize(highestcorner + 1);
    while (!atend(load.file)) takeline(load, nextline(load));
    savematerials();
    finishroomload(load.counts, formerbackground);
}

} // namespace orv
