// Places of the room's items as points of the model, and their place in a 3D picture. Raise subscript.
#pragma once

#include "room/roommodel.h"
#include "scene/camera.h"

#include <cstdint>

namespace orv {

inline modelpoint modelpointof(float x, float y, float z) {
    return {static_cast<double>(x), static_cast<double>(y), static_cast<double>(z)};
}

inline modelpoint facepoint(std::int32_t face, int vertex) {
    const roommodel& r = RoomModel;
    return modelpointof(r.faceVertexX(face, vertex), r.faceVertexY(face, vertex),
                        r.faceVertexZ(face, vertex));
}
inline modelpoint sourcepoint(std::int32_t source) {
    const roommodel& r = RoomModel;
    return modelpointof(r.sourceX(source), r.sourceY(source), r.sourceZ(source));
}
inline modelpoint receiverpoint(std::int32_t receiver) {
    const roommodel& r = RoomModel;
    return modelpointof(r.receiverX(receiver), r.receiverY(receiver), r.receiverZ(receiver));
}

// A model point in the 3D picture, as projectpoint has it.
inline picturepoint projected(const modelpoint& p) {
    picturepoint out;
    projectpoint(p.x, p.y, p.z, out.x, out.y);
    return out;
}

} // namespace orv
