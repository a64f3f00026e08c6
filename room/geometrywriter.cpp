// Writing the native geometry file.
#include "room/geometrywriter.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listoutput.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "platform/platform.h"
#include "room/roomload.h"
#include "room/roommodel.h"
#include "shell/sessionstate.h"
#include "shell/settings.h"

namespace orv {

namespace {

// Faces up to this size are dropped; the single-precision number is meant.
constexpr float smallestsize = 0.001F;

// A blank, then the number text, which brings a blank of its own unless negative.
void coordinate(std::string& text, float value) {
    text.append(1, ' ').append(numbertext(wide(value)));
}

void point(std::string& text, float x, float y, float z) {
    coordinate(text, x);
    coordinate(text, y);
    coordinate(text, z);
}

void openingline(std::string& text, std::string_view prefix, int flag, int material, int vertices) {
    text += prefix;
    printwhole(text, flag);
    printwhole(text, material);
    printwhole(text, vertices);
}

void faceline(std::string& text, std::string_view prefix, std::int32_t face) {
    const int vertices = RoomModel.faceVertexCount(face);
    openingline(text, prefix, RoomModel.faceLayerFlag(face), RoomModel.faceMaterial(face), vertices);
    text += "  ";
    for (int v = 1; v <= vertices; ++v)
        point(text, RoomModel.faceVertexX(face, v), RoomModel.faceVertexY(face, v),
              RoomModel.faceVertexZ(face, v));
    text += lineend;
}

void holesof(std::string& text, std::int32_t face) {
    for (std::int32_t hole = 1; hole <= RoomModel.holeCount; ++hole) {
        if (RoomModel.holeFace(hole) != face) continue;
        const int vertices = RoomModel.holeVertexCount(hole);
        openingline(text, "  Hole", RoomModel.holeLayerFlag(hole), RoomModel.holeMaterial(hole), vertices);
        for (int v = 1; v <= vertices; ++v)
            point(text, RoomModel.holeVertexX(hole, v), RoomModel.holeVertexY(hole, v),
                  RoomModel.holeVertexZ(hole, v));
        text += lineend;
    }
}

void doorsof(std::string& text, std::int32_t face) {
    for (std::int32_t door = 1; door <= RoomModel.doorCount; ++door) {
        if (RoomModel.doorFace(door) != face) continue;
        const int vertices = RoomModel.doorVertexCount(door);
        openingline(text, "  Door", RoomModel.doorLayerFlag(door), RoomModel.doorMaterial(door), vertices);
        for (int v = 1; v <= vertices; ++v)
            point(text, RoomModel.doorVertexX(door, v), RoomModel.doorVertexY(door, v),
                  RoomModel.doorVertexZ(door, v));
        text += lineend;
    }
}

void textline(std::string& text, std::string_view line) {
    text.append(line).append(lineend);
}

void wallof(std::string& text, std::int32_t face) {
    textline(text, " Wall");
    if (RoomModel.faceInWall(face) != 0) {
        faceline(text, "  Face", face);
        if (RoomModel.faceHasOpening(face) != 0) {
            holesof(text, face);
            doorsof(text, face);
        }
    } else {
        faceline(text, " Face", face); // without its openings, which belong to faces of walls only
    }
    textline(text, " End");
}

void sourceline(std::string& text, std::int32_t source) {
    text += " Source ";
    text += numbertext(wide(RoomModel.sourceX(source)));
    coordinate(text, RoomModel.sourceY(source));
    coordinate(text, RoomModel.sourceZ(source));
    point(text, RoomModel.sourceAimX(source), RoomModel.sourceAimY(source), RoomModel.sourceAimZ(source));
    coordinate(text, RoomModel.sourceAimExtra(source));
    text.append(1, ' ').append(RoomModel.sourceFile(source)).append(lineend);
}

void receiverline(std::string& text, std::int32_t receiver) {
    text += " Receiver ";
    text += numbertext(wide(RoomModel.receiverX(receiver)));
    coordinate(text, RoomModel.receiverY(receiver));
    coordinate(text, RoomModel.receiverZ(receiver));
    point(text, RoomModel.receiverAimX(receiver), RoomModel.receiverAimY(receiver),
          RoomModel.receiverAimZ(receiver));
    text += lineend;
}

// Whether a face is large enough to be written. Coordinates of no room at all may be too large to tell.
bool iswritten(std::int32_t face, const std::string& shown) {
    try {
        return facesize(face) > wide(smallestsize);
    } catch (const runtimeerror& error) {
        throw runtimeerror{error.kind, shown + ": face " + std::to_string(face) +
                                           " is too large for its size to be computed."};
    }
}

} // namespace

void savegeometry(const std::string& name) {
    const std::string shown = pagetext(name);
    platform::statustext(1, "Saving " + shown + " ...");
    platform::pointer(platform::shape::wait);
    updatesettings({{"Temp", trimmednumber(wide(SessionState.temperature))},
                    {"Humi", trimmednumber(wide(SessionState.humidity))}},
                   behindvalue::dropped);

    std::string text;
    textline(text, "EntityList");
    for (std::int32_t face = 1; face <= RoomModel.faceCount; ++face) {
        showfaceprogress(face);
        if (iswritten(face, shown)) wallof(text, face);
    }
    for (std::int32_t source = 1; source <= RoomModel.sourceCount; ++source) sourceline(text, source);
    for (std::int32_t receiver = 1; receiver <= RoomModel.receiverCount; ++receiver)
        receiverline(text, receiver);
    textline(text, "End");
    finishroomsave(name, text);
}

} // namespace orv
