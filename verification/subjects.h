// The subjects of the verification, each in a file of its own.
#pragma once

#include "verification/report.h"

#include <string>

namespace orv::verification {

subject verifydecays();     // parameters of exponential and other decays
subject verifyspeech();     // modulation transfer and speech index
subject verifyharmonics();  // spherical harmonics of the export
subject verifyfield();      // the field of a map, gridding and contours
subject verifycamera();     // projection
subject verifyfilters();    // the filter bank
subject verifyexport();     // energies and directions of an exported file
subject verifysamplehall(); // the sample hall's decay times

// Speech indices of a worked example in a text file, such as a matrix of modulations printed in a standard or
// a paper; example.txt is one. Raises filenotfound, and pastend or typemismatch with the line.
subject verifyexample(const std::string& path);

} // namespace orv::verification
