// The reader of filter banks.
//
// A WAV file of ten channels of 32-bit floats, all numbers little-endian. Its chunks are not walked: fields
// stand at fixed bytes, and only two of them are looked at.
//
//      0   "RIFF", size                          22   number of channels, 2 bytes: 10
//      8   "WAVEfmt ", size of the format        34   bits per sample, 2 bytes: 32
//     20   format tag, 2 bytes                  144   "data", size
//     24   sample rate, bytes per second        152   8192 frames of ten floats: the filters, channel 1
//     32   bytes per frame, 2 bytes                   that of 31.5 Hz, channel 10 that of 16 kHz
//
// What stands from byte 36 to 143 is another chunk, or anything.
#include "export/filterbank.h"

#include "base/files.h"
#include "base/runtimeerror.h"
#include "platform/platform.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string_view>

namespace orv {

filterbank FilterBank;

namespace {

constexpr std::size_t channelsplace = 22, bitsplace = 34;
constexpr int filterbits = 32;

static_assert(std::endian::native == std::endian::little, "samples are taken as they stand in the file");

// A field of two bytes; 0 behind the end of the file.
int shortat(std::string_view bytes, std::size_t place) {
    if (place + 2 > bytes.size()) return 0;
    return static_cast<unsigned char>(bytes[place]) | static_cast<unsigned char>(bytes[place + 1]) << 8;
}

// A file that is not there is made and stays behind, empty; meant. Where it cannot be made, it is missing.
filebytes madefile(const std::string& path) {
    try {
        return readfile(path);
    } catch (const runtimeerror& error) {
        if (error.kind != errorkind::filenotfound || !attempt([&] { replacefile(path, ""); })) throw;
        return {};
    }
}

void refuse(const char* reason) {
    platform::pointer(platform::shape::normal);
    platform::messagebox("Warning!", reason, platform::buttons::ok, platform::icon::stop,
                         platform::answer::ok);
}

} // namespace

std::string filterbankname(std::int32_t sampleRate) {
    return sampleRate == 48000 ? "Filterbank-48-multi.wav" : "Filterbank-44-multi.wav";
}

void readfilterbank(const std::string& path) {
    platform::addrow("List1", "Reading filterbank from " + pagetext(path) + "...", true);
    const filebytes buffer = madefile(existingpath(path));
    const std::string_view bytes = buffer;
    if (shortat(bytes, channelsplace) != octavebands) return refuse("Sorry, this is not a 10 ch. WAV file!");
    if (shortat(bytes, bitsplace) != filterbits) return refuse("Sorry, this .WAV file is not 32 bits!");
    const std::string_view data = bytes.substr(std::min(filterdatachunk + 8, bytes.size()));
    std::memcpy(FilterBank.samples.data(), data.data(), std::min(data.size(), sizeof FilterBank.samples));
    platform::yield();
}

} // namespace orv
