// Energies and directions of exported responses.
#include "base/files.h"
#include "base/numbertext.h"
#include "export/exportformats.h"
#include "export/filterbank.h"
#include "export/synthesis.h"
#include "export/wavexport.h"
#include "platform/platform.h"
#include "room/geometryreader.h"
#include "verification/filters.h"
#include "verification/harmonics.h"
#include "verification/subjects.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

namespace orv::verification {

namespace {

constexpr real fullscale = 50000;         // the amplitude of a sample of 1
constexpr std::size_t wavheadersize = 44; // bytes
constexpr double pathtime = 0.1505;       // s, within slot 150
constexpr int pathslot = 150;
constexpr int directionband = 6;
constexpr std::string_view omni = "1ch_Omni", ambisonics = "36ch_5th_order_Ambisonics_(Ambix)";
constexpr std::size_t ambisonicschannels = 36;

constexpr std::string_view bandnames[octaves] = {"31.5 Hz", "63 Hz",   "125 Hz",  "250 Hz",  "500 Hz",
                                                 "1000 Hz", "2000 Hz", "4000 Hz", "8000 Hz", "16000 Hz"};

constexpr std::string_view room =
    "EntityList\r\n Wall\r\n  Face 0 1 4  0 0 0  20 0 0  20 10 0  0 10 0\r\n End\r\n"
    " Source 1 1 1  2 2 1  0 Omni.spk\r\nEnd\r\n";

real decibels(real energy) {
    return 10 * std::log10(energy);
}

// A response that has energy in one band 1..10 only, in so many slots from `arrival` on.
receiverblock oneband(int band, int arrival, int slots, real energy) {
    receiverblock block;
    block.place = {5, 4, 1.5};
    block.arrival = arrival;
    series& heard = block.bands[static_cast<std::size_t>(band - 1)];
    heard.slots = slots;
    heard.terms.push_back({energy, 1});
    return block;
}

// Exports a receiver as the dialog does it, and reads the file's samples, frame after frame.
std::vector<float> exported(const session& in, std::string_view format, int receiver, std::int32_t rate,
                            std::string_view density) {
    platform::setchosen("f48", rate == 48000);
    openexport();
    platform::settext("RecNo", wholetext(receiver));
    platform::settext("Outformat", std::string(format));
    platform::settext("Density", std::string(density));
    startexport();
    const std::string number = "00" + trimmedwhole(receiver);
    const filebytes bytes = readfile(
        in.inside("export_01_" + std::string(format) + "_" + number.substr(number.size() - 3) + ".wav"));
    std::vector<float> samples((bytes.size - wavheadersize) / sizeof(float));
    std::memcpy(samples.data(), bytes.data.get() + wavheadersize, samples.size() * sizeof(float));
    return samples;
}

real squares(const std::vector<float>& samples) {
    real sum = 0;
    for (const float sample : samples) sum += real(sample) * real(sample);
    return sum;
}

// --- One sound ---

// Where the sounds of the directions arrive from, seen from a receiver: azimuth and elevation in degrees.
struct arrival {
    real azimuth, elevation;
};
constexpr arrival arrivals[] = {{0, 0}, {30, 10}, {90, 0}, {135, -35}, {250, 60}, {300, -80}};

real soundenergy(int band) {
    return 1e9L * (10 + band);
}

std::string pathline(int receiver, int band, const std::string& points) {
    std::string line = trimmedwhole(receiver) + ",1," + trimmednumber(pathtime);
    for (int b = 1; b <= octaves; ++b)
        line += "," + trimmednumber(b == band ? static_cast<double>(soundenergy(band)) : 0);
    return line + points + "\r\n";
}

// A reflection point 3 m off the receiver.
std::string reflection(const receiverblock& at, const arrival& from) {
    constexpr real degree = std::numbers::pi_v<real> / 180, off = 3;
    const real flat = std::cos(from.elevation * degree);
    const real steps[] = {off * flat * std::cos(from.azimuth * degree),
                          off * flat * std::sin(from.azimuth * degree),
                          off * std::sin(from.elevation * degree)};
    std::string text = ",1,1";
    for (std::size_t i = 0; i < 3; ++i)
        text += "," + trimmednumber(static_cast<double>(at.place[i] + steps[i]));
    return text;
}

// Receivers 1..10 with direct sound in one band each, and one receiver for each direction.
void loadsounds(const session& in) {
    resultfile file;
    file.length = 0.4;
    std::string paths;
    const auto add = [&](int band, const arrival* from) {
        file.receivers.push_back(oneband(band, pathslot, 1, soundenergy(band)));
        paths += pathline(static_cast<int>(file.receivers.size()), band,
                          from == nullptr ? ",0" : reflection(file.receivers.back(), *from));
    };
    for (int band = 1; band <= octaves; ++band) add(band, nullptr);
    for (const arrival& from : arrivals) add(directionband, &from);
    in.write("export.@01", paths);
    loadresultfile(in, "export._01", file);
}

table soundenergies(const session& in) {
    table found{"One sound in one band",
                "A stored path with the energy E; the file must hold E times the sum of the squared taps of "
                "the band's filter, over 50000 squared. As levels in dB re full scale.",
                {"44.1 kHz", "48 kHz"}};
    for (std::size_t i = 0; i < std::size(samplerates); ++i) {
        readfilters(in, samplerates[i]);
        for (int band = 1; band <= octaves; ++band) {
            const real expected = soundenergy(band) * squaredtaps(band) / (fullscale * fullscale);
            const real computed = squares(exported(in, omni, band, samplerates[i], "0"));
            compare(found, bandnames[band - 1], 1e-5, static_cast<double>(decibels(expected)),
                    static_cast<double>(decibels(computed)), i);
        }
    }
    return found;
}

table sounddirections(const session& in) {
    table found{"One sound from a direction",
                "Exported to 36 channels of Ambisonics; each channel over the first one must be the "
                "spherical harmonic of the direction from the receiver to the last point of reflection, "
                "azimuth and elevation in degrees.",
                {}};
    for (const arrival& from : arrivals)
        found.cases.push_back(trimmednumber(static_cast<double>(from.azimuth)) + ", " +
                              trimmednumber(static_cast<double>(from.elevation)));
    for (std::size_t i = 0; i < std::size(arrivals); ++i) {
        const std::vector<float> samples =
            exported(in, ambisonics, octaves + 1 + static_cast<int>(i), 48000, "0");
        constexpr real degree = std::numbers::pi_v<real> / 180;
        for (std::size_t c = 0; c < ambisonicschannels; ++c) {
            real product = 0, square = 0;
            for (std::size_t j = 0; j < samples.size(); j += ambisonicschannels) {
                product += real(samples[j]) * real(samples[j + c]);
                square += real(samples[j]) * real(samples[j]);
            }
            const int acn = static_cast<int>(c);
            compare(found, "Order " + std::to_string(orderof(acn)), 2e-6,
                    harmonicof(acn, static_cast<double>(arrivals[i].azimuth * degree),
                               static_cast<double>(std::sin(arrivals[i].elevation * degree))),
                    static_cast<double>(product / square), i);
        }
    }
    return found;
}

// --- The diffuse field ---

constexpr int tailslots = 1000, firsttailband = 4, lastdensetailband = 6;
constexpr double taillength = 1.5; // s, with the silence around it
constexpr real tailenergy = 1e8L;

void loadtail(const session& in) {
    resultfile file;
    file.length = taillength;
    for (int band = 1; band <= octaves; ++band)
        file.receivers.push_back(oneband(band, 100, tailslots, tailenergy));
    std::filesystem::remove(in.inside("export.@01"));
    loadresultfile(in, "export._01", file);
}

// What is left in the mean of a filter's energy when pulses of one sign stand at random in every slot, one
// sample being as likely as another. Their mean is a steady pull that the filter does not pass; it takes the
// autocorrelation of the taps, weighted by a triangle of a slot's samples to both sides.
real pulseshare(int band, int samples) {
    real pull = 0;
    for (int lag = 1 - samples; lag < samples; ++lag) {
        real correlation = 0;
        for (int j = std::max(0, -lag); j < std::min(filtertaps, filtertaps - lag); ++j)
            correlation += real(FilterBank(band, j)) * real(FilterBank(band, j + lag));
        pull += correlation * (samples - std::abs(lag)) / samples / samples;
    }
    return 1 - pull / squaredtaps(band);
}

table diffusefield(const session& in) {
    table found{
        "The diffuse field",
        "1 s with the same energy in every slot of 1 ms and no stored path: one pulse or four in each slot, "
        "at random times. Pulses have one sign, so that what is slower than a slot partly cancels: expected "
        "is the energy less that share. 1 dB is three standard deviations of the chance at 250 Hz. The last "
        "line has the energy of the response itself as the expected one: low octaves of the diffuse field "
        "are exported weaker than the calculation has them, whatever the density.",
        {}};
    for (int band = firsttailband; band <= octaves; ++band) found.cases.emplace_back(bandnames[band - 1]);
    constexpr std::int32_t rate = 48000;
    constexpr int slotsamples = rate / 1000;
    readfilters(in, rate);
    restartuniform();
    for (int band = firsttailband; band <= octaves; ++band) {
        const auto atcase = static_cast<std::size_t>(band - firsttailband);
        const real whole = tailslots * tailenergy * squaredtaps(band) / (fullscale * fullscale);
        const auto expected = static_cast<double>(decibels(whole * pulseshare(band, slotsamples)));
        const auto level = [&in, band](std::string_view density) {
            return static_cast<double>(decibels(squares(exported(in, omni, band, rate, density))));
        };
        const double single = level("1");
        compare(found, "One pulse, dB", 1, expected, single, atcase);
        if (band <= lastdensetailband) compare(found, "Four pulses, dB", 1, expected, level("4"), atcase);
        departs(found, "One pulse, against the response", static_cast<double>(decibels(whole)), single,
                atcase);
    }
    return found;
}

} // namespace

subject verifyexport() {
    subject found{"export", "Exported responses",
                  "Result and ray path files with known sounds are loaded and exported to WAV files, whose "
                  "samples are looked at."};
    const session here;
    here.write("export.RAY", room);
    loadgeometry(here.inside("export.RAY"));
    writefilters(here);
    loadsounds(here);
    found.tables.push_back(soundenergies(here));
    found.tables.push_back(sounddirections(here));
    loadtail(here);
    found.tables.push_back(diffusefield(here));
    return found;
}

} // namespace orv::verification
