// Reading a room from an AutoCAD DXF file.
//
// A text file of pairs: a group code, alone on its line, and a value on the next. Lines end with CR LF or LF.
// What a pair's value is tells its code:
//
//   below 10   a text, the whole line as it stands     50..59  an angle
//   10..19     X, then the pair of Y, whose code is    60..79  a whole number, not used
//              the one of X + 10                       others  not used
//   30..49     Z
//
// Codes and numbers are read as free list input. The four shared places (code, text, point, angle) keep their
// values until a pair of their kind overwrites them. Entities stand between the texts SECTION, ENTITIES and
// the next ENDSEC; everything in front is skipped. An entity begins with a pair 0 and its name; its layer
// (code 8) decides what becomes of it:
//
//   3DFACE    any layer     a face; corners 10 20 30, 11 21 31, 12 22 32, 13 23 33
//   POLYLINE  HOLES         a hole; then its VERTEX entities with 10 20 30, then SEQEND
//   POLYLINE  any other     a door of four vertices, alike
//   LINE      RECEIVERS     a receiver; position 10 20 30, second point 11 21 31
//   LINE      RAYS          a ray line from 10 20 30 to 11 21 31
//   ATTDEF    SOURCES       a source; position 10 20 30, aim 11 21 31, fourth number 51, directivity file 2
//
// All others are skipped. The layer's name of a face or door is its material: the row number, or the name of
// the row; rows above 2000 are the same materials again, flagged. A sample, pairs side by side:
//
//   0 SECTION  2 ENTITIES
//   0 3DFACE  8 12  10 0 20 0 30 0  11 4 21 0 31 0  12 4 22 3 32 0  13 0 23 3 33 0
//   0 POLYLINE  8 HOLES  66 1  0 VERTEX  8 HOLES  10 1 20 1 30 0  ...  0 SEQEND  8 0
//   0 LINE  8 RECEIVERS  10 3 20 2 30 1.5  11 0 21 0 31 0
//   0 ENDSEC  0 EOF
//
// Pairs are taken literally: coordinates in front of the layer are lost, a pair that an entity waits for is
// looked for beyond its end, and without the pair of Y the code and value that follow change their parts.
#include "interchange/dxfreader.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/formatpattern.h"
#include "base/listinput.h"
#include "base/numbertext.h"
#include "interchange/attachopenings.h"
#include "interchange/materialtable.h"
#include "platform/platform.h"
#include "room/roomload.h"
#include "room/roommodel.h"
#include "shell/sessionstate.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <vector>

namespace orv {

namespace {

constexpr int corners = 4;                            // of a 3DFACE, and of a door
constexpr int flaggedmaterials = 2000;                // layers above are materials with the flag set
constexpr std::size_t shortestname = 3, surename = 6; // letters of a layer that may be, and always is, a name
constexpr double raylength = 50;                      // of a ray line, in its direction
constexpr double flatness = 0.01;                     // m
const numberpattern facepattern("  ####0.0#");

// What a load keeps between its pairs.
struct loading {
    listreader file;
    loadprogress progress;
    bool checkplanes = false;
    std::unordered_map<std::string, std::int16_t> materials; // row by name in upper case
    roomcounts counts;

    std::string line; // of the log, being made

