// Rayons geometry.
//
// The import reads a set of text files; all numbers are free list input, separated by blanks, commas and line
// ends in any mixture.
//
//   NAME.geo   count of faces, then to the end of the file for each face:
//                number                 counted from 0; a negative sign marks a thick face, for which one
//                                       more number follows that is not kept
//                n, then n times x y z  the vertices
//                x y z                  the normal
//   NAME.mat   a heading line, count of faces, then for each face
//                number, material       the sign is not kept; the name runs to a comma or the line end
//   NAME.sou   a heading line, count of sources, then for each source
//                number, x y z, x y z, two numbers, and the directivity file's name as a whole line; the
//                                       second point is relative to the first
//   NAME.rec   a heading line, count of receivers, then for each receiver
//                number, x y z, x y z   position and second point
//
// The export writes the four corners of every face, numbered through, a line "Faces:", and for each face its
// four corner numbers and the same backwards:
//
//    1  0  0  0
//    ...
//   Faces:
//    1  2  3  4
//    4  3  2  1
#include "interchange/rayons.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listinput.h"
#include "base/listoutput.h"
#include "base/numbertext.h"
#include "interchange/materialtable.h"
#include "platform/platform.h"
#include "room/roomload.h"
#include "room/roommodel.h"

#include <algorithm>
#include <vector>

namespace orv {

namespace {

constexpr std::size_t highestname = 1024; // row of the material table
constexpr double thickshift = 0.01;       // of the normal
constexpr int exportedcorners = 4;
constexpr std::string_view unknownsource = "Unknown", usualsource = "Omni.spk";

// A file of the set.
struct setfile {
    filebytes bytes;
    listreader reader;
};

setfile openfile(const std::string& path) {
    setfile file{readfile(path), {}};
    file.reader = openlist(file.bytes, pagetext(path));
    return file;
}

std::string companion(const std::string& name, const char* extension) {
    const std::string proper = filenameof(name);
    const std::string stem = proper.substr(0, proper.find('.'));
    return existingpath(joinpath(directoryof(name), stem + "." + extension));
}

roompoint readpoint(listreader& reader) {
    float coordinate[3];
    readsingles(reader, coordinate);
    return {coordinate[0], coordinate[1], coordinate[2]};
}

// A count or slot that has to be within a table.
void checkslot(const listreader& reader, std::int64_t slot, std::int32_t highest, const std::string& what) {
    if (slot < 0 || slot > highest)
        inputfailure(reader, errorkind::subscript,
                     "subscript out of range, a room holds 0 to " + std::to_string(highest) + " " + what +
                         ", not " + std::to_string(slot));
}

std::int32_t readcount(listreader& reader, std::int32_t highest, const std::string& what) {
    const std::int32_t count = readwhole32(reader);
    checkslot(reader, count, highest, what);
    return count;
}

// The row of a face by its number, whose sign is dropped.
std::int32_t facerow(const listreader& reader, std::int32_t number) {
    const std::int64_t row = (number < 0 ? -std::int64_t{number} : std::int64_t{number}) + 1;
    checkslot(reader, row, highestface, "faces");
    return static_cast<std::int32_t>(row);
}

// --- Faces ---

void shiftface(const listreader& reader, std::int32_t face, int vertices, const roompoint& normal) {
    const auto shifted = [&reader](float coordinate, float along) {
        try {
            return single(static_cast<double>(coordinate) + thickshift * static_cast<double>(along));
        } catch (const runtimeerror& error) {
            inputfailure(reader, error.kind, "a coordinate beside its thick face is too large");
        }
    };
    for (int v = 1; v <= vertices; ++v) {
        float& x = RoomModel.faceVertexX(face, v);
        float& y = RoomModel.faceVertexY(face, v);
        float& z = RoomModel.faceVertexZ(face, v);
        x = shifted(x, normal.x);
        y = shifted(y, normal.y);
        z = shifted(z, normal.z);
    }
}

// `thickfaces` is how many there have been.
void readface(listreader& reader, std::int32_t& thickfaces) {
    const std::int32_t number = readwhole32(reader);
    const std::int32_t face = facerow(reader, number);
    if (number < 0) {
        readnumber(reader);
        ++thickfaces;
        checkslot(reader, thickfaces, highestface, "faces");
    }
    const std::int16_t vertices = readwhole16(reader);
    checkslot(reader, vertices, facevertices, "vertices in a face");
    RoomModel.faceVertexCount(face) = vertices;
    RoomModel.faceLayerFlag(face) = RoomModel.faceInWall(face) = RoomModel.faceHasOpening(face) = 0;
    for (int v = 1; v <= vertices; ++v) {
        const roompoint at = readpoint(reader);
        setvertex(face, v, at);
        extendbox(at.x, at.y, at.z);
    }
    const roompoint normal = readpoint(reader);
    if (thickfaces == 0) return;
    // Both on purpose: the row is that of the count, and faces behind a thick one are shifted like it.
    RoomModel.faceVertexCount(thickfaces) = vertices;
    shiftface(reader, face, vertices, normal);
}

// Returns the count of faces that the file states.
std::int32_t readfaces(const std::string& path) {
    setfile file = openfile(path);
    listreader& reader = file.reader;
    loadprogress progress;
    progress.size = file.bytes.size;
    const std::int32_t count = readcount(reader, highestface, "faces");
    std::int32_t thickfaces = 0;
    while (!nothingleft(reader)) {
        readface(reader, thickfaces);
        showprogress(progress, reader.position);
    }
    return count;
}

// --- Materials ---

struct facematerial {
    std::int32_t face;
    std::string name;
};

std::vector<facematerial> readmaterials(const std::string& path) {
    setfile file = openfile(path);
    listreader& reader = file.reader;
    readline(reader);
    const std::int32_t count = readcount(reader, highestface, "faces");
    std::vector<facematerial> materials;
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int32_t face = facerow(reader, readwhole32(reader));
        materials.push_back({face, std::string(trimboth(readtext(reader, listreader::commaends)))});
    }
    return materials;
}

void setmaterials(const std::vector<facematerial>& materials, const std::vector<std::string>& names) {
    const auto end = names.begin() + static_cast<std::ptrdiff_t>(std::min(names.size(), highestname + 1));
    for (const facematerial& each : materials) {
        const auto found = std::find(names.begin(), end, each.name);
        if (found != end)
            RoomModel.faceMaterial(each.face) = static_cast<std::int16_t>(found - names.begin());
    }
}

// --- Receivers and sources ---

std::int32_t readreceivers(const std::string& path) {
    setfile file = openfile(path);
    listreader& reader = file.reader;
    readline(reader);
    const std::int32_t count = readcount(reader, highestreceiver, "receivers");
    for (std::int32_t receiver = 1; receiver <= count; ++receiver) {
        readwhole32(reader);
        const roompoint position = readpoint(reader);
        const roompoint second = readpoint(reader);
        setreceiver(receiver, position, second);
        platform::yield();
    }
    return count;
}

float aimed(const listreader& reader, float position, float direction) {
    try {
        return single(static_cast<double>(position) + static_cast<double>(direction));
    } catch (const runtimeerror& error) {
        inputfailure(reader, error.kind, "the aim of a source is too far away");
    }
}

std::int32_t readsources(const std::string& path) {
    setfile file = openfile(path);
    listreader& reader = file.reader;
    readline(reader);
    const std::int32_t count = readcount(reader, highestsource, "sources");
    for (std::int32_t source = 1; source <= count; ++source) {
        readwhole32(reader);
        const roompoint position = readpoint(reader);
        const roompoint direction = readpoint(reader);
        readnumber(reader);
        readnumber(reader);
        const std::string_view directivity = trimboth(readline(reader));
        setsource(source, position,
                  {aimed(reader, position.x, direction.x), aimed(reader, position.y, direction.y),
                   aimed(reader, position.z, direction.z)});
        RoomModel.sourceAimExtra(source) = 0;
        RoomModel.sourceFile(source) = directivity == unknownsource ? usualsource : directivity;
        platform::yield();
    }
    return count;
}

// --- Export ---

void addnumbers(std::string& text, std::initializer_list<std::int64_t> numbers) {
    const char* separator = "";
    for (const std::int64_t number : numbers) {
        text.append(separator).append(wholetext(number));
        separator = " ";
    }
    text += lineend;
}

} // namespace

