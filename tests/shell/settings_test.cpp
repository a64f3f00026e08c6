// The settings file: what is read from it, and what a writer leaves as it was.
#include "tests/testsupport.h"

#include "shell/settings.h"
#include "tests/failures.h"

using namespace orv;

namespace {

struct settings : sessiontest {};

std::string numberedlines(int count) {
    std::string text;
    for (int i = 1; i <= count; ++i) text.append("Line ").append(std::to_string(i)).append("\r\n");
    return text;
}

TEST_F(settings, ReadEightKeysByTheirFirstFourLetters) {
    writetext("orvanta.ini", "Level=120 dB\r\n"
                             "TimeLength= 2.5 s\n"
                             "Precision=.002\r\n"
                             "History=25\r\n"
                             "Humidity=  50,5 %\r\n" // a comma ends the number
                             "Temp=21.5=22\r\n"
                             "Alfa=.9 exponent\r\n"
                             "Beta=1.5E-1\r\n"
                             "alfa=7\r\nBet=7\r\n\r\nUnknown=1\r\n"
                             "Time=3");
    readsettings();
    EXPECT_EQ(SessionState.levelSetting, 120);
    EXPECT_EQ(ResultSet.responseLength, 3); // the later line of a key wins
    EXPECT_EQ(ResultSet.timeStep, .002F);
    EXPECT_EQ(SessionState.historySetting, 25);
    EXPECT_EQ(SessionState.humidity, 50.0F);
    EXPECT_EQ(SessionState.temperature, 21.5F);
    EXPECT_EQ(ResultSet.alfaConstant, .9F);
    EXPECT_EQ(ResultSet.betaConstant, .15F);
    // A key that is not there leaves its variable, a line without "=" reads as 0.
    writetext("orvanta.ini", "Temp 30\r\n");
    readsettings();
    EXPECT_EQ(SessionState.temperature, 0.0F);
    EXPECT_EQ(SessionState.humidity, 50.0F);
}

TEST_F(settings, LeaveTheVariableOfALineThatFails) {
    SessionState.temperature = 20;
    ResultSet.alfaConstant = 1;
    writetext("orvanta.ini", "Level=1\r\nTemp=1E39\r\nAlfa=1E999\r\nBeta=2\r\n");
    readsettings();
    EXPECT_EQ(SessionState.temperature, 20.0F);
    EXPECT_EQ(ResultSet.alfaConstant, 1.0F);
    EXPECT_EQ(ResultSet.betaConstant, 2.0F);
    std::filesystem::remove("orvanta.ini");
    EXPECT_EQ(kindof(readsettings), errorkind::filenotfound);
    EXPECT_EQ(kindof([] { updatesettings({{"Temp", "1"}}, behindvalue::dropped); }), errorkind::filenotfound);
    EXPECT_FALSE(canopen("orvanta.ini"));
}

TEST_F(settings, KeepEveryOtherByteWhenWritten) {
    const std::string strange("; \0\x81 caf\xE9\t= x = y \r", 19);
    writetext("orvanta.ini", strange + "\r\n\nTemperature = 20 C\nTemp\r\ntemp=1\r\nAlfa=.5");
    updatesettings({{"Temp", "-1.5"}, {"Humi", "50"}}, behindvalue::dropped);
    EXPECT_EQ(readtext("orvanta.ini"),
              strange + "\r\n\r\nTemperature =-1.5\r\n-1.5\r\ntemp=1\r\nAlfa=.5\r\n");
    // Or the text behind the value too, from its first blank on.
    writetext("orvanta.ini",
              "Alfa=  .9 exponent, of = time \r\nBeta=1\r\nAlfa\r\nBeta of old\r\nTemp=1 C\r\n");
    updatesettings({{"Alfa", "1.25"}, {"Beta", ".5"}}, behindvalue::kept);
    EXPECT_EQ(readtext("orvanta.ini"),
              "Alfa=1.25 exponent, of = time \r\nBeta=.5\r\n1.25\r\n.5 of old\r\nTemp=1 C\r\n");
}

TEST_F(settings, FitSixtyLinesAndNoMore) {
    writetext("orvanta.ini", numberedlines(59) + "Temp=1\r\n");
    updatesettings({{"Temp", "2"}}, behindvalue::dropped);
    EXPECT_EQ(readtext("orvanta.ini"), numberedlines(59) + "Temp=2\r\n");

    const std::string toolong = "Temp=1\r\n" + numberedlines(60);
    writetext("orvanta.ini", toolong);
    const runtimeerror error = failureof([] { updatesettings({{"Temp", "2"}}, behindvalue::dropped); });
    EXPECT_EQ(error.kind, errorkind::subscript);
    EXPECT_NE(error.text.find("line 61"), std::string::npos) << error.text;
    EXPECT_EQ(readtext("orvanta.ini"), toolong);
    readsettings(); // readers have no such limit
    EXPECT_EQ(SessionState.temperature, 1.0F);
}

} // namespace
