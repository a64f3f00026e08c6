// Reading the native geometry file.
//
// A text file in code page 1252, one record to a line, lines ended by CR LF (a bare LF is taken too). The
// record's kind are the first three letters of its first word, in any case, with or without blanks in front;
// the word ends at the first blank and its fields follow, separated by blanks or commas. Whole numbers are
// 16-bit, coordinates single-precision metres.
//
//   first word        fields
//   Face              flag material n, then n times x y z; n is 1..120
//   Hole              the same, n up to 64; belongs to the last face before it
//   Door              the same, n up to 5; belongs to the last face before it
//   Source, Speaker   x y z  aim x y z  extra name; one blank or comma, then the rest of the line is the name
//   Receiver          x y z  and three numbers that are only kept
//   Ray               start x y z  direction x y z
//   Wall              none; faces from here on stand in a wall
//   End               none; closes a wall, and stands at the end of the file
//
// All other lines are skipped, the usual first one "EntityList" and empty ones with them. A sample:
//
//   EntityList
//    Wall
//     Face 0 1 4  0 0 0  4 0 0  4 3 0  0 3 0
//     Hole 0 2 4  1 1 0  2 1 0  2 2 0  1 2 0
//    End
//    Source 1 1 1  2 2 1  0 Omni.spk
//    Receiver 3 2 1.5  0 0 0
//   End
//
// Two positions run over the file: that of the lines decides what each record is, that of the fields takes it
// apart. A record with more or fewer numbers than its line should have lets the two drift apart, which the
// next End line finds out.
#include "room/geometryreader.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listinput.h"
#include "base/numbertext.h"
#include "platform/platform.h"
#include "room/roomload.h"
#include "room/roommodel.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>

namespace orv {

namespace {

// What a load keeps between its lines.
struct loading {
    listreader lines, fields;
    roomcounts counts;
    std::int16_t inwall = 0; // -1 between Wall and End
    std::string progress;    // the percentage shown, and the block it is of
    std::size_t shownblock = 0;
};

// The next slot of a table. Raises subscript with the line, which the table itself does not know.
std::int32_t nextslot(const loading& load, std::int32_t& count, std::int32_t highest,
                      const std::string& what) {
    if (count >= highest)
        inputfailure(load.fields, errorkind::subscript,
                     "subscript out of range, a room holds at most " + std::to_string(highest) + " " + what);
    return ++count;
}

// What a face, a hole and a door have in common.
struct polygon {
    std::int16_t flag, material, vertices;
    std::array<float, 3 * facevertices> coordinates; // m, x y z of one vertex after the other

