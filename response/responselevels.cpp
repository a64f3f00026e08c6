// Energies into decibels, for the response that is looked at.
#include "response/responselevels.h"

#include "base/arithmetic.h"
#include "response/raypathset.h"
#include "results/acousticparameters.h"
#include "results/resultset.h"

#include <algorithm>
#include <cmath>

namespace orv {

responselevels ResponseLevels;

namespace {

// 4.342944819 ln(energy), and 0 for an energy of 1 or less, which is the plot's floor.
float floorlevel(float energy) {
    return energy > 1 ? static_cast<float>(decibelsperneper * std::log(wide(energy))) : 0;
}

// Takes the energies of all slots, zeros where there is no response.
void takeenergies(std::int32_t receiver, std::int32_t band, std::vector<float>& energies) {
    energies.assign(static_cast<std::size_t>(std::max(ResultSet.lastSlot, 0)) + 1, 0);
    if (receiver > ImpulseResponse.receivers) return;
    const float* const row = ImpulseResponse.rowof(receiver);
    const auto present = std::min(energies.size(), static_cast<std::size_t>(ImpulseResponse.slots));
    for (std::size_t t = 0; row && t < present; ++t)
        energies[t] = row[t * bandcount + static_cast<std::size_t>(band - 1)];
}

void integrate(const std::vector<float>& energies, std::vector<float>& decay) {
    decay.assign(energies.size(), 0);
    double sum = 1;
    for (std::size_t t = energies.size(); t-- > 0;) {
        sum += wide(energies[t]);
        if (sum > 0) decay[t] = static_cast<float>(decibelsperneper * std::log(sum));
    }
}

// Takes the paths of a receiver out of the energies, which stay single-precision ones, and their levels into
// pathLevel.
void takepaths(std::int32_t receiver, std::int32_t band, std::vector<float>& energies) {
    responselevels& L = ResponseLevels;
    L.pathCount = pathsof(receiver);
    L.pathLevel.assign(static_cast<std::size_t>(L.pathCount) + 1, 0);
    for (std::int32_t k = 1; k <= L.pathCount; ++k) {
        const raypath& path = *findpath(receiver, k);
        const auto energy = wide(path.energy[static_cast<std::size_t>(band)]);
        if (!(energy > 1)) continue;
        L.pathLevel[static_cast<std::size_t>(k)] = static_cast<float>(10 * std::log10(energy));
        if (const std::int32_t slot = slotofpath(path); slot >= 0) {
            float& left = energies[static_cast<std::size_t>(slot)];
            left = static_cast<float>(wide(left) - energy);
        }
    }
}

} // namespace

bool computelevels(std::int32_t receiver, std::int32_t band, bool paths) {
    responselevels& L = ResponseLevels;
    if (L.shownReceiver == receiver && L.shownBand == band && L.withPaths == paths) return false;
    L.shownReceiver = receiver;
    L.shownBand = band;
    L.withPaths = paths;
    L.pathCount = 0;
    L.pathLevel.assign(1, 0);
    std::vector<float>& energies = L.responseLevel; // until they become levels
    takeenergies(receiver, band, energies);
    integrate(energies, L.schroederLevel);
    if (paths) takepaths(receiver, band, energies);
    std::transform(energies.begin(), energies.end(), energies.begin(), floorlevel);
    return true;
}

void forgetlevels() {
    ResponseLevels.shownReceiver = -1;
    ResponseLevels.pathCount = 0;
}

std::int32_t slotofpath(const raypath& path) {
    const double slot = Int(path.time / wide(ResultSet.timeStep));
    return slot >= 0 && slot <= ResultSet.lastSlot ? static_cast<std::int32_t>(slot) : -1;
}

float levelat(const std::vector<float>& levels, std::int64_t index) {
    return index >= 0 && static_cast<std::size_t>(index) < levels.size()
               ? levels[static_cast<std::size_t>(index)]
               : 0;
}

} // namespace orv
