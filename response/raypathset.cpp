// The store of sound paths.
#include "response/raypathset.h"

#include "room/roommodel.h"
#include "shell/sessionstate.h"

#include <algorithm>

namespace orv {

raypathset RayPathSet;

void dummyredim() {
    const auto receivers = static_cast<std::size_t>(std::max(RoomModel.receiverCount, 0)) + 1;
    RayPathSet.pathCountOf.assign(receivers, 0);
    RayPathSet.paths.clear();
    RayPathSet.paths.resize(receivers);
    SessionState.pathsExist = false;
}

std::int32_t pathsof(std::int32_t receiver) {
    if (receiver < 1 || static_cast<std::size_t>(receiver) >= RayPathSet.pathCountOf.size()) return 0;
    return RayPathSet.pathCountOf[static_cast<std::size_t>(receiver)];
}

const raypath* findpath(std::int32_t receiver, std::int32_t path) {
    if (path < 1 || path > pathsof(receiver)) return nullptr;
    return &RayPathSet.paths[static_cast<std::size_t>(receiver)][static_cast<std::size_t>(path - 1)];
}

} // namespace orv
