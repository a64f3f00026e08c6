// Closed forms of sums over geometric series.
#include "verification/series.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace orv::verification {

namespace {

// With S0 = sum of r^n, S1 of n r^n and S2 of n^2 r^n over n = a..b-1, (1 - r) S is what is left when each
// term is taken from the next one:
//   (1 - r) S0 = r^a - r^b
//   (1 - r) S1 = a r^a - (b - 1) r^b + sum of r^n over a+1..b-1
//   (1 - r) S2 = a^2 r^a - (b - 1)^2 r^b + sum of (2 n - 1) r^n over a+1..b-1
real powersum(real r, int a, int b) {
    return (std::pow(r, real(a)) - std::pow(r, real(b))) / (1 - r);
}

real powermoment(real r, int a, int b) {
    return (a * std::pow(r, real(a)) - (b - 1) * std::pow(r, real(b)) + powersum(r, a + 1, b)) / (1 - r);
}

real powersecond(real r, int a, int b) {
    const real ends = real(a) * a * std::pow(r, real(a)) - real(b - 1) * (b - 1) * std::pow(r, real(b));
    return (ends + 2 * powermoment(r, a + 1, b) - powersum(r, a + 1, b)) / (1 - r);
}

template <class form>
real overterms(const series& of, int from, int to, form closed) {
    to = std::min(to, of.slots);
    real sum = 0;
    if (from >= to) return sum;
    for (const series::term& each : of.terms) sum += each.amplitude * closed(each.ratio, from, to);
    return sum;
}

} // namespace

series::term decayterm(real amplitude, real seconds, real step) {
    return {amplitude, std::pow(real(10), -6 * step / seconds)};
}

series weightedsum(std::span<const series> parts, std::span<const real> weights) {
    series whole;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        whole.slots = parts[i].slots;
        for (const series::term& each : parts[i].terms)
            whole.terms.push_back({weights[i] * each.amplitude, each.ratio});
    }
    return whole;
}

real energy(const series& of, int slot) {
    real sum = 0;
    if (slot < 0 || slot >= of.slots) return sum;
    for (const series::term& each : of.terms) sum += each.amplitude * std::pow(each.ratio, real(slot));
    return sum;
}

real sumof(const series& of, int from, int to) {
    return overterms(of, from, to, powersum);
}

real firstmoment(const series& of, int from, int to) {
    return overterms(of, from, to, powermoment);
}

real secondmoment(const series& of, int from, int to) {
    return overterms(of, from, to, powersecond);
}

std::complex<real> transform(const series& of, real phase) {
    std::complex<real> sum = 0;
    for (const series::term& each : of.terms) {
        const std::complex<real> turned = std::polar(each.ratio, -phase);
        const std::complex<real> last = std::polar(std::pow(each.ratio, real(of.slots)), -phase * of.slots);
        sum += each.amplitude * (real(1) - last) / (real(1) - turned);
    }
    return sum;
}

} // namespace orv::verification
