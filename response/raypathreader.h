// The ray path file of a calculation: every sound path that it found, beside its result.
#pragma once

#include <string>

namespace orv {

// Replaces RayPathSet by the ray path file `name` (a path), sized for receivers 0..RoomModel.receiverCount,
// and sets SessionState.pathsExist. Energies are divided by the late energy factor of their time behind
// receiverDelay(0), with criticalTime and alfaConstant as the result has left them (1 where betaConstant is 0
// or less); the paths of each receiver 1..N come out sorted by time, equal ones as they stand in the file.
// Shows its progress and yields at each record. A receiver above N ends the file silently, and what was read
// is kept.
//
// Raises filenotfound and fileaccess; pastend, typemismatch and overflow for a record that is cut or holds no
// numbers, subscript for a receiver below 0, divisionbyzero for a factor of 0: all name the record.
void loadchiocc(const std::string& name);

} // namespace orv
