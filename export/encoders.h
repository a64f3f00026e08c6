// Directional encoders: how much of a sound reaches each channel and block of an export. All directions are
// unit vectors in the axes of the room; neither the aim of a receiver nor that of a source is looked at.
#pragma once

#include <cstdint>

namespace orv {

struct direction {
    double x = 0, y = 0, z = 0;
};

// Where a sound leaves its source, seen from the source, and where it comes from, seen from the receiver.
struct pathdirections {
    direction source, receiver;
};

// The directions of a receiver's stored path (RayPathSet, ray from 1): through its first and last reflection
// point, or the straight way of direct sound. Raises divisionbyzero where such a point lies on the source or
// the receiver, and subscript for a source that RoomModel has no slot for.
pathdirections directionsof(std::int32_t receiver, std::int32_t ray);

// The factors of the format with this row (export/exportformats.h): channel 1.. by the receiver's direction,
// block 1.. by the source's. 1 for a channel or block that the format's encoder does not have.
double receivergain(const direction& receiver, int formatRow, int channel);
double sourcegain(const direction& source, int formatRow, int block);

// Their product, for the source direction s and the receiver direction r.
double encodegain(double sx, double sy, double sz, double rx, double ry, double rz, int formatRow, int block,
                  int channel);

// The gain of a stored path: 1 for row 0, whatever the path, otherwise encodegain of its directions. Raises
// as directionsof.
double raygain(int block, int channel, std::int32_t receiver, std::int32_t ray, int formatRow);

} // namespace orv
