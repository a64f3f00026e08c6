// Results that others worked out, when the folder with them is there.
#include "results/parameterfile.h"
#include "results/resultreader.h"
#include "results/speechindex.h"
#include "tests/jsonvalue.h"
#include "tests/results/resulttext.h"

namespace orv {

namespace {

using examples = resultsession;

// Copies a shared file into the session's directory; skips the test where the folder is absent.
bool copied(const std::string& file) {
    const std::string path = joinpath(SHARED_FILES, file);
    if (!canopen(path)) return false;
    std::filesystem::copy_file(path, filenameof(file), std::filesystem::copy_options::overwrite_existing);
    return true;
}

jsonvalue figures(const std::string& file) {
    return readjson(readtext(joinpath(SHARED_FILES, file)));
}

} // namespace

// Header, room's response, and the parameter file with the speech index.
TEST_F(examples, impulsesGiveTheWorkedFigures) {
    if (!copied("examples/impulse/in/orvanta.ini") || !copied("examples/impulse/in/room._ab"))
        GTEST_SKIP() << "no worked example here";
    loadresult("room._ab");
    const jsonvalue expected = figures("examples/impulse/expected/dump.json");
    EXPECT_EQ(ResultSet.soundSpeed, expected["header"]["soundSpeed"].number);
    EXPECT_EQ(ResultSet.criticalTime, expected["header"]["criticalTime"].number);
    const jsonvalue& room = expected["energy"]["receiver 0 band 12"];
    for (std::size_t t = 0; t < room.items.size(); ++t)
        EXPECT_FLOAT_EQ(ImpulseResponse(static_cast<std::int32_t>(t), linearband, 0),
                        static_cast<float>(room[t].number));
    scripted::expectwindow("STI Options");
    computesti();
    SessionState.geometryFileName = "room.RAY";
    saveparameters("room._ab");
    EXPECT_EQ(readtext("room.-ab"), readtext(joinpath(SHARED_FILES, "examples/impulse/expected/room.-ab")));
}

// Measured halls: the standard's parameters, worked out from the same slot energies by another program.
TEST_F(examples, measuredHallsAgreeWithTheStandardsDefinitions) {
    int compared = 0;
    for (const std::string name : {"aarae_hall._01", "zielonka_z1._12", "living_room._01"}) {
        if (!copied("real/results/" + name)) GTEST_SKIP() << "no measured results here";
        const std::size_t dot = name.find('.');
        const jsonvalue expected =
            figures("real/results/" + name.substr(0, dot) + "_" + name.substr(dot + 2) + ".json");
        loadresult(inside(name));
        for (const jsonvalue& receiver : expected["receivers"].items) {
            const auto r = static_cast<std::int32_t>(receiver["receiver"].number);
            for (int b = 2; b <= 8; ++b) { // 63 Hz to 4 kHz
                const std::string band(bandName[static_cast<std::size_t>(b)]);
                const jsonvalue& iso = receiver["iso_slots"][band];
                const auto near = [&](double actual, const char* key, double absolute, double relative) {
                    const jsonvalue& figure = iso[key];
                    EXPECT_NEAR(actual, figure.number, absolute + relative * std::fabs(figure.number))
                        << name << " receiver " << r << " band " << b << " " << key;
                    ++compared;
                };
                const auto& P = ParameterSet;
                // C50 and C80 are cut down to 0.01 dB, Ts is rounded to 0.1 ms.
                near(static_cast<double>(P.C50(r, b)), "C50", 0.0101, 0);
                near(static_cast<double>(P.C80(r, b)), "C80", 0.0101, 0);
                near(static_cast<double>(P.Ts(r, b)), "Ts", 0.0501, 0);
                if (iso["T20"].number > 0.4) near(static_cast<double>(P.T20(r, b)), "T20", 0, 0.01);
                if (iso["T30"].number > 0.4 && P.T30(r, b) > 0)
                    near(static_cast<double>(P.T30(r, b)), "T30", 0, 0.005);
            }
        }
    }
    EXPECT_GT(compared, 100);
}

} // namespace orv
