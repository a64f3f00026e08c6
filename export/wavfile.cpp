// WAV files of 32-bit floats.
//
//      0   "RIFF", 36 + data bytes               28   sample rate x bytes per frame
//      8   "WAVEfmt ", 16                        32   bytes per frame, 2 bytes
//     20   3 (IEEE float), 2 bytes               34   32, bits per sample, 2 bytes
//     22   channels, 2 bytes                     36   "data", data bytes
//     24   sample rate                           44   frames, the samples of channel 1 first
#include "export/wavfile.h"

#include "base/runtimeerror.h"

#include <bit>
#include <filesystem>
#include <limits>
#include <system_error>

namespace orv {

namespace {

constexpr std::uint32_t floatformat = 3;
constexpr std::int64_t headerrest = 36; // bytes of the header behind the file's size
constexpr std::size_t copiedbytes = 1 << 20;

static_assert(std::endian::native == std::endian::little, "samples are written as they stand in memory");

std::int32_t checkedsize(int channels, std::int64_t frames, std::int64_t beside) {
    const std::int64_t bytes = channels * frames * std::int64_t{sizeof(float)} + beside;
    if (bytes > std::numeric_limits<std::int32_t>::max())
        throw runtimeerror{errorkind::overflow, "A WAV file of " + std::to_string(channels) +
                                                    " channels and " + std::to_string(frames) +
                                                    " samples would have " + std::to_string(bytes) +
                                                    " bytes; it can have 2147483647 at most."};
    return static_cast<std::int32_t>(bytes);
}

} // namespace

void appendlittle(std::string& bytes, std::uint32_t value, int count) {
    for (; count > 0; --count, value >>= 8) bytes += static_cast<char>(value & 0xFFU);
}

std::string waveformat(int channels, std::int32_t sampleRate) {
    const auto framebytes = static_cast<std::uint32_t>(channels) * std::uint32_t{sizeof(float)};
    const auto rate = static_cast<std::uint32_t>(sampleRate);
    std::string bytes = "WAVEfmt ";
    appendlittle(bytes, 16, 4);
    appendlittle(bytes, floatformat, 2);
    appendlittle(bytes, static_cast<std::uint32_t>(channels), 2);
    appendlittle(bytes, rate, 4);
    appendlittle(bytes, rate * framebytes, 4);
    appendlittle(bytes, framebytes, 2);
    appendlittle(bytes, 8 * sizeof(float), 2);
    return bytes;
}

std::int32_t wavdatabytes(int channels, std::int64_t frames) {
    return checkedsize(channels, frames, 0);
}

std::int32_t wavfilelength(int channels, std::int64_t frames) {
    return checkedsize(channels, frames, headerrest);
}

std::string wavheader(int channels, std::int32_t sampleRate, std::int64_t frames) {
    std::string bytes = "RIFF";
    appendlittle(bytes, static_cast<std::uint32_t>(wavfilelength(channels, frames)), 4);
    bytes += waveformat(channels, sampleRate);
    bytes += "data";
    appendlittle(bytes, static_cast<std::uint32_t>(wavdatabytes(channels, frames)), 4);
    return bytes;
}

wavwriter::wavwriter(const std::string& name) : path(name), file(name) {}

void wavwriter::write(std::string_view bytes) {
    file.write(bytes);
    written += bytes.size();
}

void wavwriter::write(std::span<const float> samples) {
    write({reinterpret_cast<const char*>(samples.data()), samples.size_bytes()});
}

void wavwriter::finish() {
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error) && filesize(path) > written) {
        partreader older(path);
        std::string part;
        for (std::uint64_t at = written;; at += part.size()) {
            older.read(at, copiedbytes, part);
            if (part.empty()) break;
            file.write(part);
        }
    }
    file.finish();
}

} // namespace orv
