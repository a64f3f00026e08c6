// Memory of the process that runs a benchmark.
#pragma once

#include <fstream>
#include <string>

namespace orv {

// A figure of the process in bytes; VmRSS is what it has now, VmHWM the most that it has had.
inline double memoryfigure(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == name + ":") {
            double kilobytes = 0;
            status >> kilobytes;
            return 1024 * kilobytes;
        }
    return 0;
}

} // namespace orv
