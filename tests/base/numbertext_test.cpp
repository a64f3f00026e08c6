// Numbers as text, by format patterns too, and text as numbers.
#include "base/numbertext.h"

#include "base/files.h"
#include "base/formatpattern.h"
#include "base/runtimeerror.h"
#include "tests/jsonvalue.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <random>

using namespace orv;

namespace {

// Text of numbers, the numbers that texts begin with, and numbers by patterns: our own examples, and worked
// ones where they are at hand.
//
// Among the first are numbers exactly halfway between two texts, and two that only look like it: the nearest
// doubles lie below 2.0000025 and above 2.0000015. A pattern shows the point and digits only where places ask
// for them, and places behind a forced one are forced. A zero shows nothing without a forced digit, a minus
// stands before digits only and the thousands mark between them. The seven digits shown of a single decide.
TEST(numbertext, AgreesWithTheExamples) {
    for (const std::string path :
         {TEST_FILES "/golden/numbers.json", SHARED_FILES "/examples/text_vectors.json"}) {
        if (path.starts_with(SHARED_FILES) && !canopen(path)) continue;
        const filebytes bytes = readfile(path);
        const jsonvalue examples = readjson(bytes);
        for (const jsonvalue& one : examples["number_text"].items)
            EXPECT_EQ(numbertext(lenientnumber(one[0].text)), one[1].text) << one[0].text;
        for (const jsonvalue& one : examples["parse"].items)
            EXPECT_EQ(lenientnumber(one[0].text), one[1].number) << one[0].text;
        for (const jsonvalue& one : examples["format"].items)
            EXPECT_EQ(formatnumber(static_cast<float>(lenientnumber(one[1].text)), one[0].text), one[2].text)
                << one[0].text << " of " << one[1].text;
        EXPECT_GT(examples["number_text"].items.size() + examples["format"].items.size(), 40U);
    }
    EXPECT_EQ(numbertext(-0.0), " 0");
    EXPECT_EQ(wholetext(123456789), " 123456789");
    EXPECT_EQ(wholetext(-7), "-7");
    EXPECT_EQ(trimmednumber(20.5), "20.5");
    EXPECT_EQ(trimmednumber(-.5), "-.5");
    EXPECT_THROW(lenientnumber("1E400"), runtimeerror);
    EXPECT_THROW(lenientnumber("-1E99999999999"), runtimeerror);
}

// Halves away from zero by all digits of the exact value: the fast way of taking the first of them must not
// differ. The library rounds halves to even; the next long double above one is on the right side.
std::string roundedfully(double value, int places) {
    char text[800];
    const auto digits = [&text](long double of, int behindfirst) {
        const auto form = std::chars_format::scientific;
        return std::string(text, std::to_chars(text, text + sizeof text, of, form, behindfirst).ptr);
    };
    const long double size = std::fabs(value);
    const std::string exact = digits(size, 766); // digits behind the first, of which no double has more
    const auto behind = static_cast<std::size_t>(places) + 1;
    const bool half = exact[behind] == '5' && exact.find_first_not_of('0', behind + 1) == exact.find('e');
    std::string rounded = digits(half ? std::nextafter(size, 2 * size) : size, places - 1);
    const int power = std::stoi(rounded.substr(rounded.find('e') + 1));
    rounded.resize(rounded.find('e'));
    std::erase(rounded, '.');
    rounded.resize(rounded.find_last_not_of('0') + 1);
    return rounded + "e" + std::to_string(power);
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

TEST(formatpattern, WritesFifteenDigitsOfADouble) {
    EXPECT_EQ(formatnumber(.15, "#0.0"), "0.2"); // which lies a little below that
    EXPECT_EQ(formatnumber(1.005, "0.00"), "1.01");
    EXPECT_EQ(formatnumber(16777217.0, "0"), "16777217");
    EXPECT_EQ(formatnumber(std::int32_t{2000000000}, "###,###,###"), "2,000,000,000");
}

} // namespace
