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
    RayPathSet.paths.assign(receivers, std::vector<raypath>(1));
    SessionState.pathsExist = false;
}

} // namespace orv
