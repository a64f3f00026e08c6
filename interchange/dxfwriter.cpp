// Writing the room as a DXF file.
#include "interchange/dxfwriter.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listoutput.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "platform/platform.h"
#include "room/roomload.h"
#include "room/roommodel.h"

#include <algorithm>
#include <vector>

namespace orv {

namespace {

constexpr std::size_t mostlayers = 100;
constexpr int flaggedlayers = 2000; // what the flag adds to a material's number
constexpr double raylength = 50;    // of a ray line, in its direction
constexpr int triangle = 3;

// Layers that every file has behind those of its materials.
struct fixedlayer {
    std::string_view name, colour;
};
constexpr fixedlayer fixedlayers[] = {{"SOURCES", "3"}, {"HOLES", "1"}, {"RECEIVERS", "2"}, {"RAYS", "2"}};
constexpr std::string_view materialcolour = "7";

void pair(std::string& text, int code, std::string_view value) {
    printwhole(text, code);
    text.append(lineend).append(value).append(lineend);
}

void numberpair(std::string& text, int code, float value) {
    printwhole(text, code);
    text += lineend;
    const std::size_t begin = text.size();
    appendnumber(text, static_cast<double>(value));
    if (text[begin] == ' ') text.erase(begin, 1);
    text += lineend;
}

// A point whose X has the code `code`, Y that of 10 more and Z of 20 more.
void pointpairs(std::string& text, int code, float x, float y, float z) {
    numberpair(text, code, x);
    numberpair(text, code + 10, y);
    numberpair(text, code + 20, z);
}

int layernumber(int material, int flag) {
    return flag != 0 ? material + flaggedlayers : material;
}

int facelayer(std::int32_t face) {
    return layernumber(RoomModel.faceMaterial(face), RoomModel.faceLayerFlag(face));
}

int doorlayer(std::int32_t door) {
    return layernumber(RoomModel.doorMaterial(door), RoomModel.doorLayerFlag(door));
}

// The layers of all faces and doors, each once, in the order of their first items.
std::vector<int> usedlayers() {
    std::vector<int> layers;
    const auto add = [&layers](int layer) {
        if (std::find(layers.begin(), layers.end(), layer) != layers.end()) return;
        if (layers.size() == mostlayers)
            throw runtimeerror{errorkind::subscript,
                               "Subscript out of range: a DXF file holds the layers of at most " +
                                   std::to_string(mostlayers) + " materials."};
        layers.push_back(layer);
    };
    for (std::int32_t face = 1; face <= RoomModel.faceCount; ++face) add(facelayer(face));
    for (std::int32_t door = 1; door <= RoomModel.doorCount; ++door) add(doorlayer(door));
    return layers;
}

void addlayer(std::string& text, std::string_view name, std::string_view colour) {
    pair(text, 0, "LAYER");
    pair(text, 2, name);
    pair(text, 70, "64");
    pair(text, 62, colour);
    pair(text, 6, "CONTINUOUS");
}

void addtables(std::string& text, const std::vector<int>& layers) {
    pair(text, 0, "SECTION");
    pair(text, 2, "HEADER");
    pair(text, 9, "$ACADVER");
    pair(text, 1, "AC1009");
    pair(text, 0, "ENDSEC");
    pair(text, 0, "SECTION");
    pair(text, 2, "TABLES");
    pair(text, 0, "TABLE");
    pair(text, 2, "LAYER");
    pair(text, 70, std::to_string(layers.size() + std::size(fixedlayers)));
    for (const int layer : layers) addlayer(text, trimmedwhole(layer), materialcolour);
    for (const fixedlayer& layer : fixedlayers) addlayer(text, layer.name, layer.colour);
    pair(text, 0, "ENDTAB");
    pair(text, 0, "ENDSEC");
}

void addface(std::string& text, std::int32_t face) {
    const roommodel& r = RoomModel;
    pair(text, 0, "3DFACE");
    pair(text, 8, trimmedwhole(facelayer(face)));
    const int vertices = r.faceVertexCount(face);
    const auto corner = [&](int code, int v) {
        pointpairs(text, code, r.faceVertexX(face, v), r.faceVertexY(face, v), r.faceVertexZ(face, v));
    };
    for (int v = 1; v <= vertices; ++v) corner(9 + v, v);
    if (vertices == triangle) corner(9 + triangle + 1, triangle);
}

void addpolyline(std::string& text, std::string_view layer, std::int32_t slot, const auto& count,
                 const auto& x, const auto& y, const auto& z) {
    pair(text, 0, "POLYLINE");
    pair(text, 8, layer);
    pair(text, 66, "1");
    pair(text, 10, "0.0");
    pair(text, 20, "0.0");
    pair(text, 30, "0.0");
    pair(text, 70, "8");
    for (int v = 1; v <= count(slot); ++v) {
        pair(text, 0, "VERTEX");
        pair(text, 8, layer);
        pointpairs(text, 10, x(slot, v), y(slot, v), z(slot, v));
        pair(text, 70, "32");
    }
    pair(text, 0, "SEQEND");
    pair(text, 8, "0");
}

void addreceiver(std::string& text, std::int32_t receiver) {
    const roommodel& r = RoomModel;
    pair(text, 0, "LINE");
    pair(text, 8, "RECEIVERS");
    pointpairs(text, 10, r.receiverX(receiver), r.receiverY(receiver), r.receiverZ(receiver));
    pointpairs(text, 11, r.receiverAimX(receiver), r.receiverAimY(receiver), r.receiverAimZ(receiver));
}

void addrayline(std::string& text, std::int32_t ray) {
    const auto end = [](float start, float direction) {
        return single(static_cast<double>(start) + raylength * static_cast<double>(direction));
    };
    const roommodel& r = RoomModel;
    pair(text, 0, "LINE");
    pair(text, 8, "RAYS");
    pointpairs(text, 10, r.rayLineX1(ray), r.rayLineY1(ray), r.rayLineZ1(ray));
    pointpairs(text, 11, end(r.rayLineX1(ray), r.rayLineX2(ray)), end(r.rayLineY1(ray), r.rayLineY2(ray)),
               end(r.rayLineZ1(ray), r.rayLineZ2(ray)));
}

void addsource(std::string& text, std::int32_t source) {
    const roommodel& r = RoomModel;
    pair(text, 0, "ATTDEF");
    pair(text, 8, "SOURCES");
    pointpairs(text, 10, r.sourceX(source), r.sourceY(source), r.sourceZ(source));
    pair(text, 40, "0");
    pair(text, 1, "");
    pair(text, 3, "");
    pair(text, 2, r.sourceFile(source));
    pair(text, 70, "0");
    numberpair(text, 51, r.sourceAimExtra(source));
    pair(text, 72, "5");
    pointpairs(text, 11, r.sourceAimX(source), r.sourceAimY(source), r.sourceAimZ(source));
}

void addentities(std::string& text) {
    const roommodel& r = RoomModel;
    pair(text, 0, "SECTION");
    pair(text, 2, "ENTITIES");
    for (std::int32_t face = 1; face <= r.faceCount; ++face) {
        showfaceprogress(face);
        addface(text, face);
    }
    for (std::int32_t hole = 1; hole <= r.holeCount; ++hole)
        addpolyline(text, "HOLES", hole, r.holeVertexCount, r.holeVertexX, r.holeVertexY, r.holeVertexZ);
    for (std::int32_t door = 1; door <= r.doorCount; ++door)
        addpolyline(text, trimmedwhole(doorlayer(door)), door, r.doorVertexCount, r.doorVertexX,
                    r.doorVertexY, r.doorVertexZ);
    for (std::int32_t receiver = 1; receiver <= r.receiverCount; ++receiver) addreceiver(text, receiver);
    for (std::int32_t ray = 1; ray <= r.rayLineCount; ++ray) addrayline(text, ray);
    for (std::int32_t source = 1; source <= r.sourceCount; ++source) addsource(text, source);
    pair(text, 0, "ENDSEC");
    pair(text, 0, "EOF");
}

} // namespace

void savedxf(const std::string& name) {
    platform::statustext(1, "Exporting geometry to " + pagetext(name) + " ...");
    platform::pointer(platform::shape::wait);
    std::string text;
    addtables(text, usedlayers());
    addentities(text);
    finishroomsave(name, text);
}

} // namespace orv
