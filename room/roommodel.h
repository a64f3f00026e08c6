// RoomModel, the one description of the room: polygonal faces, holes and doors set into them, sources,
// receivers and loose ray lines, with the bounding box and its centre.
//
// Everybody may read and write the fields; the geometry readers fill them. A load overwrites records from
// slot 1 upwards and leaves what stands behind the new counts. Coordinates are single-precision metres in one
// frame. A wrong index raises errorkind::subscript.
#pragma once

#include "base/table.h"

#include <cstdint>
#include <string>

namespace orv {

constexpr int highestface = 75000, facevertices = 120;
constexpr int highesthole = 400, holevertices = 64;
constexpr int highestdoor = 1000, doorvertices = 5;
constexpr int highestsource = 20000;
constexpr int highestreceiver = 100000;
constexpr int highestrayline = 100000;

struct roommodel {
    std::int32_t faceCount, sourceCount, receiverCount, holeCount, doorCount, rayLineCount;

    // Faces 1..faceCount with vertices 1..faceVertexCount, in file order without a closing one. Flags are -1
    // or 0. faceHasOpening is a hint only: the reader sets it and never clears it. Vertices are stored by
    // number, since most faces have few of the 120 they may have.
    fixedtable<"faceLayerFlag", std::int16_t, highestface> faceLayerFlag;
    fixedtable<"faceMaterial", std::int16_t, highestface> faceMaterial;
    fixedtable<"faceVertexCount", std::int16_t, highestface> faceVertexCount;
    fixedtable<"faceInWall", std::int16_t, highestface> faceInWall;
    fixedtable<"faceHasOpening", std::int16_t, highestface> faceHasOpening;
    columntable<"faceVertexX", float, highestface, facevertices> faceVertexX;
    columntable<"faceVertexY", float, highestface, facevertices> faceVertexY;
    columntable<"faceVertexZ", float, highestface, facevertices> faceVertexZ;

    // Holes and doors; the face that owns one is named by its 16-bit index.
    fixedtable<"holeLayerFlag", std::int16_t, highesthole> holeLayerFlag;
    fixedtable<"holeMaterial", std::int16_t, highesthole> holeMaterial;
    fixedtable<"holeVertexCount", std::int16_t, highesthole> holeVertexCount;
    fixedtable<"holeFace", std::int16_t, highesthole> holeFace;
    fixedtable<"holeVertexX", float, highesthole, holevertices> holeVertexX;
    fixedtable<"holeVertexY", float, highesthole, holevertices> holeVertexY;
    fixedtable<"holeVertexZ", float, highesthole, holevertices> holeVertexZ;
    fixedtable<"doorLayerFlag", std::int16_t, highestdoor> doorLayerFlag;
    fixedtable<"doorMaterial", std::int16_t, highestdoor> doorMaterial;
    fixedtable<"doorVertexCount", std::int16_t, highestdoor> doorVertexCount;
    fixedtable<"doorFace", std::int16_t, highestdoor> doorFace;
    fixedtable<"doorVertexX", float, highestdoor, doorvertices> doorVertexX;
    fixedtable<"doorVertexY", float, highestdoor, doorvertices> doorVertexY;
    fixedtable<"doorVertexZ", float, highestdoor, doorvertices> doorVertexZ;

    // Sources: position, aiming point, a fourth number of the aiming group that is carried unchanged, and the
    // directivity file's name as bytes of the geometry file.
    fixedtable<"sourceX", float, highestsource> sourceX;
    fixedtable<"sourceY", float, highestsource> sourceY;
    fixedtable<"sourceZ", float, highestsource> sourceZ;
    fixedtable<"sourceAimX", float, highestsource> sourceAimX;
    fixedtable<"sourceAimY", float, highestsource> sourceAimY;
    fixedtable<"sourceAimZ", float, highestsource> sourceAimZ;
    fixedtable<"sourceAimExtra", float, highestsource> sourceAimExtra;
    fixedtable<"sourceFile", std::string, highestsource> sourceFile;

    // Receivers: position and a second point, carried unchanged.
    fixedtable<"receiverX", float, highestreceiver> receiverX;
    fixedtable<"receiverY", float, highestreceiver> receiverY;
    fixedtable<"receiverZ", float, highestreceiver> receiverZ;
    fixedtable<"receiverAimX", float, highestreceiver> receiverAimX;
    fixedtable<"receiverAimY", float, highestreceiver> receiverAimY;
    fixedtable<"receiverAimZ", float, highestreceiver> receiverAimZ;

    // Ray lines: a start and a direction; drawn from the start to start + 50 times the direction.
    fixedtable<"rayLineX1", float, highestrayline> rayLineX1;
    fixedtable<"rayLineY1", float, highestrayline> rayLineY1;
    fixedtable<"rayLineZ1", float, highestrayline> rayLineZ1;
    fixedtable<"rayLineX2", float, highestrayline> rayLineX2;
    fixedtable<"rayLineY2", float, highestrayline> rayLineY2;
    fixedtable<"rayLineZ2", float, highestrayline> rayLineZ2;

    // Box over every face vertex, source and receiver of the last geometry file. The result reader extends x
    // and y by its receivers' positions and leaves z and the centre alone.
    float roomMaxX, roomMaxY, roomMaxZ;
    float roomMinX, roomMinY, roomMinZ;
    float roomCentreX, roomCentreY, roomCentreZ;
};

extern roommodel RoomModel;

struct roompoint {
    float x = 0, y = 0, z = 0; // m
};

// Each stores one place of a record: a face's vertex; a source's position and aiming point; a receiver's
// position and second point; a ray line's start and direction. The box stays as it is. Raise subscript.
void setvertex(std::int32_t face, int vertex, const roompoint& at);
void setsource(std::int32_t source, const roompoint& position, const roompoint& aim);
void setreceiver(std::int32_t receiver, const roompoint& position, const roompoint& second);
void setrayline(std::int32_t ray, const roompoint& start, const roompoint& direction);

// Counts to 0 and the box to one that any point extends (maxima -1E9, minima 1E9), as every reader begins.
void resetroom();

// Widens the box by a point.
void extendbox(float x, float y, float z);

// Each centre coordinate becomes (min + max) / 2. Raises overflow where single precision does not hold it.
void computecentre();

// Twice the area of the triangle P1 P2 P3 in m2: the length of (P1 - P3) x (P2 - P3). The factor of two
// belongs to every threshold that uses it.
float Area(float x1, float y1, float z1, float x2, float y2, float z2, float x3, float y3, float z3);

// Size of face 1..faceCount: the sum of Area over the fan (vertex k, vertex k + 1, last vertex), so twice its
// area in m2 for a plane convex face; 0 below three vertices. Raises subscript.
double facesize(std::int32_t face);

} // namespace orv
