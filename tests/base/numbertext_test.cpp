// Numbers as text and text as numbers.
#include "base/numbertext.h"

#include "base/files.h"
#include "base/runtimeerror.h"
#include "tests/jsonvalue.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <random>
#include <utility>

using namespace orv;

namespace {

// Among them numbers exactly halfway between two texts, and two that only look like it: the nearest doubles
// lie below 2.0000025 and above 2.0000015.
TEST(numbertext, HasSevenDigitsHalvesAwayFromZero) {
    const std::pair<double, const char*> cases[] = {
        {0, " 0"},
        {-0.0, " 0"},
        {.5, " .5"},
        {9999999, " 9999999"},
        {10000000, " 1E+07"},
        {-12345678, "-1.234568E+07"},
        {.0123456, " .0123456"},
        {.01234567, " 1.234567E-02"},
        {.00000001, " 1E-08"},
        {5e-324, " 4.940656E-324"},
        {1.7976931348623157e308, " 1.797693E+308"},
        {1000000.5, " 1000001"},
        {9999999.5, " 1E+07"},
        {0.000030517578125, " 3.051758E-05"},
        {2.0000025, " 2.000002"},
        {2.0000015, " 2.000002"},
    };
    for (const auto& [value, text] : cases) EXPECT_EQ(numbertext(value), text);
    EXPECT_EQ(wholetext(123456789), " 123456789");
    EXPECT_EQ(wholetext(-7), "-7");
    EXPECT_EQ(trimmednumber(20.5), "20.5");
    EXPECT_EQ(trimmednumber(-.5), "-.5");
}

// What all digits of the exact value say: the fast way of taking the first of them must not differ.
std::string roundedfully(double value, int places) {
    char exact[800];
    const int most = 766; // digits behind the first, of which no double has more
    const auto end =
        std::to_chars(exact, exact + sizeof exact, std::fabs(value), std::chars_format::scientific, most).ptr;
    std::string digits(1, exact[0]);
    digits.append(exact + 2, most);
    int power = 0;
    const char* sign = exact + 2 + most + 1;
    std::from_chars(*sign == '+' ? sign + 1 : sign, end, power);
    const bool up = digits[static_cast<std::size_t>(places)] >= '5';
    digits.resize(static_cast<std::size_t>(places));
    if (up) {
        std::size_t i = digits.size();
        while (i > 0 && digits[i - 1] == '9') digits[--i] = '0';
        if (i > 0) {
            ++digits[i - 1];
        } else {
            digits.insert(0, 1, '1').pop_back();
            ++power;
        }
    }
    digits.resize(digits.find_last_not_of('0') + 1);
    return digits + "e" + std::to_string(power);
}

TEST(numbertext, TakesTheDigitsOfTheExactValue) {
    const auto check = [](double value) {
        for (const int places : {1, 7, 15, 16}) {
            const decimaldigits digits = significantdigits(value, places);
            const std::string text(digits.digit.data(), static_cast<std::size_t>(digits.count));
            ASSERT_EQ(text + "e" + std::to_string(digits.point - 1), roundedfully(value, places)) << value;
        }
    };
    std::mt19937_64 random(2);
    const auto whole = [&random](std::uint64_t below) { return static_cast<double>(random() % below); };
    for (int i = 0; i < 3000; ++i) {
        const double any = std::bit_cast<double>(random());
        if (std::isfinite(any) && any != 0) check(any);
        const auto one = static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(random())));
        if (std::isfinite(one) && one != 0) check(one);
        check(whole(10000000) + 0.5); // ties, and what looks like one
        check((whole(10000000) + 0.5) / 1e5);
        check(whole(100000000) * 1e9 + 5e8);
        check(std::ldexp(1 + whole(1 << 24), static_cast<int>(random() % 80) - 60));
        check(whole(1000000000000000) + 0.5);
    }
    for (int power = -300; power <= 300; ++power) { // beside every power of ten
        const double ten = std::pow(10.0, power);
        for (const double value :
             {std::nextafter(ten, 0), ten, std::nextafter(ten, 1e308), ten * 9.9999995, ten * 0.99999995})
            check(value);
    }
}

TEST(lenient, TakesTheLongestNumericPrefix) {
    const std::pair<const char*, double> cases[] = {
        {"+.E5", 0},     {" \t 12", 12}, {"+12", 12},
        {"-3", -3},      {"--1", 0},     {"5.", 5},
        {"1.2.3", 1.2},  {"1 2", 1},

        {"1d2", 100},    {"1E+", 1},     {"1E", 1},
        {"1e-2x", .01},  {"2,5", 2},     {"0x10", 0},
        {"nan", 0},      {"1E-400", 0},  {"1E-99999999999", 0},
        {"0E999999", 0}, {"\n1", 0},
    };
    for (const auto& [text, value] : cases) EXPECT_EQ(lenientnumber(text), value) << '"' << text << '"';
    EXPECT_THROW(lenientnumber("1E400"), runtimeerror);
    EXPECT_THROW(lenientnumber("-1E99999999999"), runtimeerror);
}

// Digits of any length, with the point and the exponent anywhere: the nearest double, as the library finds
// it.
TEST(lenient, GivesTheNearestDouble) {
    std::mt19937 random(2);
    for (int i = 0; i < 50000; ++i) {
        std::string text;
        for (auto n = random() % 24; n > 0; --n) text += static_cast<char>('0' + random() % 10);
        text += '.';
        for (auto n = 1 + random() % 24; n > 0; --n) text += static_cast<char>('0' + random() % 10);
        if (random() % 2) text.append("e").append(std::to_string(static_cast<int>(random() % 500) - 250));
        double expected = 0;
        const auto parsed = std::from_chars(text.data(), text.data() + text.size(), expected);
        const numberprefix prefix = readprefix(text);
        EXPECT_EQ(prefix.length, text.size());
        const bool representable = parsed.ec == std::errc();
        EXPECT_TRUE(!representable || prefix.value == expected) << text;
    }
}

// Worked examples, where they are at hand.
TEST(textvectors, AgreeWithNumberTextAndParse) {
    const std::string path = std::string(SHARED_FILES) + "/examples/text_vectors.json";
    if (!canopen(path)) GTEST_SKIP() << "no worked examples here";
    const filebytes bytes = readfile(path);
    const jsonvalue vectors = readjson(bytes);
    for (const jsonvalue& one : vectors["number_text"].items)
        EXPECT_EQ(numbertext(lenientnumber(one[0].text)), one[1].text) << one[0].text;
    for (const jsonvalue& one : vectors["parse"].items)
        EXPECT_EQ(lenientnumber(one[0].text), one[1].number) << one[0].text;
    EXPECT_GT(vectors["number_text"].items.size(), 100U);
}

} // namespace