    // Vertex 1..`vertices`.
    roompoint vertex(int number) const {
        const auto at = 3 * static_cast<std::size_t>(number - 1);
        return {coordinates[at], coordinates[at + 1], coordinates[at + 2]};
    }
};

polygon readpolygon(listreader& fields, int highest, const std::string& what) {
    polygon read;
    read.flag = readwhole16(fields);
    read.material = readwhole16(fields);
    read.vertices = readwhole16(fields);
    if (read.vertices > highest)
        inputfailure(fields, errorkind::subscript,
                     "subscript out of range, " + what + " has at most " + std::to_string(highest) +
                         " vertices, not " + std::to_string(read.vertices));
    // A count below 0 counts as 0.
    const auto numbers = 3 * static_cast<std::size_t>(std::max<std::int16_t>(read.vertices, 0));
    readsingles(fields, std::span(read.coordinates).first(numbers));
    return read;
}

void readface(loading& load) {
    const std::int32_t face = nextslot(load, load.counts.faces, highestface, "faces");
    const polygon read = readpolygon(load.fields, facevertices, "a face");
    RoomModel.faceLayerFlag(face) = read.flag;
    RoomModel.faceMaterial(face) = read.material;
    RoomModel.faceVertexCount(face) = read.vertices;
    RoomModel.faceInWall(face) = load.inwall;
    for (int v = 1; v <= read.vertices; ++v) {
        const roompoint at = read.vertex(v);
        setvertex(face, v, at);
        extendbox(at.x, at.y, at.z);
    }
}

// The face that an opening belongs to, 0 before the first one.
std::int16_t owningface(const loading& load) {
    if (load.counts.faces > std::numeric_limits<std::int16_t>::max())
        inputfailure(load.fields, errorkind::overflow,
                     "overflow, face " + std::to_string(load.counts.faces) +
                         " cannot have a hole or door, since only the first 32767 can");
    return static_cast<std::int16_t>(load.counts.faces);
}

void readhole(loading& load) {
    const std::int32_t hole = nextslot(load, load.counts.holes, highesthole, "holes");
    const std::int16_t face = owningface(load);
    const polygon read = readpolygon(load.fields, holevertices, "a hole");
    RoomModel.holeLayerFlag(hole) = read.flag;
    RoomModel.holeMaterial(hole) = read.material;
    RoomModel.holeVertexCount(hole) = read.vertices;
    for (int v = 1; v <= read.vertices; ++v) {
        const roompoint at = read.vertex(v);
        RoomModel.holeVertexX(hole, v) = at.x;
        RoomModel.holeVertexY(hole, v) = at.y;
        RoomModel.holeVertexZ(hole, v) = at.z;
    }
    RoomModel.holeFace(hole) = face;
    RoomModel.faceHasOpening(face) = -1;
}

void readdoor(loading& load) {
    const std::int32_t door = nextslot(load, load.counts.doors, highestdoor, "doors");
    const std::int16_t face = owningface(load);
    const polygon read = readpolygon(load.fields, doorvertices, "a door");
    RoomModel.doorLayerFlag(door) = read.flag;
    RoomModel.doorMaterial(door) = read.material;
    RoomModel.doorVertexCount(door) = read.vertices;
    for (int v = 1; v <= read.vertices; ++v) {
        const roompoint at = read.vertex(v);
        RoomModel.doorVertexX(door, v) = at.x;
        RoomModel.doorVertexY(door, v) = at.y;
        RoomModel.doorVertexZ(door, v) = at.z;
    }
    RoomModel.doorFace(door) = face;
    RoomModel.faceHasOpening(face) = -1;
}

// Two points, one behind the other.
struct pointpair {
    roompoint first, second;
};
pointpair readpoints(listreader& fields) {
    std::array<float, 6> number;
    readsingles(fields, number);
    return {{number[0], number[1], number[2]}, {number[3], number[4], number[5]}};
}

void readsource(loading& load) {
    listreader& fields = load.fields;
    const std::int32_t source = nextslot(load, load.counts.sources, highestsource, "sources");
    const auto [position, aim] = readpoints(fields);
    setsource(source, position, aim);
    // The one separator behind the number is all that goes before the name, which may be empty.
    RoomModel.sourceAimExtra(source) = readsinglebeforetext(fields);
    RoomModel.sourceFile(source) = atend(fields) ? std::string() : std::string(readline(fields));
    extendbox(position.x, position.y, position.z);
}

void readreceiver(loading& load) {
    const std::int32_t receiver = nextslot(load, load.counts.receivers, highestreceiver, "receivers");
    const auto [position, second] = readpoints(load.fields);
    setreceiver(receiver, position, second);
    extendbox(position.x, position.y, position.z);
}

void readrayline(loading& load) {
    const std::int32_t line = nextslot(load, load.counts.raylines, highestrayline, "ray lines");
    const auto [start, direction] = readpoints(load.fields);
    setrayline(line, start, direction);
}

void openwall(loading& load) {
    load.inwall = -1;
    readline(load.fields);
}

void closewall(loading& load) {
    load.inwall = 0;
    const std::string word = uppercase(trimfront(readline(load.fields)).substr(0, 3));
    if (word != "END") platform::halt(0); // the positions drifted apart; this stop is the required answer
}

// Three letters as one number, which compares at once.
constexpr std::uint32_t packed(char first, char second, char third) {
    const auto upper = [](char c) {
        return static_cast<std::uint32_t>(
            static_cast<unsigned char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c));
    };
    return upper(first) << 16 | upper(second) << 8 | upper(third);
}

// The kinds of records. Those with fields begin behind their keyword, the others take their whole line.
struct recordkind {
    std::uint32_t letters;
    bool withfields;
    void (*read)(loading&);
};
constexpr recordkind recordkinds[] = {
    {packed('F', 'A', 'C'), true, readface},    {packed('R', 'E', 'C'), true, readreceiver},
    {packed('W', 'A', 'L'), false, openwall},   {packed('E', 'N', 'D'), false, closewall},
    {packed('H', 'O', 'L'), true, readhole},    {packed('D', 'O', 'O'), true, readdoor},
    {packed('S', 'O', 'U'), true, readsource},  {packed('S', 'P', 'E'), true, readsource},
    {packed('R', 'A', 'Y'), true, readrayline},
};

const recordkind* kindof(std::string_view words) {
    if (words.size() < 3) return nullptr;
    const std::uint32_t letters = packed(words[0], words[1], words[2]);
    for (const recordkind& kind : recordkinds)
        if (kind.letters == letters) return &kind;
    return nullptr;
}

// The percentage of the file that the line position has passed, in whole blocks, once a line. The text is
// made anew only when the block is another one.
void showprogress(loading& load, double blocks) {
    const std::size_t block = load.lines.position / progressblock;
    if (load.progress.empty() || block != load.shownblock) {
        const double percent = Int(100 * static_cast<double>(block) / blocks);
        load.progress = wholetext(static_cast<std::int64_t>(percent)) + "%";
        load.shownblock = block;
    }
    platform::statustext(2, load.progress);
    platform::yield();
}

void readrecord(loading& load, std::string_view line) {
    const std::string_view words = trimfront(line);
    const recordkind* kind = kindof(words);
    if (!kind) {
        readline(load.fields);
        return;
    }
    if (kind->withfields) {
        const std::size_t leading = line.size() - words.size();
        const std::size_t blank = words.find(' ');
        skipcharacters(load.fields, leading + (blank == std::string_view::npos ? 0 : blank + 1));
    }
    kind->read(load);
}

} // namespace

void loadgeometry(const std::string& name) {
    if (name == "*.ray" || name == "*.*") return;
    const filebytes bytes = readfile(existingpath(name));
    const std::string shown = pagetext(name);

    const std::int32_t formerbackground = startroomload("Loading " + shown + " ...");

    loading load;
    load.lines = openlist(bytes, shown);
    load.fields = load.lines;
    const double blocks = progressblocks(load.lines);
    // The progress of each line divides by the blocks; an empty file has none of either.
    if (blocks == 0 && !atend(load.lines))
        inputfailure(load.lines, errorkind::divisionbyzero,
                     "division by zero, a file of at most 64 bytes holds no geometry");
    while (!atend(load.lines)) {
        const std::string_view line = readline(load.lines);
        showprogress(load, blocks);
        readrecord(load, line);
    }

    finishroomload(load.counts, formerbackground);
}

} // namespace orv
