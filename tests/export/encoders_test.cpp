// The table of formats and the encoders behind it.
#include "export/encoders.h"

#include "export/exportformats.h"
#include "tests/export/exporttest.h"

#include <cmath>
#include <string>

namespace orv {
namespace {

TEST(encoders, FormatsHaveWhatTheirLabelsSay) {
    for (std::size_t row = 0; row < exportformats.size(); ++row) {
        const exportformat& format = exportformats[row];
        const std::string label(format.label), first = std::to_string(format.channels) + "ch_";
        const std::string both =
            std::to_string(format.blocks) + "x" + std::to_string(format.channels) + "_MIMO_";
        EXPECT_TRUE(label.starts_with(row < 11 ? first : both)) << label;
        EXPECT_EQ(exportformatof(label), static_cast<int>(row));
    }
}

// The verification holds the receivers' gains against the definition.
TEST(encoders, SourcesHaveTheHarmonicsOfReceivers) {
    const direction d{0.6, -0.48, 0.64};
    for (int acn = 0; acn < 36; ++acn) EXPECT_EQ(sourcegain(d, 11, acn + 1), receivergain(d, 6, acn + 1));
    EXPECT_EQ(receivergain({0, 0, 2}, 2, 3), 2) << "no unit vector is assumed";
}

TEST(encoders, MicrophonesPointAlongTheirTables) {
    const direction x{1, 0, 0}, y{0, 1, 0}, down{0, 0, -1};
    EXPECT_NEAR(receivergain(x, 1, 2), 0.8535, 1e-12);
    EXPECT_NEAR(receivergain(y, 1, 1), 0.8535, 1e-12);
    EXPECT_NEAR(receivergain(y, 1, 2), 0.1465, 1e-12);
    EXPECT_EQ(receivergain(x, 9, 1), 1);
    EXPECT_EQ(receivergain(x, 9, 9), 0);
    EXPECT_DOUBLE_EQ(receivergain(y, 7, 2), std::pow(0.8535, 4));
    EXPECT_DOUBLE_EQ(receivergain(down, 8, 16), std::pow(0.8535, 3)) << "the upper and lower rings";
    EXPECT_DOUBLE_EQ(receivergain(down, 10, 15), std::pow(0.7575, 4)) << "out of line with 14 and 31";
    EXPECT_DOUBLE_EQ(receivergain(y, 16, 27), std::pow(0.967, 4)) << "one digit off from 7";
    EXPECT_DOUBLE_EQ(sourcegain(y, 17, 31), std::pow(0.076, 4));
    EXPECT_DOUBLE_EQ(sourcegain(down, 14, 10), std::pow(0.8972073105, 3));
    EXPECT_DOUBLE_EQ(sourcegain({-1.5, 0, 0}, 16, 6), std::pow(0.5 - 0.75 * 0.982287251, 3))
        << "a base below 0 keeps its sign";
    EXPECT_EQ(encodegain(1, 0, 0, 0, 1, 0, 11, 4, 2), 1);
    EXPECT_EQ(encodegain(1, 0, 0, 0, 1, 0, 11, 2, 2), 0);
    EXPECT_EQ(receivergain(x, 10, 33), 1);
}

TEST_F(exporttest, PathsLeaveAndArriveByTheirEndPoints) {
    addpath(0.01, {});
    addpath(0.02, {{1, 5, 1}, {9, 9, 9}, {4, 2, -3}});
    const auto [away, back] = directionsof(1, 1);
    EXPECT_DOUBLE_EQ(away.x, 3 / std::sqrt(13.0));
    EXPECT_DOUBLE_EQ(away.y, 2 / std::sqrt(13.0));
    EXPECT_EQ(back.x, -away.x);
    const auto [source, receiver] = directionsof(1, 2);
    EXPECT_EQ(source.y, 1);
    EXPECT_EQ(receiver.z, -1);
    EXPECT_EQ(raygain(2, 3, 1, 2, 11), -1) << "ACN 1 of +y times ACN 2 of -z";

    addpath(0.03, {{1, 0, 1}}); // where the source is
    EXPECT_EQ(raygain(1, 1, 1, 3, 0), 1) << "row 0 does not look at the path";
    EXPECT_EQ(kindof([] { raygain(1, 1, 1, 3, 1); }), errorkind::divisionbyzero);
}

} // namespace
} // namespace orv
