// The filters that ship with the program, and the reader of their file.
#include "export/filterbank.h"

#include "tests/export/exporttest.h"

#include <cmath>
#include <complex>
#include <numbers>

namespace orv {
namespace {

constexpr double nominal[] = {31.5, 63, 125, 250, 500, 1000, 2000, 4000, 8000, 16000};

// The amplitude of a filter at a frequency in Hz, relative to its middle tap's delay.
std::complex<double> amplitude(const std::vector<float>& filter, double frequency, int sampleRate) {
    std::complex<double> sum = 0;
    for (int j = 0; j < filtertaps; ++j)
        sum += static_cast<double>(filter[static_cast<std::size_t>(j)]) *
               std::polar(1.0, -2 * std::numbers::pi * frequency / sampleRate * (j - filtermiddle));
    return sum;
}

double decibels(std::complex<double> value) {
    return 20 * std::log10(std::abs(value) + 1e-15);
}

TEST(filterdesign, MakesOctaveFiltersThatAddUpToAnImpulse) {
    for (const int rate : {44100, 48000}) {
        const filterdesign filters = designfilters(rate);
        for (std::size_t b = 0; b < octavebands; ++b) {
            const std::vector<float>& filter = filters[b];
            for (int j = 0; j < filtertaps; ++j)
                ASSERT_TRUE((j >= bandStart[b] && j <= bandEnd[b]) ||
                            filter[static_cast<std::size_t>(j)] == 0);
            EXPECT_NEAR(decibels(amplitude(filter, nominal[b], rate)), 0, 0.02) << nominal[b];
            EXPECT_LT(decibels(amplitude(filter, nominal[b] / 4, rate)), -44) << nominal[b];
            for (double above = nominal[b] * 4; above < rate / 2; above *= 4)
                EXPECT_LT(decibels(amplitude(filter, above, rate)), -60) << nominal[b];
            EXPECT_LT(decibels(amplitude(filter, 0, rate)), -140) << nominal[b];
        }
        for (double frequency = 25; frequency <= 18000; frequency *= 1.07) {
            std::complex<double> sum = 0;
            for (const std::vector<float>& filter : filters) sum += amplitude(filter, frequency, rate);
            EXPECT_NEAR(decibels(sum), 0, 0.03) << frequency;
        }
    }
}

TEST_F(exporttest, FilterBankIsReadFromItsPlace) {
    writefilterbanks(directory.path);
    const std::string path = inside("Filterbank-44-multi.wav"), bytes = readtext(path);
    EXPECT_EQ(bytes.size(), 327832U);
    EXPECT_EQ(bytes.substr(36, 4) + bytes.substr(44, 4) + bytes.substr(144, 4), "LISTINFOdata");
    readfilterbank(path);
    const filterdesign filters = designfilters(44100);
    EXPECT_EQ(FilterBank(1, 0), filters[0][0]);
    EXPECT_EQ(FilterBank(10, filtermiddle), filters[9][filtermiddle]);
    EXPECT_EQ(scripted::rowsof("List1").back(), "Reading filterbank from " + path + "...");

    // A short file with a good header replaces what it holds.
    writetext(path, bytes.substr(0, 152) + std::string(44, '\0') + "\1");
    readfilterbank(path);
    EXPECT_EQ(FilterBank(10, 0), 0);
    EXPECT_EQ(FilterBank(1, 1), 0);
    EXPECT_EQ(FilterBank(10, filtermiddle), filters[9][filtermiddle]);
}

TEST_F(exporttest, OtherFilesAreRefusedAndChangeNothing) {
    writefilterbanks(directory.path);
    const std::string path = inside("Filterbank-48-multi.wav"), good = readtext(path);
    readfilterbank(path);
    const filterbank before = FilterBank;
    for (const auto& [channels, bits, message] :
         {std::tuple{10, 16, "not 32 bits"}, {2, 16, "not a 10 ch."}, {266, 32, "not a 10 ch."}}) {
        std::string bytes = good;
        bytes[22] = static_cast<char>(channels & 255);
        bytes[23] = static_cast<char>(channels >> 8);
        bytes[34] = static_cast<char>(bits);
        writetext(path, bytes);
        scripted::expectbox(message, platform::answer::ok);
        readfilterbank(path);
    }
    const std::string missing = inside("none.wav");
    scripted::expectbox("Sorry, this is not a 10 ch. WAV file!", platform::answer::ok);
    readfilterbank(missing);
    EXPECT_EQ(readtext(missing), "") << "stays behind, empty";
    EXPECT_EQ(FilterBank.samples, before.samples);
}

} // namespace
} // namespace orv
