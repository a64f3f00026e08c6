// List form and print form, checked tables and checked arithmetic.
#include "base/arithmetic.h"
#include "base/listoutput.h"
#include "base/table.h"

#include "base/listinput.h"
#include "tests/failures.h"

#include <cmath>
#include <limits>

using namespace orv;

namespace {

TEST(listform, IsReadBackByListInput) {
    std::string line;
    listtext(line, "hall, big");
    listnumber(line, -.5);
    listtext(line, "");
    listwhole(line, 123456789);
    listnumber(line, 1e-9);
    EXPECT_EQ(line, "\"hall, big\",-.5,\"\",123456789,1E-09");
    listreader reader = openlist(line, "F");
    EXPECT_EQ(readtext(reader), "hall, big");
    EXPECT_EQ(readnumber(reader), -.5);
    EXPECT_EQ(readtext(reader), "");
}

TEST(printform, HasABlankOrMinusInFrontAndZonesOfFourteenColumns) {
    std::string line;
    printwhole(line, 0);
    printwhole(line, -32768);
    printnumber(line, .5);
    printnumber(line, -1e9);
    EXPECT_EQ(line, " 0 -32768  .5 -1E+09 ");
    line = " 1";
    for (const std::size_t width : {14U, 28U}) { // at a zone's start the whole zone is passed
        printzone(line);
        EXPECT_EQ(line.size(), width);
    }
}

TEST(tables, NameTableIndexAndLimitInTheirError) {
    static struct {
        fixedtable<"level", float, 3, 2> level;
        columntable<"corner", int, 3, 2> corner;
    } some;
    for (int row = 0; row <= 3; ++row)
        for (int column = 0; column <= 2; ++column) {
            some.level(row, column) = static_cast<float>(10 * row + column);
            some.corner(row, column) = 10 * row + column;
        }
    EXPECT_EQ(some.level(1, 2), 12.0F);
    EXPECT_EQ(some.corner(1, 2), 12);
    some.level.clearrows(1);
    EXPECT_EQ(some.level(1, 2), 0.0F);
    EXPECT_EQ(some.level(2, 0), 20.0F);
    for (const auto& [row, column] : {std::pair{4, 0}, {-1, 0}, {0, 3}, {0, -1}}) {
        EXPECT_EQ(kindof([&] { some.level(row, column) = 0; }), errorkind::subscript);
        EXPECT_EQ(kindof([&] { some.corner(row, column) = 0; }), errorkind::subscript);
    }
    EXPECT_EQ(failureof([&] { some.level(1, 3) = 0; }).text,
              "Subscript out of range: level 3 is outside 0..2.");
}

TEST(arithmetic, FailsWhereCppGoesOn) {
    constexpr double largest = std::numeric_limits<double>::max();
    EXPECT_EQ(kindof([] { quotient(0, 0); }), errorkind::divisionbyzero);
    EXPECT_EQ(kindof([] { quotient(largest, .1); }), errorkind::overflow);
    EXPECT_EQ(kindof([] { naturallog(0); }), errorkind::domain);
    EXPECT_EQ(kindof([] { decimallog(-1); }), errorkind::domain);
    EXPECT_EQ(kindof([] { squareroot(-1e-300); }), errorkind::domain);
    EXPECT_EQ(kindof([] { power(-8, 1.0 / 3); }), errorkind::domain);
    EXPECT_EQ(kindof([] { power(0, -1); }), errorkind::domain);
    EXPECT_EQ(kindof([] { power(10, 400); }), errorkind::overflow);
    EXPECT_EQ(kindof([] { single(3.5e38); }), errorkind::overflow);
    EXPECT_EQ(kindof([] { whole16(32767.5); }), errorkind::overflow);
    EXPECT_EQ(kindof([] { whole32(std::nan("")); }), errorkind::overflow);
    EXPECT_EQ(power(-2, 3), -8);
    EXPECT_EQ(squareroot(0), 0);
    EXPECT_EQ(whole16(.5), 0); // halves to even
    EXPECT_EQ(whole16(-32768.5), -32768);
    EXPECT_EQ(whole32(-1.5), -2);
    EXPECT_EQ(Int(-.1), -1);
}

TEST(attempts, LeaveTheTargetOfAFailingStep) {
    double value = 7;
    EXPECT_FALSE(attempt([&] { value = quotient(1, 0); }));
    EXPECT_EQ(value, 7);
    EXPECT_TRUE(attempt([&] { value = quotient(1, 2); }));
    EXPECT_EQ(value, .5);
    EXPECT_FALSE(attempt([] { throw std::bad_alloc(); }));
}

} // namespace
