// The message of a wrong subscript.
#include "base/table.h"

#include <string>

namespace orv {

void subscriptfailure(std::string_view table, long long index, long long lowest, long long highest) {
    throw runtimeerror{errorkind::subscript,
                       "Subscript out of range: " + std::string(table) + " " + std::to_string(index) +
                           " is outside " + std::to_string(lowest) + ".." + std::to_string(highest) + "."};
}

} // namespace orv
