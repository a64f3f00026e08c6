// The tour again and again in one process: does memory come back?
#pragma once

#include "tour/guide.h"

#include <cstddef>
#include <span>
#include <string>

namespace orv::tour {

// Runs the steps before `begin` once, those from there on `rounds` times, and the last, which leaves the
// program, at the end. After each round comes a result that is larger than the one of the round before, then
// the sample hall again, and a line of the memory that is in use then. Returns whether every step was good
// and memory came back.
bool runrounds(std::span<const step> steps, std::size_t begin, const std::string& output, int rounds);

} // namespace orv::tour
