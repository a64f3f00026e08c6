// Arithmetic that fails where the design counts on a failure.
#include "base/arithmetic.h"

#include "base/runtimeerror.h"

#include <cmath>
#include <limits>

namespace orv {

namespace {

// What every operation below does with its result: a double that is no number or infinite is an overflow.
double finite(double result) {
    if (!std::isfinite(result)) throw runtimeerror{errorkind::overflow, "Overflow: a number is too large."};
    return result;
}

// std::nearbyint rounds halves to even under the default rounding mode, which the program never changes.
template <class whole>
whole converted(double value) {
    const double rounded = std::nearbyint(value);
    if (!(rounded >= static_cast<double>(std::numeric_limits<whole>::min()) &&
          rounded <= static_cast<double>(std::numeric_limits<whole>::max())))
        throw runtimeerror{errorkind::overflow, "Overflow: a whole number is too large."};
    return static_cast<whole>(rounded);
}

} // namespace

double quotient(double numerator, double denominator) {
    if (denominator == 0) throw runtimeerror{errorkind::divisionbyzero, "Division by zero."};
    return finite(numerator / denominator);
}

double naturallog(double value) {
    if (!(value > 0)) throw runtimeerror{errorkind::domain, "Logarithm of a number that is not positive."};
    return finite(std::log(value));
}

double decimallog(double value) {
    if (!(value > 0)) throw runtimeerror{errorkind::domain, "Logarithm of a number that is not positive."};
    return finite(std::log10(value));
}

double squareroot(double value) {
    if (!(value >= 0)) throw runtimeerror{errorkind::domain, "Square root of a negative number."};
    return finite(std::sqrt(value));
}

double power(double base, double exponent) {
    if ((base < 0 && exponent != std::nearbyint(exponent)) || (base == 0 && exponent < 0))
        throw runtimeerror{errorkind::domain, "A power that is no real number."};
    return finite(std::pow(base, exponent));
}

float single(double value) {
    const float stored = static_cast<float>(value);
    if (!std::isfinite(stored))
        throw runtimeerror{errorkind::overflow, "Overflow: a number is too large for single precision."};
    return stored;
}

std::int16_t whole16(double value) {
    return converted<std::int16_t>(value);
}

std::int32_t whole32(double value) {
    return converted<std::int32_t>(value);
}

double Int(double value) {
    return std::floor(value);
}

} // namespace orv
