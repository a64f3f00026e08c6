// The filter bank.
#include "verification/filters.h"

#include "data/filterbankdesign.h"
#include "export/filterbank.h"
#include "verification/subjects.h"

#include <cmath>
#include <complex>
#include <cstddef>
#include <functional>
#include <numbers>

namespace orv::verification {

namespace {

constexpr double centres[octaves] = {31.5, 63, 125, 250, 500, 1000, 2000, 4000, 8000, 16000};
constexpr double sumfrom = 25, sumto = 18000, sumstep = 1.03; // Hz, and the ratio of one to the next

// The amplitude of taps at a frequency, dB: the plain sum of the Fourier transform.
double decibels(const std::function<double(int)>& tap, double frequency, std::int32_t rate) {
    std::complex<double> sum = 0;
    for (int j = 0; j < filtertaps; ++j)
        sum += tap(j) * std::polar(1.0, -2 * std::numbers::pi * frequency / rate * (j - filtermiddle));
    return 20 * std::log10(std::abs(sum) + 1e-15);
}

std::function<double(int)> bandtaps(int band) {
    return [band](int j) { return static_cast<double>(FilterBank(band, j)); };
}

double alltogether(int tap) {
    double sum = 0;
    for (int band = 1; band <= octaves; ++band) sum += static_cast<double>(FilterBank(band, tap));
    return sum;
}

void comparesum(table& into, std::int32_t rate, std::size_t atcase) {
    for (double frequency = sumfrom; frequency <= sumto; frequency *= sumstep)
        compare(into, "All ten together, 25 Hz to 18 kHz, dB", 0.03, 0,
                decibels(alltogether, frequency, rate), atcase);
}

void comparebands(table& into, std::int32_t rate, std::size_t atcase) {
    const auto at = [rate](int band, double frequency) { return decibels(bandtaps(band), frequency, rate); };
    for (int band = 1; band <= octaves; ++band)
        compare(into, "Each at its centre, dB", 0.02, 0, at(band, centres[band - 1]), atcase);
    atmost(into, "31.5 Hz band two octaves below, dB", -44, at(1, centres[0] / 4), atcase);
    for (int band = 2; band <= octaves; ++band)
        atmost(into, "Others two octaves below, dB", -52, at(band, centres[band - 1] / 4), atcase);
    for (int band = 1; 4 * centres[band - 1] < rate / 2.0; ++band)
        atmost(into, "Two octaves above, dB", -60, at(band, 4 * centres[band - 1]), atcase);
    for (int band = 1; band <= octaves; ++band) atmost(into, "At 0 Hz, dB", -140, at(band, 0), atcase);
}

} // namespace

void writefilters(const session& in) {
    writefilterbanks(in.inside(""));
}

void readfilters(const session& in, std::int32_t sampleRate) {
    readfilterbank(in.inside(filterbankname(sampleRate)));
}

real squaredtaps(int band) {
    real sum = 0;
    for (int j = 0; j < filtertaps; ++j) {
        const real tap = static_cast<real>(FilterBank(band, j));
        sum += tap * tap;
    }
    return sum;
}

subject verifyfilters() {
    subject found{"filters", "Filter bank",
                  "The octave filters of the export, read from their files, by the plain sum of the Fourier "
                  "transform; band edges are those of IEC 61260-1. Below or above a limit the largest value "
                  "of all bands is shown."};
    table response{"Frequency response", "", {"44.1 kHz", "48 kHz"}};
    const session here;
    writefilters(here);
    for (std::size_t i = 0; i < std::size(samplerates); ++i) {
        readfilters(here, samplerates[i]);
        comparesum(response, samplerates[i], i);
        comparebands(response, samplerates[i], i);
    }
    found.tables.push_back(response);
    return found;
}

} // namespace orv::verification
