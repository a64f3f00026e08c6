// Places of the room's items as points of the model. Raise subscript.
#pragma once

#include "base/arithmetic.h"
#include "room/roommodel.h"
#include "scene/camera.h"

#include <cstdint>

namespace orv {

inline modelpoint modelpointof(float x, float y, float z) {
    return {wide(x), wide(y), wide(z)};
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

} // namespace orv
