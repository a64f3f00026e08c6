// Results that others worked out, when the folder with them is there.
#include "tests/jsonvalue.h"
#include "tests/results/resulttext.h"

namespace orv {

namespace {

using examples = resultsession;

// Compares a table with rows of twelve values, receiver by receiver; both are single precision.
template <class table>
void expectrows(const table& actual, const jsonvalue& rows, const char* name) {
    for (std::size_t r = 0; r < rows.items.size(); ++r)
        for (std::size_t b = 0; b < bandcount; ++b)
            EXPECT_FLOAT_EQ(actual(r, b + 1), static_cast<float>(rows[r][b].number))
                << name << " receiver " << r << " band " << b + 1;
}

} // namespace

TEST_F(examples, impulsesInOneSlotGiveTheWorkedParameters) {
    const std::string folder = std::string(SHARED_FILES) + "/examples/impulse/";
    if (!canopen(folder + "expected/dump.json")) GTEST_SKIP() << "no worked example here";
    std::filesystem::remove("orvanta.ini");
    for (const char* name : {"orvanta.ini", "room._ab"}) std::filesystem::copy(folder + "in/" + name, name);
    loadresult(inside("room._ab"));
    const jsonvalue expected = readjson(readtext(folder + "expected/dump.json"));
    const jsonvalue& header = expected["header"];
    EXPECT_EQ(ResultSet.soundSpeed, header["soundSpeed"].number);
    EXPECT_EQ(ResultSet.criticalTime, header["criticalTime"].number);
    const jsonvalue& tables = expected["tables"];
    eachcomputed([&](const char* name, const auto& table) { expectrows(table, tables[name], name); });
    const auto& P = ParameterSet;
    expectrows(P.LdirLrev, tables["LdirLrev"], "LdirLrev");
    expectrows(P.LeqLw, tables["LeqLw"], "LeqLw");
    expectrows(P.LE, tables["LE"], "LE");
    expectrows(P.LF, tables["LF"], "LF");
    expectrows(P.LFC, tables["LFC"], "LFC");
    const jsonvalue& transfer = expected["MTF"];
    for (std::size_t r = 0; r < transfer.items.size(); ++r)
        for (std::size_t i = 0; i < modulationcount; ++i)
            for (std::size_t k = 0; k < 7; ++k)
                EXPECT_FLOAT_EQ(P.modulationTransfer(r, i + 1, k),
                                static_cast<float>(transfer[r][i][k].number))
                    << "receiver " << r << " frequency " << i + 1 << " band " << k;
    const jsonvalue& room = expected["energy"]["receiver 0 band 12"];
    for (std::size_t t = 0; t < room.items.size(); ++t)
        EXPECT_FLOAT_EQ(ImpulseResponse(static_cast<std::int32_t>(t), linearband, 0),
                        static_cast<float>(room[t].number));
}

} // namespace orv
