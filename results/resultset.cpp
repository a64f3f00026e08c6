// The loaded result's header values and responses.
#include "results/resultset.h"

#include "platform/platform.h"

#include <cmath>

namespace orv {

resultset ResultSet;
impulseresponse ImpulseResponse;

namespace {

constexpr double memoryshare = 0.75; // of the machine's memory that all responses may take

std::size_t rowcells(std::int32_t slots) {
    return static_cast<std::size_t>(slots) * static_cast<std::size_t>(bandcount);
}

} // namespace

double lateenergyfactor(double critical, double alfa, double time) {
    return 1 - std::exp(-std::pow(critical / time, alfa));
}

float impulseresponse::operator()(std::int32_t slot, int band, std::int32_t receiver) const {
    if (slot < 0 || slot >= slots) subscriptfailure("ImpulseResponse slot", slot, 0, slots - 1);
    if (band < 1 || band > bandcount) subscriptfailure("ImpulseResponse band", band, 1, bandcount);
    const float* const row = rowof(receiver);
    return row ? row[rowcells(slot) + static_cast<std::size_t>(band - 1)] : 0.0F;
}

const float* impulseresponse::rowof(std::int32_t receiver) const {
    if (receiver < 0 || receiver > receivers)
        subscriptfailure("ImpulseResponse receiver", receiver, 0, receivers);
    return rows[static_cast<std::size_t>(receiver)].get();
}

void createresponse(std::int32_t slots, std::int32_t receivers) {
    if (slots < 1 || receivers < 0) subscriptfailure("ImpulseResponse slot", slots, 1, slots);
    ImpulseResponse.rows.clear();
    ImpulseResponse.slots = slots;
    ImpulseResponse.receivers = -1;
    ImpulseResponse.taken = 0;
    growresponse(receivers);
}

void growresponse(std::int32_t receivers) {
    if (receivers <= ImpulseResponse.receivers) return;
    ImpulseResponse.rows.resize(static_cast<std::size_t>(receivers) + 1);
    ImpulseResponse.receivers = receivers;
}

float* takeresponse(std::int32_t receiver) {
    ImpulseResponse.rowof(receiver); // the subscript check
    auto& row = ImpulseResponse.rows[static_cast<std::size_t>(receiver)];
    if (row) return row.get();
    const std::size_t cells = rowcells(ImpulseResponse.slots);
    const double bytes =
        static_cast<double>(ImpulseResponse.taken + 1) * static_cast<double>(cells) * sizeof(float);
    if (bytes > memoryshare * static_cast<double>(platform::memorybytes()))
        throw runtimeerror{errorkind::memory, "Not enough memory for the impulse responses."};
    row = std::make_unique<float[]>(cells);
    ++ImpulseResponse.taken;
    return row.get();
}

} // namespace orv
