// Reading Nastran bulk data in free format.
//
// A text file, lines ended by CR LF (a bare LF is taken too). Behind the line
//
//   $ Grid data section
//
// which stands exactly so, the file is a stream of fields, each closed by a comma or a line end; an empty
// field counts, and blanks round a field are dropped. Numbers are read from the front of their field, an
// empty one as 0.
//
//   GRID,number,-,x,y,z             a node, 0..100000; the field behind its number is dropped
//   CTRIA3,element,material,a,b,c   a triangle of three nodes
//
// The nodes are the GRID cards that follow the marker directly. Then all fields are passed over up to the
// first CTRIA3, and the triangles are the CTRIA3 cards that follow each other directly: a blank line, a
// comment or a field too many ends them, and the rest of the file is not read. A sample:
//
//   $ Grid data section
//   GRID,1,0,0,0,0
//   GRID,2,0,4,0,0
//   GRID,3,0,4,3,0
//   CTRIA3,1,7,1,2,3
//   ENDDATA
#include "interchange/nastranreader.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listinput.h"
#include "base/listoutput.h"
#include "base/numbertext.h"
#include "platform/platform.h"
#include "results/resultset.h"
#include "room/roomload.h"
#include "room/roommodel.h"

#include <array>
#include <vector>

namespace orv {

namespace {

constexpr std::string_view marker = "$ Grid data section";
constexpr int highestnode = 100000;
constexpr int corners = 3;             // of a triangle
constexpr std::size_t exactdigits = 9; // of which 32 bits hold every number

// What an import keeps between its cards.
struct importing {
    listreader file;
    std::size_t fieldbegin = 0; // of the field taken last
    loadprogress progress;
    std::vector<std::array<double, 3>> nodes; // x, y, z by number
    std::int32_t nodecount = 0;
    roomcounts counts;
    std::string log; // the line that is being made
};

// The failure of the field taken last, whose line may be passed already.
[[noreturn]] void fieldfailure(importing& load, errorkind kind, const std::string& reason) {
    load.file.position = load.fieldbegin;
    inputfailure(load.file, kind, reason);
}

bool isblank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view nextfield(importing& load) {
    listreader& file = load.file;
    load.fieldbegin = file.position;
    if (atend(file)) inputfailure(file, errorkind::pastend, "the file ends where a field was expected");
    const char* const data = file.buffer.data();
    const char* const end = data + file.buffer.size();
    const char* front = data + file.position;
    const char* back = front;
    while (back != end && *back != ',' && *back != '\n') ++back;
    file.position = static_cast<std::size_t>((back == end ? back : back + 1) - data);
    if (back != end && *back == '\n' && back != front && back[-1] == '\r') --back;
    while (front != back && isblank(*front)) ++front;
    while (front != back && isblank(back[-1])) --back;
    return {front, static_cast<std::size_t>(back - front)};
}

// Length of the comma or line end at `at`; 0 when neither stands there.
std::size_t closerat(std::string_view text, std::size_t at) {
    if (at >= text.size()) return 0;
    if (text[at] == ',' || text[at] == '\n') return 1;
    return text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n' ? 2 : 0;
}

// The number of the next field, which more often than not is plain and ends with its digits.
numberprefix takenumber(importing& load, std::string_view& field) {
    const std::string_view rest = load.file.buffer.substr(load.file.position);
    const numberprefix number = readprefix(rest);
    const std::size_t closer = number.length == 0 ? 0 : closerat(rest, number.length);
    if (closer == 0) {
        field = nextfield(load);
        return readprefix(field);
    }
    field = rest.substr(0, number.length);
    load.fieldbegin = load.file.position;
    load.file.position += number.length + closer;
    return number;
}

// The same by `convert`, which may find it too large.
template <class converter>
auto nextnumber(importing& load, converter convert) {
    std::string_view field;
    const numberprefix number = takenumber(load, field);
    const auto quoted = [&field] { return "\"" + std::string(field.substr(0, 40)) + "\""; };
    if (number.length == 0 && !field.empty())
        fieldfailure(load, errorkind::typemismatch, "expected a number, found " + quoted());
    try {
        if (!number.overflow) return convert(number.value);
    } catch (const runtimeerror& error) {
        if (error.kind != errorkind::overflow) throw;
    }
    fieldfailure(load, errorkind::overflow, "the number " + quoted() + " is too large");
}

// A whole number. Nearly all are a few digits alone in their field, which are taken at once.
std::int32_t nextwhole(importing& load) {
    const std::string_view rest = load.file.buffer.substr(load.file.position);
    std::int32_t number = 0;
    std::size_t digits = 0;
    for (; digits < rest.size() && digits < exactdigits && rest[digits] >= '0' && rest[digits] <= '9';
         ++digits)
        number = number * 10 + (rest[digits] - '0');
    const std::size_t closer = digits == 0 ? 0 : closerat(rest, digits);
    if (closer == 0) return nextnumber(load, whole32);
    load.fieldbegin = load.file.position;
    load.file.position += digits + closer;
    return number;
}

std::size_t nextnodenumber(importing& load) {
    const std::int32_t number = nextwhole(load);
    if (number < 0 || number > highestnode)
        fieldfailure(load, errorkind::subscript,
                     "subscript out of range, node numbers are 0 to " + std::to_string(highestnode) +
                         ", not " + std::to_string(number));
    return static_cast<std::size_t>(number);
}

void logcard(importing& load) {
    logload(load.log);
    showprogress(load.progress, load.file.position);
}

void readnode(importing& load) {
    const std::size_t number = nextnodenumber(load);
    nextfield(load);
    auto& node = load.nodes[number];
    for (double& coordinate : node) coordinate = nextnumber(load, [](double value) { return value; });
    ++load.nodecount;
    load.log = "Node n.:";
    printwhole(load.log, static_cast<std::int64_t>(number));
    load.log += "- coords=";
    for (const double coordinate : node) printnumber(load.log, coordinate);
    logcard(load);
}

// The node's coordinates as a vertex. They were read as doubles, which a single need not hold.
void storevertex(importing& load, std::int32_t face, int vertex, const std::array<double, 3>& node) {
    const auto& [x, y, z] = node;
    roompoint at;
    try {
        at = {single(x), single(y), single(z)};
    } catch (const runtimeerror& error) {
        fieldfailure(load, error.kind, "a coordinate of this node is too large");
    }
    setvertex(face, vertex, at);
    extendbox(at.x, at.y, at.z);
}

void readtriangle(importing& load) {
    if (load.counts.faces >= highestface)
        fieldfailure(load, errorkind::subscript,
                     "subscript out of range, a room holds at most " + std::to_string(highestface) +
                         " faces");
    const std::int32_t face = ++load.counts.faces;
    ResultSet.lastSlot = nextwhole(load); // this variable on purpose, though it is a result's
    RoomModel.faceMaterial(face) = nextnumber(load, whole16);
    RoomModel.faceVertexCount(face) = corners;
    RoomModel.faceLayerFlag(face) = RoomModel.faceInWall(face) = RoomModel.faceHasOpening(face) = 0;
    load.log = "Face n.";
    printwhole(load.log, face);
    load.log += "- Material:";
    printwhole(load.log, RoomModel.faceMaterial(face));
    load.log += "- nodes=";
    for (int vertex = 1; vertex <= corners; ++vertex) {
        const std::size_t number = nextnodenumber(load);
        storevertex(load, face, vertex, load.nodes[number]);
        printwhole(load.log, static_cast<std::int64_t>(number));
    }
    logcard(load);
}

void findmarker(importing& load) {
    while (!atend(load.file)) {
        if (readline(load.file) == marker) return;
        showprogress(load.progress, load.file.position);
    }
    inputfailure(load.file, errorkind::pastend,
                 "the file ends without the line \"" + std::string(marker) + "\"");
}

void readcards(importing& load) {
    std::string_view card = nextfield(load);
    while (card == "GRID") {
        readnode(load);
        card = nextfield(load);
    }
    while (card != "CTRIA3") {
        if (atend(load.file))
            inputfailure(load.file, errorkind::pastend, "the file ends without a CTRIA3 card");
        card = nextfield(load);
    }
    while (card == "CTRIA3") {
        readtriangle(load);
        if (atend(load.file)) return;
        card = nextfield(load);
    }
}

} // namespace

void loadnastran(const std::string& name) {
    const filebytes bytes = readfile(existingpath(name));
    const std::string shown = pagetext(name);
    const std::int32_t formerbackground = startroomload("Importing geometry from " + shown + " ...");
    platform::clearlog();
    logload("searching for Nodes...");

    importing load;
    load.file = openlist(bytes, shown);
    load.progress.size = bytes.size;
    load.nodes.resize(highestnode + 1);
    findmarker(load);
    readcards(load);
    logload(wholetext(load.nodecount) + " nodes and" + wholetext(load.counts.faces) + " faces imported");
    finishroomload(load.counts, formerbackground);
}

} // namespace orv
