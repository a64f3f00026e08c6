// Arithmetic that fails where the design counts on a failure. C++ itself goes on with infinities and NaN.
#pragma once

#include <cstdint>

namespace orv {

// numerator / denominator. Raises divisionbyzero for a denominator of 0, overflow for a result that no
// double holds.
double quotient(double numerator, double denominator);

// Natural logarithm. Raises domain for a value of 0 or below.
double naturallog(double value);

// Decimal logarithm. Raises domain for a value of 0 or below.
double decimallog(double value);

// Square root. Raises domain for a negative value.
double squareroot(double value);

// base to the power of exponent. Raises domain where the result is no real number (a negative base with a
// broken exponent, 0 to a negative power) and overflow where no double holds it.
double power(double base, double exponent);

// A stored single-precision value as the double that everything is computed in.
constexpr double wide(float value) {
    return value;
}

// The value as a single-precision number, rounded to nearest. Raises overflow when it does not fit, and
// for NaN.
float single(double value);

// Whole-number conversion: to nearest, halves to even. Raises overflow outside the type's range (16-bit,
// 32-bit), and for NaN.
std::int16_t whole16(double value);
std::int32_t whole32(double value);

// The largest whole number not above the value, also for negative numbers.
double Int(double value);

} // namespace orv
