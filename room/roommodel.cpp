// The one RoomModel and its measures.
#include "room/roommodel.h"

#include "base/arithmetic.h"

#include <algorithm>
#include <cmath>

namespace orv {

namespace {

constexpr float unsetmax = -1E9F, unsetmin = 1E9F; // of the box before anything extends it

} // namespace

// Zero at first, so that the large tables take no memory until a model fills them; start-up sets the box.
roommodel RoomModel;

void setvertex(std::int32_t face, int vertex, const roompoint& at) {
    RoomModel.faceVertexX(face, vertex) = at.x;
    RoomModel.faceVertexY(face, vertex) = at.y;
    RoomModel.faceVertexZ(face, vertex) = at.z;
}

void setsource(std::int32_t source, const roompoint& position, const roompoint& aim) {
    RoomModel.sourceX(source) = position.x;
    RoomModel.sourceY(source) = position.y;
    RoomModel.sourceZ(source) = position.z;
    RoomModel.sourceAimX(source) = aim.x;
    RoomModel.sourceAimY(source) = aim.y;
    RoomModel.sourceAimZ(source) = aim.z;
}

void setreceiver(std::int32_t receiver, const roompoint& position, const roompoint& second) {
    RoomModel.receiverX(receiver) = position.x;
    RoomModel.receiverY(receiver) = position.y;
    RoomModel.receiverZ(receiver) = position.z;
    RoomModel.receiverAimX(receiver) = second.x;
    RoomModel.receiverAimY(receiver) = second.y;
    RoomModel.receiverAimZ(receiver) = second.z;
}

void setrayline(std::int32_t ray, const roompoint& start, const roompoint& direction) {
    RoomModel.rayLineX1(ray) = start.x;
    RoomModel.rayLineY1(ray) = start.y;
    RoomModel.rayLineZ1(ray) = start.z;
    RoomModel.rayLineX2(ray) = direction.x;
    RoomModel.rayLineY2(ray) = direction.y;
    RoomModel.rayLineZ2(ray) = direction.z;
}

void resetroom() {
    RoomModel.faceCount = RoomModel.sourceCount = RoomModel.receiverCount = 0;
    RoomModel.holeCount = RoomModel.doorCount = RoomModel.rayLineCount = 0;
    RoomModel.roomMaxX = RoomModel.roomMaxY = RoomModel.roomMaxZ = unsetmax;
    RoomModel.roomMinX = RoomModel.roomMinY = RoomModel.roomMinZ = unsetmin;
}

void extendbox(float x, float y, float z) {
    RoomModel.roomMaxX = std::max(RoomModel.roomMaxX, x);
    RoomModel.roomMaxY = std::max(RoomModel.roomMaxY, y);
    RoomModel.roomMaxZ = std::max(RoomModel.roomMaxZ, z);
    RoomModel.roomMinX = std::min(RoomModel.roomMinX, x);
    RoomModel.roomMinY = std::min(RoomModel.roomMinY, y);
    RoomModel.roomMinZ = std::min(RoomModel.roomMinZ, z);
}

void computecentre() {
    const auto middle = [](float low, float high) { return single((wide(low) + wide(high)) / 2); };
    RoomModel.roomCentreX = middle(RoomModel.roomMinX, RoomModel.roomMaxX);
    RoomModel.roomCentreY = middle(RoomModel.roomMinY, RoomModel.roomMaxY);
    RoomModel.roomCentreZ = middle(RoomModel.roomMinZ, RoomModel.roomMaxZ);
}

float Area(float x1, float y1, float z1, float x2, float y2, float z2, float x3, float y3, float z3) {
    const double ax = wide(x1) - wide(x3);
    const double ay = wide(y1) - wide(y3);
    const double az = wide(z1) - wide(z3);
    const double bx = wide(x2) - wide(x3);
    const double by = wide(y2) - wide(y3);
    const double bz = wide(z2) - wide(z3);
    const double x = ay * bz - az * by;
    const double y = az * bx - ax * bz;
    const double z = ax * by - ay * bx;
    return single(std::sqrt(x * x + y * y + z * z));
}

double facesize(std::int32_t face) {
    const auto& X = RoomModel.faceVertexX;
    const auto& Y = RoomModel.faceVertexY;
    const auto& Z = RoomModel.faceVertexZ;
    const int n = RoomModel.faceVertexCount(face);
    double size = 0;
    for (int k = 1; k <= n - 2; ++k)
        size += wide(Area(X(face, k), Y(face, k), Z(face, k), X(face, k + 1), Y(face, k + 1), Z(face, k + 1),
                          X(face, n), Y(face, n), Z(face, n)));
    return size;
}

} // namespace orv
