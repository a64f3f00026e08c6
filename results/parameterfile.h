// The parameter file beside a result: all parameters as text, so that a result can be opened without its
// responses. Two layouts are read, the current one is written.
#pragma once

#include <string>

namespace orv {

// The parameter file of a name: all but the last three characters, "-", the last two; that of a parameter
// file is itself. Raises domain for a name that is too short.
std::string parameternameof(const std::string& name);

// Whether a name is that of its own parameter file: a result of such a name has none beside it, and saving
// its parameters would replace it. Raises domain for a name that is too short.
bool isparameterfile(const std::string& name);

// Writes ParameterSet, the options of the speech index and the names into the parameter file of `name`, which
// is replaced when all is written. Raises fileaccess; the old file stays then.
void saveparameters(const std::string& name);

// Fills ParameterSet and, from the current layout, the options, RoomModel.receiverCount and
// SessionState.geometryFileName from the named file; from the older layout, what it holds, and runs the
// speech index, whose options open, and asks whether to rewrite the file, of which a copy is kept with ".old"
// behind its name. Sets SessionState.parameterSource to -1. Raises filenotfound, pastend, typemismatch and
// subscript with file and line; the tables are partly filled then.
void loadparameters(const std::string& name);

} // namespace orv
