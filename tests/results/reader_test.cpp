// The result reader: its format, its order, and what a damaged file leaves.
#include "response/raypathset.h"
#include "tests/failures.h"
#include "tests/golden.h"
#include "tests/results/resulttext.h"

namespace orv {

namespace {

struct resultfiles : resultsession {
    void SetUp() override {
        resultsession::SetUp();
        for (int r = 0; r <= 10; ++r) RoomModel.receiverX(r) = RoomModel.receiverY(r) = 0;
    }

    // The lines of the log.
    static std::string log() {
        std::string text;
        for (const std::string& line : scripted::logtext()) text += line + "\r\n";
        return text;
    }
    static bool logged(const std::string& line) { return log().find(line + "\r\n") != std::string::npos; }
};

} // namespace

TEST_F(resultfiles, headerKeysFillTheSetAndTheLog) {
    extendbox(0, 0, 0);
    extendbox(10, 10, 1);
    computecentre();
    file.extra = "Comment that nobody reads\r\nName       = speaker.txt\r\n";
    file.block("[Microphone_1]", flatrows(11, 1000));
    std::string text = file.text();
    text.replace(text.find("First band  = 0"), 15, "First band  = 2");
    text.replace(text.find("= 1 2 3"), 7, "= 100 -5 30");
    writetext("room._ab", text);
    loadresult("room._ab");
    EXPECT_EQ(ResultSet.soundSpeed, 340.0F); // one more than stated
    EXPECT_EQ(ResultSet.firstBand, 3.0F);
    EXPECT_EQ(ResultSet.lastBand, 10.0F);
    EXPECT_EQ(ResultSet.timeStep, 0.001F);
    EXPECT_EQ(ResultSet.lastSlot, 10);
    EXPECT_EQ(ResultSet.criticalTime, 1E9F); // no correction without beta
    EXPECT_EQ(ResultSet.receiverDelay.at(1), 0.005);
    EXPECT_EQ(ResultSet.sourceName, "NONE"); // no such file
    EXPECT_EQ(ResultSet.sourcePower(weightedband), 114.0F);
    EXPECT_EQ(SessionState.parameterSource, 1.0F);
    EXPECT_EQ(SessionState.geometryFileName, "room.RAY");
    EXPECT_EQ(ResultSet.listingFileName, "room.OUT");
    EXPECT_THROW(static_cast<void>(geometrynameof("_ab")), runtimeerror);
    for (int band : {1, 4}) // each row begins behind its label
        for (const auto& value :
             {ParameterSet.LFC(1, band), ParameterSet.LE(1, band), ParameterSet.LF(1, band)})
            EXPECT_FLOAT_EQ(value, 0.1F * static_cast<float>(band));
    EXPECT_EQ(RoomModel.receiverZ(1), 30.0F);
    EXPECT_EQ(RoomModel.roomMaxX, 100.0F); // receivers widen the box in their plane only
    EXPECT_EQ(RoomModel.roomMinY, -5.0F);
    EXPECT_EQ(RoomModel.roomMaxZ, 1.0F);
    EXPECT_EQ(RoomModel.roomCentreX, 5.0F);
    expectgolden("resultlog.txt", log());
    EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
    EXPECT_EQ(scripted::countcalls("background"), 2U);
}

TEST_F(resultfiles, numbersOfBlocksDecideWhereTheyGo) {
    file.block("[Microphone_1]", flatrows(11, 1000));
    file.block("[Microphone_100001]", flatrows(11, 7)); // read past
    file.block("[Microphone_-3]", flatrows(11, 7));
    file.block("[Microphone_3000000000]", flatrows(11, 7)); // too large for a whole number
    file.block("[Microphone_ \t1]", flatrows(11, 500));     // replaces the first
    file.block("[Microphone]", flatrows(11, 90));           // no number: the room's own row
    load(file.text());
    EXPECT_EQ(RoomModel.receiverCount, 1);
    EXPECT_EQ(ImpulseResponse(4, 2, 1), 500.0F);
    EXPECT_EQ(ImpulseResponse(4, 2, 0), 590.0F); // the mean comes on top
    EXPECT_EQ(ImpulseResponse.taken, 2);
    for (const char* title : {"[Microphone_2]", "[Microphone_5]"}) // beyond the declared count
        file.block(title, flatrows(11, 1000));
    load(file.text());
    EXPECT_EQ(RoomModel.receiverCount, 5);
    EXPECT_EQ(ImpulseResponse(3, 1, 3), 0.0F);
    EXPECT_EQ(ImpulseResponse(3, 1, 5), 1000.0F);
    EXPECT_EQ(ImpulseResponse(3, 1, 0), 590.0F); // 90, and 2500 of five receivers
    EXPECT_FLOAT_EQ(ParameterSet.Ldir(0, 6), 17.4F);
    EXPECT_EQ(ResultSet.receiverDelay.size(), 6U);
    EXPECT_THROW(static_cast<void>(ImpulseResponse(3, 1, 6)), runtimeerror);
    EXPECT_EQ(RayPathSet.pathCountOf.size(), 6U);
}

TEST_F(resultfiles, oldFormatTakesItsLateralEnergyAsARatio) {
    file.format = "1.1";
    file.block("[Microphone_1]", flatrows(11, 2));
    load(file.text());
    EXPECT_EQ(ResultSet.receiverDelay.at(1), 0.005);
    EXPECT_FLOAT_EQ(ParameterSet.LE(1, 10), 1.0F / 22); // energy up to 80 ms
    EXPECT_FLOAT_EQ(ParameterSet.LE(1, linearband), 5.5F / 220);
    EXPECT_EQ(ParameterSet.LF(1, 10), 0.0F);
    EXPECT_EQ(ImpulseResponse(10, 10, 1), 2.0F);
    // A file that does not state its format is read like the one before.
    file.format = "1.2";
    file.body.clear();
    file.block("[Microphone_1]", flatrows(11, 2));
    load(file.text());
    std::string text = file.text();
    text.erase(text.find("Format "), 19);
    ParameterSet.LE(1, 10) = 0;
    load(text);
    EXPECT_FLOAT_EQ(ParameterSet.LE(1, 10), 1.0F);
}

TEST_F(resultfiles, lateEnergyIsCorrected) {
    settings("Alfa = 0.8\r\nBeta = 2\r\n");
    file.block("[Microphone_1]", flatrows(11, 1000));
    slotrows late = flatrows(11, 0);
    for (std::size_t t = 4; t < 11; ++t) late[t].fill(1000);
    file.block("[Microphone_2]", late);
    load(file.text());
    const double critical = 4.0 / 4 / 340 * std::sqrt(1000.0 / 2);
    EXPECT_FLOAT_EQ(ResultSet.criticalTime, static_cast<float>(critical));
    const auto corrected = [&](int slot) {
        const double time = 0.001 * slot;
        return static_cast<float>(1000 / (1 - std::exp(-std::pow(critical / time, 0.8))));
    };
    EXPECT_EQ(ImpulseResponse(0, 1, 1), 1000.0F);
    EXPECT_FLOAT_EQ(ImpulseResponse(7, 1, 1), corrected(7));
    EXPECT_FLOAT_EQ(ImpulseResponse(4, 1, 2), corrected(4)); // the arrival itself counts from slot 0
    EXPECT_FLOAT_EQ(ImpulseResponse(7, 1, 2), corrected(3)); // what follows counts from the arrival
    settings("Alfa = 0\r\nBeta = -1\r\n");
    load(file.text());
    EXPECT_EQ(ImpulseResponse(7, 1, 2), 1000.0F);
    EXPECT_EQ(ResultSet.criticalTime, 1E9F);
}

// A w of 0 in floating point fails the division, and the slot stays empty; a number too large for single
// precision cannot be stored either.
TEST_F(resultfiles, energiesThatCannotBeStoredAreSkipped) {
    settings("Alfa = 40\r\nBeta = 1e12\r\n");
    slotrows rows = flatrows(11, 1000);
    file.block("[Microphone_1]", rows);
    load(file.text());
    EXPECT_EQ(ImpulseResponse(0, 1, 1), 1000.0F);
    EXPECT_EQ(ImpulseResponse(9, 1, 1), 0.0F);
    settings("Beta = 0\r\n");
    std::string text = file.text();
    text.replace(text.rfind(" 1000"), 5, " 1E+39");
    load(text);
    EXPECT_EQ(ImpulseResponse(10, 10, 1), 0.0F);
    EXPECT_EQ(ImpulseResponse(10, linearband, 1), 9000.0F);
    // Without a linear sum of the direct sound every slot counts as the first.
    file.body.clear();
    file.block("[Microphone_1]", flatrows(11, 1e38));
    load(file.text());
    EXPECT_EQ(ImpulseResponse(0, linearband, 1), 0.0F);
    EXPECT_EQ(ParameterSet.Ts(1, 6), 0.0F);
}

TEST_F(resultfiles, damagedFilesGiveWhatCanBeRead) {
    file.block("[Microphone_1]", flatrows(11, 1000));
    std::string text = file.text();
    text.replace(text.rfind("\r\n  1000") + 2, std::string::npos, " 25 3");
    load(text);
    EXPECT_EQ(ImpulseResponse(10, 8, 1), 3.0F); // the last number is repeated
    EXPECT_TRUE(logged("File Loaded OK!"));
    text.replace(text.rfind(" 25"), 3, " no"); // words keep the number before too
    load(text);
    EXPECT_EQ(ImpulseResponse(10, 1, 1), 1000.0F);
    EXPECT_EQ(scripted::countcalls("yield"), scripted::countcalls("status 2| "));

    const runtimeerror error = failureof([&] { loadresult(inside("gone._ab")); });
    EXPECT_EQ(error.kind, errorkind::filenotfound);
    EXPECT_NE(error.text.find("gone._ab"), std::string::npos);
    EXPECT_EQ(ImpulseResponse(4, 1, 1), 1000.0F);

    scripted::clearcalls();
    load("Format    = 1.2\r\n", "tiny._ab"); // rounds to no block: nothing to divide by
    EXPECT_EQ(scripted::countcalls("status 2| "), 0U);
}

TEST_F(resultfiles, memoryIsAskedBeforeItIsTaken) {
    file.length = 10; // 10001 slots of 48 bytes
    file.block("[Microphone_1]", flatrows(5, 1000));
    scripted::setmemory(600000);
    load(file.text());
    EXPECT_EQ(ResultSet.lastSlot, 10000);
    EXPECT_EQ(ImpulseResponse.taken, 0);
    EXPECT_EQ(ImpulseResponse(3, 1, 1), 0.0F);
    EXPECT_TRUE(logged("File Loaded OK!"));
}

TEST_F(resultfiles, aReverberationLongerThanTheResponseIsTold) {
    file.length = 0.1;
    file.block("[Microphone_1]", decayrows(101, 1, 1e12, 0.3, 0.001));
    writetext(inside("room.@ab"), "");
    scripted::expectbox("The reverberation time is quite longer than the lenght", platform::answer::ok);
    load(file.text());
    EXPECT_TRUE(ResultSet.rayFilePresent);
}

TEST_F(resultfiles, everyCutOfAFileEnds) {
    file.extra = "Name       = speaker.txt\r\n";
    file.block("[Microphone_1]", decayrows(3, 1, 5000, 0.02, 0.001));
    file.block("[Microphone_2]", decayrows(3, 1, 5000, 0.02, 0.001));
    file.length = 0.002;
    const std::string text = file.text();
    scripted::record(false);
    for (std::size_t size = 0; size <= text.size(); ++size) load(text.substr(0, size));
    EXPECT_EQ(RoomModel.receiverCount, 2);
}

TEST_F(resultfiles, sourceDescriptionSetsPowerAndDirectivity) {
    const auto band = [](int k, double level) {
        return "band " + std::to_string(k) + " x\r\n0, 0," + numbertext(level) +
               ", 0, 2.5, 0\r\ncount 1\r\n1\r\n2\r\n3\r\n";
    };
    const std::string first = "a\r\nb\r\nc\r\nd\r\n\"Test speaker\", 3\r\n" + band(3, 80.1);
    writetext("speaker.txt", first + band(99, 120) + band(6, 93.7));
    file.extra = "Name       = SPEAKER.TXT\r\n"; // found in any case
    file.block("[Microphone_1]", flatrows(11, 1000));
    load(file.text());
    EXPECT_EQ(ResultSet.sourceName, "SPEAKER.TXT");
    EXPECT_EQ(ResultSet.sourcePower(3), 80.1F);
    EXPECT_EQ(ResultSet.sourcePower(6), 93.7F);
    EXPECT_EQ(ResultSet.sourceDirectivity(6), 2.5F);
    EXPECT_EQ(ResultSet.sourcePower(linearband), 93.8855515F); // of the stored levels
    EXPECT_TRUE(logged("Test speaker 3"));
    EXPECT_FLOAT_EQ(SessionState.voiceCorrection[3], 60 - ((93.7F - 11) + 2.5F));
    // Levels of the former load stay when the next file names no source that is there.
    file.extra.clear();
    load(file.text(), "next._ab");
    EXPECT_EQ(ResultSet.sourcePower(6), 93.7F);
    EXPECT_FLOAT_EQ(ParameterSet.LeqLw(1, 6), ParameterSet.Leq(1, 6) - 93.7F);
    // Of a description that is cut, what was read counts.
    ResultSet = resultset{};
    writetext("speaker.txt", first + "band 4 x\r\n0 0 six");
    file.extra = "Name       = speaker.txt\r\n";
    load(file.text());
    EXPECT_EQ(ResultSet.sourcePower(4), 0.0F);
    EXPECT_FLOAT_EQ(ResultSet.sourcePower(linearband), 80.1F);
}

// A file with no band record is no usable one: it leaves the levels of the load before.
TEST_F(resultfiles, anUnusableSourceDescriptionLeavesTheLevels) {
    file.extra = "Name       = speaker.txt\r\n";
    file.block("[Microphone_1]", flatrows(11, 1000));
    ResultSet.sourcePower(linearband) = 80.4F;
    for (const char* text : {"two words", "a\r\nb\r\nc\r\nd\r\nT, 9\r\n",
                             "a\r\nb\r\nc\r\nd\r\nT, 1\r\nb 11 x\r\n0 0 70 0 0 0\r\nc 2147483647\r\n1\r\n"}) {
        writetext("speaker.txt", text);
        load(file.text());
        EXPECT_EQ(ResultSet.sourcePower(linearband), 80.4F);
    }
}

} // namespace orv
