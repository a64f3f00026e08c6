// Powers of ten that a double holds exactly, for conversions that are to round only once.
#pragma once

namespace orv {

constexpr double exactpower[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int highestexact = 22;

// Decimal digits of which a double holds every whole number and every half.
constexpr int exactplaces = 15;

// value x 10^power, power -22..22, by one operation: the nearest double where the value is exact.
constexpr double timespoweroften(double value, int power) {
    return power < 0 ? value / exactpower[-power] : value * exactpower[power];
}

} // namespace orv
