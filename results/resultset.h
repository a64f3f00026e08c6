// ResultSet and ImpulseResponse: the header values of the loaded result, and the energy of every receiver by
// time slot and band. Both last until the next load; what a file does not state stays as the one before left
// it.
#pragma once

#include "room/roommodel.h"
#include "shell/sessionstate.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace orv {

// The first format of result files whose receiver blocks have the new layout, with finished lateral rows.
constexpr double newformat = 1.2;

struct resultset {
    double resultFormat = 0;                                 // below newformat the old layout
    float soundSpeed = 0;                                    // m/s
    float firstBand = 0;                                     // 1..10
    float lastBand = 0;                                      // 1..10
    double pyramidCount = 0;                                 // pyramids that the calculation emitted
    double meanFreePath = 0;                                 // m
    double responseLength = 0;                               // s
    float timeStep = 0;                                      // s
    std::int32_t lastSlot = 0;                               // slots run 0..lastSlot
    float alfaConstant = 0;                                  // exponent of the late energy correction
    float betaConstant = 0;                                  // its scale; 0 or less turns it off
    float criticalTime = 0;                                  // s
    std::string sourceName;                                  // the source description file, or "NONE"
    std::string listingFileName;                             // of the calculation's output, kept and not read
    fixedtable<"sourcePower", float, bandcount> sourcePower; // dB, bandIndex 1..12
    fixedtable<"sourceDirectivity", float, octavebands> sourceDirectivity; // dB, bandIndex 1..10
    std::vector<double> receiverDelay;                                     // s, receiver 0..receiverCount
    std::int64_t resultDate = 0, rayFileDate = 0; // as filedate of base/files.h gives them
    bool rayFilePresent = false;
};

extern resultset ResultSet;

// The late energy factor: the share 1 - exp(-((critical / time) ^ alfa)) of the energy that a calculation
// with a finite number of pyramids still finds `time` s (above 0) behind the direct sound; `critical` in s.
// Not a number where it cannot be computed.
double lateenergyfactor(double critical, double alfa, double time);

// Linear energy, 10 log10 of which is a level in dB: time slot 0..lastSlot, bandIndex 1..12, receiver
// 0..receiverCount. A receiver's storage is taken when its block comes; one without reads as zeros.
// Receiver 0 is the mean of all.
struct impulseresponse {
    std::int32_t slots = 0;                     // per receiver, lastSlot + 1
    std::int32_t receivers = -1;                // highest receiver number, -1 before the first load
    std::int32_t taken = 0;                     // receivers with storage of their own
    std::vector<std::unique_ptr<float[]>> rows; // by receiver: slots x 12, the band running fastest

    // One value, single precision. Raises subscript.
    float operator()(std::int32_t slot, int band, std::int32_t receiver) const;

    // A receiver's slots x 12 values, or null when it has none.
    const float* rowof(std::int32_t receiver) const;
};

extern impulseresponse ImpulseResponse;

// Begins a new table for receivers 0..`receivers`, all reading as zero and taking no storage. Raises
// subscript without a slot or a receiver, and leaves the former table then.
void createresponse(std::int32_t slots, std::int32_t receivers);

// Lets the table reach up to `receivers`, keeping its contents.
void growresponse(std::int32_t receivers);

// The storage of a receiver, zero-filled when it is new. Raises memory when all responses together would
// pass three quarters of the machine's memory, and subscript outside 0..receivers.
float* takeresponse(std::int32_t receiver);

} // namespace orv
