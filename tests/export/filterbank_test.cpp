// The filters that ship with the program, and the reader of their file.
#include "export/filterbank.h"

#include "tests/export/exporttest.h"

namespace orv {
namespace {

// The verification holds their amplitudes.
TEST(filterdesign, FiltersAreZeroOutsideTheirTaps) {
    for (const int rate : {44100, 48000}) {
        const filterdesign filters = designfilters(rate);
        for (std::size_t b = 0; b < octavebands; ++b)
            for (int j = 0; j < filtertaps; ++j)
                ASSERT_TRUE((j >= bandStart[b] && j <= bandEnd[b]) ||
                            filters[b][static_cast<std::size_t>(j)] == 0);
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