void loadrayons(const std::string& name) {
    const std::string path = existingpath(name);
    const std::string shown = pagetext(name);
    filesize(path); // a missing file leaves the room
    const std::int32_t formerbackground = startroomload("Loading " + shown + " ...");
    const std::vector<std::string> names = materialnames();
    platform::statustext(1, "Loading " + shown + " ...");
    const std::vector<facematerial> materials = readmaterials(companion(path, "mat"));
    roomcounts counts;
    counts.faces = readfaces(path);
    counts.receivers = readreceivers(companion(path, "rec"));
    counts.sources = readsources(companion(path, "sou"));
    setmaterials(materials, names);
    finishroomload(counts, formerbackground);
}

void saverayons(const std::string& name) {
    platform::pointer(platform::shape::wait);
    platform::statustext(1, "Exporting geometry to " + pagetext(name) + " ...");
    std::string text;
    std::int64_t number = 0;
    for (std::int32_t face = 1; face <= RoomModel.faceCount; ++face) {
        for (int v = 1; v <= exportedcorners; ++v) { // a triangle's fourth is what the model holds there
            text += wholetext(++number);
            for (const float coordinate : {RoomModel.faceVertexX(face, v), RoomModel.faceVertexY(face, v),
                                           RoomModel.faceVertexZ(face, v)})
                appendnumber(text.append(1, ' '), static_cast<double>(coordinate));
            text += lineend;
        }
        showfaceprogress(face);
    }
    text.append("Faces:").append(lineend);
    for (std::int64_t first = 1; first <= number; first += exportedcorners) {
        addnumbers(text, {first, first + 1, first + 2, first + 3});
        addnumbers(text, {first + 3, first + 2, first + 1, first});
    }
    finishroomsave(name, text);
}

} // namespace orv
