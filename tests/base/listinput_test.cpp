// Lines, counted characters and free list input.
#include "base/listinput.h"

#include "base/numbertext.h"
#include "tests/failures.h"

#include <random>
#include <vector>

using namespace orv;

namespace {

std::string rest(const listreader& reader) {
    return std::string(reader.buffer.substr(reader.position));
}

TEST(lines, EndAtEitherLineEnd) {
    listreader reader = openlist("one\r\ntwo\n\r\nlast", "F");
    std::vector<std::string> lines;
    while (!atend(reader)) lines.emplace_back(readline(reader));
    EXPECT_EQ(lines, (std::vector<std::string>{"one", "two", "", "last"}));
    const runtimeerror error = failureof([&] { readline(reader); });
    EXPECT_EQ(error.kind, errorkind::pastend);
    EXPECT_EQ(error.text, "F, line 4: the file ends where a line was expected.");
}

// A bare LF counts as CR and LF, so that keys and blocks are found at the same count of characters.
TEST(characters, CountAlikeInAFileAndItsTwinWithBareLineFeeds) {
    const std::string text = "Header    = 1\r\n\r\n[Microphone_1]\r\nab\r\n\r\n\r\ncd";
    std::string twin = text;
    std::erase(twin, '\r');
    for (std::size_t count = 1; count <= 5; ++count)
        for (const bool lines : {false, true}) { // between whose rests the characters are read
            listreader one = openlist(text, "F"), other = openlist(twin, "F");
            while (!atend(one)) {
                ASSERT_EQ(readcharacters(one, count), readcharacters(other, count)) << count;
                if (!lines || atend(one)) continue;
                ASSERT_EQ(readline(one), readline(other)) << count;
            }
            ASSERT_TRUE(atend(other)) << count;
        }
    listreader reader = openlist(twin, "F");
    readline(reader);
    EXPECT_EQ(skipcharacters(reader, 3), 3U);
    EXPECT_EQ(readcharacters(reader, 100), "Microphone_1]\r\nab\r\n\r\n\r\ncd");
}

// Behind a field blanks and one comma or line end are taken and no more, so that counting goes on from the
// start of the next line.
TEST(fields, TakeOneSeparatorBehindThem) {
    const std::pair<const char*, const char*> cases[] = {{"1  \r\n\r\nx", "\r\nx"},
                                                         {"1 ,\r\nx", "\r\nx"},
                                                         {"1 ,,2", ",2"},
                                                         {"1\n\nx", "\nx"},
                                                         {"1   x", "x"},
                                                         {"1", ""},
                                                         {"1\rx", ""},
                                                         {"1 \r", ""},
                                                         {"1]]] , x", " x"}};
    for (const auto& [text, left] : cases) {
        listreader reader = openlist(text, "F");
        EXPECT_EQ(readnumber(reader), 1) << text;
        EXPECT_EQ(rest(reader), left) << text;
    }
}

TEST(fields, HoldTextsPlainAndQuoted) {
    listreader reader = openlist("plain \"two words, one comma\" next,\"\",last\r\nend", "F");
    for (const char* expected : {"plain", "two words, one comma", "next", "", "last", "end"})
        EXPECT_EQ(readtext(reader), expected);
    reader = openlist("C:\\My Files\\a.ray, \"b\"\r\n", "F");
    EXPECT_EQ(readtext(reader, listreader::commaends), "C:\\My Files\\a.ray");
    EXPECT_EQ(readtext(reader, listreader::commaends), "b");
    EXPECT_EQ(failureof([&] { readtext(reader); }).kind, errorkind::pastend);
    reader = openlist(" ,\r\n 1,,2\t3 ,4\n\n5", "F");
    for (const double expected : {1.0, 2.0, 3.0, 4.0, 5.0}) EXPECT_EQ(readnumber(reader), expected);
    for (const auto& read : {+[](listreader& r) { return readtext(r); }, &readline}) { // cut behind the CR
        reader = openlist("end\r", "F");
        EXPECT_EQ(read(reader), "end");
        EXPECT_TRUE(atend(reader));
    }
    reader = openlist("\"never closed, 1", "F");
    EXPECT_EQ(readtext(reader), "never closed, 1");
}

TEST(fields, NameLineAndFieldWhenTheyAreNoNumbers) {
    listreader reader = openlist("1 2\r\n 3 wall 5\r\n", "room.ray");
    for (int i = 0; i < 3; ++i) readnumber(reader);
    EXPECT_EQ(failureof([&] { readsingle(reader); }).text,
              "room.ray, line 2: expected a number, found \"wall\".");
    EXPECT_EQ(readnumber(reader), 5); // the field that failed was taken

    reader = openlist("\"7\" 1E39 40000 1E999", "F");
    EXPECT_EQ(failureof([&] { readnumber(reader); }).kind, errorkind::typemismatch);
    EXPECT_EQ(failureof([&] { readsingle(reader); }).kind, errorkind::overflow);
    EXPECT_EQ(failureof([&] { readwhole16(reader); }).text, "F, line 1: the number \"40000\" is too large.");
    EXPECT_EQ(tryreadnumber(reader).outcome, fieldoutcome::overflow);
    reader = openlist("2.5 -2147483648 1e-60 1E-40", "F");
    EXPECT_EQ(readwhole16(reader), 2); // halves to even
    EXPECT_EQ(readwhole32(reader), -2147483647 - 1);
    EXPECT_EQ(readsingle(reader), 0.0F); // too small for the type
    EXPECT_EQ(readsingle(reader), 1e-40F);
    EXPECT_EQ(tryreadnumber(reader).outcome, fieldoutcome::pastend);
}

// The quick road for usual numbers must not differ from the general one, whatever stands around them: here
// the field is found letter by letter and its number taken by the general routine.
TEST(fields, ReadAlikeByAllRoads) {
    constexpr std::string_view letters = "0123456789012345....--+EeDd  ,\n";
    std::mt19937 random(4);
    for (int round = 0; round < 60000; ++round) {
        std::string text;
        for (auto n = random() % 30; n > 0; --n) text += letters[random() % letters.size()];
        listreader quick = openlist(text, "F"), many = quick;
        const std::size_t begin = std::min(text.find_first_not_of(" ,\n"), text.size());
        const std::size_t end = std::min(text.find_first_of(" ,\n", begin), text.size());
        const numberprefix prefix = readprefix(std::string_view(text).substr(begin));
        const numberfield field = tryreadnumber(quick);
        const fieldoutcome expected = begin == text.size() ? fieldoutcome::pastend
                                      : prefix.length == 0 ? fieldoutcome::typemismatch
                                      : prefix.overflow    ? fieldoutcome::overflow
                                                           : fieldoutcome::read;
        ASSERT_EQ(field.outcome, expected) << text;
        ASSERT_GE(quick.position, end) << text;
        ASSERT_EQ(text.substr(end, quick.position - end).find_first_not_of(" ,\n"), std::string::npos)
            << text;
        if (expected != fieldoutcome::read) continue;
        ASSERT_EQ(field.value, prefix.value) << text;
        float value = 0;
        if (attempt([&] { readsingles(many, {&value, 1}); })) {
            ASSERT_EQ(value, static_cast<float>(prefix.value)) << text;
            ASSERT_EQ(many.position, quick.position) << text;
        }
    }
}

TEST(texts, AreTrimmedOfBlanksAndFoundBehindAMark) {
    EXPECT_EQ(behindmark("Time = 2 = 3", '='), " 2 = 3");
    EXPECT_EQ(behindmark("Temp", '='), "Temp");
    EXPECT_EQ(trimfront("  a b "), "a b ");
    EXPECT_EQ(trimboth("  a b "), "a b");
    EXPECT_EQ(uppercase("wall-\xE4z"), "WALL-\xE4Z");
    const std::string others = "@[`{\xD7\xF7\xDF", lower = "az\xE0\xF6\xFE\x9A\x9C\x9E\xFF",
                      upper = "AZ\xC0\xD6\xDE\x8A\x8C\x8E\x9F";
    EXPECT_EQ(pageuppercase(others + lower + upper), others + upper + upper);
    EXPECT_EQ(pagelowercase(others + lower + upper), others + lower + lower);
}

} // namespace
