// The ray path store: what comes out of its file, record by record, and when it is loaded at all.
#include "response/raypathreader.h"

#include "response/raypathset.h"
#include "tests/failures.h"
#include "tests/results/resulttext.h"

namespace orv {
namespace {

constexpr const char* energies = ",1,2,3,4,5,6,7,8,9,10,";

struct pathfiles : resultsession {
    pathfiles() {
        RoomModel.receiverCount = 3;
        ResultSet.receiverDelay = {0.01, 7, 7, 7}; // entry 0 counts for all
        ResultSet.criticalTime = 0.05F;
        ResultSet.alfaConstant = 0.8F;
        ResultSet.betaConstant = 1;
    }

    std::string path(const std::string& bytes) const {
        writetext(inside("room.@ab"), bytes);
        return inside("room.@ab");
    }
    void loadpaths(const std::string& bytes) const { loadchiocc(path(bytes)); }
};

TEST_F(pathfiles, recordsFillTheStore) {
    const std::string record = std::string("2,5,.01") + energies + "2,3,.5,-1,2,4,1,6,7\r\n";
    loadpaths("1, 2 .03" + std::string(energies) + "0\r\n" + record + "3,4,.5" + energies + "0\r\n\r\n\x1A");
    EXPECT_EQ(RayPathSet.pathCountOf, (std::vector<std::int32_t>{3, 1, 1, 1}));
    EXPECT_TRUE(SessionState.pathsExist);
    const raypath& two = *findpath(2, 1);
    EXPECT_EQ(two.source, 5);
    EXPECT_EQ(two.time, .01);
    EXPECT_EQ(two.energy[10], 10.0F) << "at the reference time nothing is corrected";
    EXPECT_EQ(two.energy[linearband], 55.0F);
    EXPECT_EQ(two.pointCount, 2);
    const std::vector<float> corners = {two.x[1], two.y[1], two.z[1], two.x[2], two.y[2], two.z[2]};
    EXPECT_EQ(corners, (std::vector<float>{.5F, -1, 2, 1, 6, 7}));
    EXPECT_EQ(two.face[1], 3);
    EXPECT_EQ(two.face[2], 4);

    const double w = 1 - std::exp(-std::pow(0.05F / (.03 - .01), 0.8F));
    const raypath& one = *findpath(1, 1);
    double weighted = 0;
    for (std::size_t b = 1; b <= 10; ++b) {
        EXPECT_FLOAT_EQ(one.energy[b], static_cast<float>(static_cast<double>(b) / w));
        weighted += static_cast<double>(b) / w * static_cast<double>(SessionState.aWeight[b]);
    }
    EXPECT_FLOAT_EQ(one.energy[weightedband], static_cast<float>(weighted));
    EXPECT_EQ(scripted::calls().front(), "status 1|Loading ray paths from " + inside("room.@ab") + " ...");
    EXPECT_EQ(scripted::countcalls("status 2| "), 3U);
    EXPECT_EQ(scripted::countcalls("yield"), 3U);
    EXPECT_EQ(scripted::statustext(1) + scripted::statustext(2), "");

    ResultSet.betaConstant = ResultSet.alfaConstant = 0; // no beta, no correction, whatever alfa is
    loadpaths("1,2,.5" + std::string(energies) + "0");
    EXPECT_EQ(findpath(1, 1)->energy[10], 10.0F);
}

TEST_F(pathfiles, pointsBeyondTheTenthAreDropped) {
    const std::string point = ",7,1,2,3";
    std::string points;
    for (int i = 0; i < 10; ++i) points += point;
    const std::string start = std::string("1,1,.01") + energies;
    loadpaths(start + "10" + points + " 1 2 .02" + energies + "0\r\n" + // ten leave the line alone
              start + "11" + points + point + "\r\n" +                  // eleven drop its rest,
              start + "1000" + points +
              "\r\n 3 words that stand in the rest\r\n" + // which may be the next one
              start + "-1\r\n" + start + "0");
    EXPECT_EQ(pathsof(1), 6);
    int counts = 0;
    for (int k = 1; k <= 6; ++k) counts += findpath(1, k)->pointCount;
    EXPECT_EQ(counts, 29);
    EXPECT_EQ(findpath(1, 7), nullptr);
    EXPECT_EQ(findpath(0, 1), nullptr);
    EXPECT_EQ(findpath(4, 1), nullptr);
}

TEST_F(pathfiles, receiversDecideWhereARecordGoes) {
    const auto record = [](const char* receiver, const char* time) {
        return std::string(receiver) + ",1," + time + energies + "0\r\n";
    };
    std::string text;
    for (int i = 250; i > 0; --i) text += record("1", (i % 2 ? ".5" : ".2"));
    loadpaths(text + record("0", ".1") + record("2", ".1") + record("4", "no more is read") + "words");
    EXPECT_EQ(RayPathSet.pathCountOf, (std::vector<std::int32_t>{251, 250, 1, 0}));
    EXPECT_EQ(findpath(1, 125)->time, .2);
    EXPECT_EQ(findpath(1, 126)->time, .5);
    loadpaths("");
    EXPECT_EQ(RayPathSet.pathCountOf[0], 0);
}

TEST_F(pathfiles, whatCannotBeReadNamesItsRecord) {
    const std::string good = std::string("1,1,.02") + energies + "1,3,1,2,3\r\n";
    const struct {
        std::string text;
        errorkind kind;
        const char* tells;
    } cases[] = {{good + "-1,1,.02", errorkind::subscript, "room.@ab, record 2: Subscript out of range"},
                 {good + "1,1,.02,1,2,three", errorkind::typemismatch,
                  "room.@ab, record 2: line 2: expected a number, found \"three\""},
                 {good + good.substr(0, 20), errorkind::pastend, "record 2"},
                 {"1,1,1E9" + std::string(energies) + "0", errorkind::divisionbyzero, "record 1"},
                 {"1,1,.02" + std::string(energies) + "3000000000", errorkind::overflow, "record 1"}};
    for (const auto& one : cases) {
        // So steep a correction that late energies have none of it left.
        ResultSet.alfaConstant = one.kind == errorkind::divisionbyzero ? 2.0F : 0.8F;
        const runtimeerror error = failureof([&] { loadpaths(one.text); });
        EXPECT_EQ(error.kind, one.kind) << one.tells;
        EXPECT_NE(error.text.find(one.tells), std::string::npos) << error.text;
    }
    for (std::size_t size = 0; size < good.size(); ++size) // a file that is cut within a record tells it
        attempt([&] { loadpaths(good + good.substr(0, size)); });
    EXPECT_EQ(kindof([&] { loadchiocc(inside("gone.@ab")); }), errorkind::filenotfound);
}

// Ten days is the age that a path file may have before its result; a second more is too old.
TEST_F(pathfiles, aResultBringsItsPathsWhenTheyAreOfItsTime) {
    constexpr double tendays = 10 * 24 * 3600;
    file.block("[Microphone_1]", flatrows(11, 1000));
    writetext(inside("room._ab"), file.text());
    const std::string paths = path(std::string("1,1,0") + energies + "0\r\n");
    for (const auto& [age, loaded] : {std::pair(tendays, true), std::pair(tendays + 1, false)}) {
        setdateafter(paths, inside("room._ab"), -age);
        loadresult(inside("room._ab"));
        EXPECT_EQ(isenabled("viewraypaths"), loaded);
        EXPECT_EQ(SessionState.pathsExist, loaded);
        EXPECT_EQ(pathsof(1), loaded ? 1 : 0);
    }
    std::filesystem::remove(paths);
    loadresult(inside("room._ab"));
    EXPECT_FALSE(isenabled("viewraypaths"));
}

} // namespace
} // namespace orv
