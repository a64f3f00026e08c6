// The octave filters that ship with the program: how they are computed and written. At build time only; the
// program reads them from their files.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace orv {

// Taps 0..8191 of the bands 31.5 Hz..16 kHz, at index band - 1.
using filterdesign = std::array<std::vector<float>, 10>;

// Linear-phase octave filters about tap 4096 for a sample rate in Hz. Each is the difference of two low-pass
// filters at its band edges (IEC 61260-1, base ten), so that all ten add up to the difference of the
// outermost ones: a unit impulse less what lies below 16 Hz. The highest band reaches up to half the sample
// rate.
//
// A low-pass filter is a windowed sinc (J. F. Kaiser: Nonrecursive digital filter design using the I0-sinh
// window function, 1974) that is no longer than the shorter one of the windows of its two bands
// (bandStart..bandEnd of export/filterbank.h) allows, and its taps sum to 1, so that those of each band sum
// to 0.
filterdesign designfilters(std::int32_t sampleRate);

// The file that readfilterbank (export/filterbank.h) reads, as bytes. Between the format and the data there
// is a chunk of text, so that the samples stand where they are looked for and any program can open the file.
std::string filterbankbytes(const filterdesign& filters, std::int32_t sampleRate);

// Writes the files of both sample rates into a directory. Raises fileaccess.
void writefilterbanks(const std::string& directory);

} // namespace orv