    // The pair read last, and what earlier ones left.
    bool ended = false;   // nothing is left; then the code is 0
    std::size_t pair = 0; // where it begins
    int code = 0;
    std::string_view text;
    double x = 0, y = 0, z = 0, angle = 0, scratch = 0;
};

// --- Pairs ---

// The next number into a place, which keeps its value at the end of the file.
void takenumber(loading& load, double& place) {
    const std::size_t begin = load.file.position;
    const numberfield field = tryreadnumber(load.file);
    if (field.outcome == fieldoutcome::read) {
        place = field.value;
    } else if (field.outcome == fieldoutcome::pastend) {
        load.ended = true;
    } else {
        load.file.position = begin;
        readnumber(load.file); // raises
    }
}

int nextcode(loading& load) {
    double code = 0;
    takenumber(load, code);
    const int whole = std::fabs(code) < 1000 ? static_cast<int>(code) : 0;
    return whole == code ? whole : whole16(code);
}

void taketext(loading& load) {
    load.ended = atend(load.file);
    if (!load.ended) load.text = readline(load.file);
}

void skipvalue(loading& load) {
    load.ended = atend(load.file);
    if (!load.ended) readline(load.file);
}

void readxy(loading& load, int code) {
    takenumber(load, load.x);
    const int behind = nextcode(load);
    if (load.ended) return;
    if (behind == code + 10)
        takenumber(load, load.y);
    else // its value is then read as the next code
        logload("Invalid Y coord code " + wholetext(behind));
}

// The value of a pair into the place that its code has.
void readvalue(loading& load) {
    const int code = load.code;
    if (code < 10)
        taketext(load);
    else if (code < 20)
        readxy(load, code);
    else if (code >= 30 && code < 50)
        takenumber(load, load.z);
    else if (code >= 50 && code < 60)
        takenumber(load, load.angle);
    else if (code >= 60 && code < 80)
        takenumber(load, load.scratch);
    else
        skipvalue(load);
}

void readgroup(loading& load) {
    load.pair = load.file.position;
    load.code = nextcode(load);
    if (!load.ended) readvalue(load);
    if (load.ended) load.code = 0;
}

// Reads pairs until one has the code; the end of the file ends this too.
void readuntil(loading& load, int code) {
    do {
        readgroup(load);
    } while (load.code != code && !load.ended);
}

bool istext(const loading& load, std::string_view text) {
    return load.code < 10 && load.text == text;
}

float placedx(const loading& load) {
    return single(load.x);
}
float placedy(const loading& load) {
    return single(load.y);
}
float placedz(const loading& load) {
    return single(load.z);
}

// --- Materials of layers ---

// Row 0 is not looked at, and of equal names the first row counts.
void readnames(loading& load) {
    const std::vector<std::string> names = materialnames();
    for (std::size_t row = 1; row < names.size(); ++row)
        load.materials.emplace(pageuppercase(names[row]), static_cast<std::int16_t>(row));
}

// The row of that name, 0 without one. Drawings of release 2007 and later have their texts in UTF-8.
std::int16_t rownamed(const loading& load, std::string_view layer) {
    auto found = load.materials.find(pageuppercase(layer));
    if (found == load.materials.end()) found = load.materials.find(pageuppercase(pagetext(layer)));
    return found == load.materials.end() ? std::int16_t{0} : found->second;
}

std::int16_t layernumber(std::string_view layer) {
    try {
        return whole16(lenientnumber(layer));
    } catch (const runtimeerror& error) {
        throw runtimeerror{error.kind, "overflow, the layer \"" + std::string(layer.substr(0, 40)) +
                                           "\" is a number too large for a material"};
    }
}

struct layermaterial {
    std::int16_t material = 0;
    std::int16_t flag = 0;
};
layermaterial unflagged(std::int16_t material) {
    if (material <= flaggedmaterials) return {material, 0};
    return {static_cast<std::int16_t>(material - flaggedmaterials), 1};
}

layermaterial materialofface(const loading& load, std::string_view layer) {
    std::int16_t material = layernumber(layer);
    if ((layer.size() >= shortestname && material <= 0) || layer.size() >= surename)
        if (const std::int16_t row = rownamed(load, layer)) material = row;
    return unflagged(material);
}

// --- Entities ---

std::int32_t nextslot(std::int32_t& count, std::int32_t highest, const char* what) {
    if (count >= highest)
        throw runtimeerror{errorkind::subscript, "subscript out of range, a room holds at most " +
                                                     std::to_string(highest) + " " + what};
    return ++count;
}

void addnumber(std::string& line, float value) {
    line.append(1, ' ');
    appendnumber(line, static_cast<double>(value));
}

template <class... numbers>
void logentity(const char* what, std::int32_t slot, numbers... values) {
    std::string line = what + wholetext(slot);
    (addnumber(line, values), ...);
    logload(line);
}

// A point as it stands in the file, and in the room.
struct filepoint {
    double x = 0, y = 0, z = 0;
};
roompoint stored(const filepoint& p) {
    return {single(p.x), single(p.y), single(p.z)};
}

// The two points of a source, receiver or ray line; codes 10 30 and 11 31 have their coordinates.
struct linepoints {
    filepoint start, end;
};

// Takes the present pair if it belongs to one of the points.
void takecoordinates(const loading& load, linepoints& line) {
    filepoint& p = load.code % 10 == 0 ? line.start : line.end;
    if (load.code == 10 || load.code == 11) {
        p.x = load.x;
        p.y = load.y;
    } else if (load.code == 30 || load.code == 31) {
        p.z = load.z;
    }
    stored(p); // raises at the line of a number that is too large
}

void readsource(loading& load) {
    if (load.text != "SOURCES") return;
    const std::int32_t source = nextslot(load.counts.sources, highestsource, "sources");
    std::string& file = RoomModel.sourceFile(source);
    file.clear();
    linepoints line;
    float extra = 0;
    for (readgroup(load); load.code != 0; readgroup(load)) {
        takecoordinates(load, line);
        if (load.code == 2) file = load.text;
        if (load.code == 51) extra = single(load.angle);
    }
    const roompoint position = stored(line.start), aim = stored(line.end);
    setsource(source, position, aim);
    RoomModel.sourceAimExtra(source) = extra;
    logentity("SOURCE ", source, position.x, position.y, position.z, aim.x, aim.y, aim.z, extra);
}

linepoints readpoints(loading& load) {
    linepoints line;
    for (readgroup(load); load.code != 0; readgroup(load)) takecoordinates(load, line);
    return line;
}

void readreceiver(loading& load) {
    const std::int32_t receiver = nextslot(load.counts.receivers, highestreceiver, "receivers");
    const linepoints line = readpoints(load);
    const roompoint position = stored(line.start), second = stored(line.end);
    setreceiver(receiver, position, second);
    logentity("RECEIVER ", receiver, position.x, position.y, position.z, second.x, second.y, second.z);
}

void readrayline(loading& load) {
    const std::int32_t ray = nextslot(load.counts.raylines, highestrayline, "ray lines");
    const linepoints line = readpoints(load);
    const roompoint start = stored(line.start);
    // From the numbers of the file, so that a line that was written comes back with its direction.
    const roompoint direction =
        stored({(line.end.x - line.start.x) / raylength, (line.end.y - line.start.y) / raylength,
                (line.end.z - line.start.z) / raylength});
    setrayline(ray, start, direction);
    logentity("RAY ", ray, start.x, start.y, start.z, direction.x, direction.y, direction.z);
}

void readlineentity(loading& load) {
    if (load.text == "RECEIVERS")
        readreceiver(load);
    else if (load.text == "RAYS")
        readrayline(load);
}

// Vertices of a polyline up to SEQEND, or to one that repeats the first, which is not kept, or to one that
// makes them more than `most`.
std::vector<roompoint> readvertices(loading& load, std::size_t most) {
    std::vector<roompoint> vertices;
    do {
        readgroup(load);
    } while (!istext(load, "VERTEX") && !load.ended);
    for (readgroup(load); !istext(load, "SEQEND") && !load.ended; readgroup(load)) {
        if (load.code == 10) {
            vertices.push_back({placedx(load), placedy(load), 0});
            if (vertices.size() > most) break;
        }
        if (load.code != 30 || vertices.empty()) continue;
        roompoint& last = vertices.back();
        const roompoint& first = vertices.front();
        last.z = placedz(load);
        if (vertices.size() < 2 || last.x != first.x || last.y != first.y || last.z != first.z) continue;
        vertices.pop_back();
        break;
    }
    return vertices;
}

void logvertices(const char* what, std::int32_t slot, const std::vector<roompoint>& vertices) {
    std::string line = what + wholetext(slot);
    for (const roompoint& p : vertices) {
        addnumber(line, p.x);
        addnumber(line, p.y);
        addnumber(line, p.z);
    }
    logload(line);
}

void readhole(loading& load) {
    roommodel& r = RoomModel;
    const std::int32_t hole = nextslot(load.counts.holes, highesthole, "holes");
    r.holeLayerFlag(hole) = r.holeMaterial(hole) = r.holeFace(hole) = 0;
    const std::vector<roompoint> vertices = readvertices(load, holevertices);
    r.holeVertexCount(hole) = static_cast<std::int16_t>(vertices.size());
    for (int v = 1; const roompoint& p : vertices) {
        r.holeVertexX(hole, v) = p.x; // raises at the 65th
        r.holeVertexY(hole, v) = p.y;
        r.holeVertexZ(hole, v) = p.z;
        ++v;
    }
    logvertices("HOLE ", hole, vertices);
}

// The slot of the door on a layer, its material set; -1 when its polyline is to be ignored.
//
// Layers that are numbers make a new door. One that is a name gives its material to the door before it, whose
// vertices it replaces too, unless no material above 0 stands there. Before the first door slot 0 takes part.
std::int32_t doorslot(loading& load, std::string_view layer) {
    roommodel& r = RoomModel;
    if (const std::int16_t number = layernumber(layer)) {
        const std::int32_t door = nextslot(load.counts.doors, highestdoor, "doors");
        const layermaterial material = unflagged(number);
        r.doorMaterial(door) = material.material;
        r.doorLayerFlag(door) = material.flag;
        return door;
    }
    if (layer.size() < shortestname) return -1;
    if (const std::int16_t row = rownamed(load, layer)) r.doorMaterial(load.counts.doors) = row;
    return r.doorMaterial(load.counts.doors) < 1 ? -1 : load.counts.doors;
}

void readdoor(loading& load, std::string_view layer) {
    roommodel& r = RoomModel;
    const std::int32_t door = doorslot(load, layer);
    if (door < 0) return;
    std::vector<roompoint> vertices = readvertices(load, doorvertices);
    if (vertices.size() > doorvertices) vertices.resize(corners); // a sixth makes a door of the first four
    if (vertices.size() != corners) {
        load.counts.doors = std::max(door - 1, 0);
        return;
    }
    r.doorFace(door) = 0;
    r.doorVertexCount(door) = corners;
    for (int v = 1; const roompoint& p : vertices) {
        r.doorVertexX(door, v) = p.x;
        r.doorVertexY(door, v) = p.y;
        r.doorVertexZ(door, v) = p.z;
        ++v;
    }
    logvertices("DOOR ", door, vertices);
}

void readpolyline(loading& load) {
    if (load.text == "HOLES")
        readhole(load);
    else
        readdoor(load, load.text);
}

enum class planarity { plane, split, none };

// How the fourth corner lies to the plane of the first three; `none` when those are no plane.
planarity planarityof(const roompoint (&corner)[corners]) {
    const auto from = [&corner](int which) {
        struct vector {
            double x, y, z;
        };
        return vector{static_cast<double>(corner[which].x) - static_cast<double>(corner[0].x),
                      static_cast<double>(corner[which].y) - static_cast<double>(corner[0].y),
                      static_cast<double>(corner[which].z) - static_cast<double>(corner[0].z)};
    };
    const auto a = from(1), b = from(2), c = from(3);
    const double nx = a.y * b.z - a.z * b.y, ny = a.z * b.x - a.x * b.z, nz = a.x * b.y - a.y * b.x;
    const double length = std::sqrt(nx * nx + ny * ny + nz * nz);
    if (!(length > 0)) return planarity::none;
    const double distance = std::fabs(nx * c.x + ny * c.y + nz * c.z) / length;
    return distance > flatness ? planarity::split : planarity::plane;
}

void logface(loading& load, std::int32_t face) {
    std::string& line = load.line;
    line.assign("FACE n.").append(wholetext(face));
    for (int v = 1; v <= RoomModel.faceVertexCount(face); ++v)
        for (const float value :
             {RoomModel.faceVertexX(face, v), RoomModel.faceVertexY(face, v), RoomModel.faceVertexZ(face, v)})
            appendformatted(line, value, facepattern);
    logload(line);
}

// The corners P1 P3 P4 of a face become the next face. Its material and flags stay what the tables hold
// there; this is meant.
void splitface(loading& load, const roompoint (&corner)[corners]) {
    const std::int32_t face = nextslot(load.counts.faces, highestface, "faces");
    RoomModel.faceVertexCount(face) = 3;
    setvertex(face, 1, corner[0]);
    setvertex(face, 2, corner[2]);
    setvertex(face, 3, corner[3]);
    logface(load, face);
}

void readface(loading& load) {
    roommodel& r = RoomModel;
    const std::int32_t face = nextslot(load.counts.faces, highestface, "faces");
    const layermaterial material = materialofface(load, load.text);
    r.faceMaterial(face) = material.material;
    r.faceLayerFlag(face) = material.flag;
    r.faceInWall(face) = r.faceHasOpening(face) = 0;
    r.faceVertexCount(face) = corners;
    roompoint corner[corners];
    for (int v = 1; roompoint & p : corner) {
        readuntil(load, 9 + v);
        p.x = placedx(load);
        p.y = placedy(load);
        readuntil(load, 29 + v);
        p.z = placedz(load);
        setvertex(face, v++, p);
    }
    const planarity shape = load.checkplanes ? planarityof(corner) : planarity::plane;
    if (shape == planarity::none) {
        --load.counts.faces;
        return;
    }
    if (shape == planarity::split) r.faceVertexCount(face) = 3;
    logface(load, face);
    if (shape == planarity::split) splitface(load, corner);
}

// What is read of an entity behind its layer.
struct entitykind {
    std::string_view name;
    void (*read)(loading&);
};
constexpr entitykind entitykinds[] = {
    {"3DFACE", readface}, {"POLYLINE", readpolyline}, {"LINE", readlineentity}, {"ATTDEF", readsource}};

// Reads the entity that the present pair begins. Whether the present pair then is a new one that is still to
// be looked at, as behind lines and sources, which end only with the begin of the next entity.
bool readentity(loading& load) {
    const auto kind = std::find_if(std::begin(entitykinds), std::end(entitykinds),
                                   [&](const entitykind& each) { return each.name == load.text; });
    if (kind == std::end(entitykinds)) return false;
    readuntil(load, 8);
    if (load.ended) return false; // without its layer it is nothing
    kind->read(load);
    return load.code == 0 && load.text != "SEQEND";
}

void findentities(loading& load) {
    logload("searching for ENTITIES...");
    for (bool begun = false; !load.ended; begun = istext(load, "SECTION")) {
        readgroup(load);
        showprogress(load.progress, load.file.position);
        if (begun && istext(load, "ENTITIES")) return;
    }
}

void readentities(loading& load) {
    logload("searching for POLYLINES, 3DFACES, SOURCES and RECEIVERS");
    bool pending = false;
    while (!load.ended) {
        if (!pending) readgroup(load);
        showprogress(load.progress, load.file.position);
        if (load.text == "ENDSEC") return;
        pending = load.code == 0 && !load.ended && readentity(load);
    }
    logload("The file ends without ENDSEC. It may be cut.");
}

// The whole file; a failure of a routine that knows no line gets that of the present pair.
void readdrawing(loading& load) {
    try {
        findentities(load);
        readentities(load);
    } catch (const runtimeerror& error) {
        if (error.text.starts_with(load.file.name)) throw;
        load.file.position = load.pair;
        inputfailure(load.file, error);
    }
}

// --- The whole ---

void computebounds(const loading& load) {
    const roommodel& r = RoomModel;
    for (std::int32_t face = 1; face <= load.counts.faces; ++face)
        for (int v = 1; v <= r.faceVertexCount(face); ++v)
            extendbox(r.faceVertexX(face, v), r.faceVertexY(face, v), r.faceVertexZ(face, v));
    for (std::int32_t i = 1; i <= load.counts.sources; ++i)
        extendbox(r.sourceX(i), r.sourceY(i), r.sourceZ(i));
    for (std::int32_t i = 1; i <= load.counts.receivers; ++i)
        extendbox(r.receiverX(i), r.receiverY(i), r.receiverZ(i));
}

bool planescheckwanted() {
    return platform::messagebox("DXFIN", "Do You want to perform planarity check on 3DFACE entities ?",
                                platform::buttons::yesno, platform::icon::none,
                                platform::answer::yes) == platform::answer::yes;
}

} // namespace

void loaddxf(const std::string& name) {
    loading load;
    load.checkplanes = planescheckwanted();
    readnames(load);

    const std::string shown = pagetext(name);
    const std::int32_t formerbackground = startroomload("Loading " + shown + " ...");
    platform::clearlog();
    const filebytes bytes = readfile(existingpath(name));
    load.file = openlist(bytes, shown);
    load.progress.size = bytes.size;
    readdrawing(load);

    computebounds(load);
    attachopenings(load.counts, shown);
    SessionState.panX = SessionState.panY = 0;
    finishroomload(load.counts, formerbackground);
}

} // namespace orv
