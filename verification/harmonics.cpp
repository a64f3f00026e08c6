// Spherical harmonics of the Ambisonics formats.
#include "verification/harmonics.h"

#include "export/encoders.h"
#include "verification/series.h"
#include "verification/subjects.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <string>
#include <vector>

namespace orv::verification {

namespace {

constexpr int fifthorderrow = 6, harmoniccount = 36; // of the formats
constexpr int levels = 12, turns = 24;               // directions: sines of elevation x azimuths
constexpr double allowed = 1e-13;

// Nodes of the Gauss-Legendre rule on -1..1 with their weights, by Newton's method: exact for polynomials up
// to twice their number less one.
struct node {
    double place, weight;
};
std::array<node, levels> gaussnodes() {
    std::array<node, levels> nodes;
    for (int i = 0; i < levels; ++i) {
        real x = std::cos(std::numbers::pi_v<real> * (i + 0.75L) / (levels + 0.5L)), slope = 1;
        for (int step = 0; step < 20; ++step) {
            const real value = std::legendre(static_cast<unsigned>(levels), x);
            slope = levels * (x * value - std::legendre(static_cast<unsigned>(levels - 1), x)) / (x * x - 1);
            x -= value / slope;
        }
        nodes[static_cast<std::size_t>(i)] = {static_cast<double>(x),
                                              static_cast<double>(2 / ((1 - x * x) * slope * slope))};
    }
    return nodes;
}

struct weighteddirection {
    double azimuth, sine, weight; // all weights make 1
};
std::vector<weighteddirection> directions() {
    std::vector<weighteddirection> all;
    for (const node& each : gaussnodes())
        for (int k = 0; k < turns; ++k)
            all.push_back({2 * std::numbers::pi * (k + 0.3) / turns, each.place, each.weight / 2 / turns});
    return all;
}

std::array<double, harmoniccount> gainsof(const weighteddirection& from) {
    const double side = std::sqrt(1 - from.sine * from.sine);
    const direction d{side * std::cos(from.azimuth), side * std::sin(from.azimuth), from.sine};
    std::array<double, harmoniccount> gains;
    for (int acn = 0; acn < harmoniccount; ++acn)
        gains[static_cast<std::size_t>(acn)] = receivergain(d, fifthorderrow, acn + 1);
    return gains;
}

std::string ordername(int order) {
    return "Order " + std::to_string(order) + ", " + std::to_string(2 * order + 1) +
           (order == 0 ? " channel" : " channels");
}

table definitions(const std::vector<weighteddirection>& all) {
    table found{"By the definition", "Gains in 288 directions."};
    for (const weighteddirection& each : all) {
        const auto gains = gainsof(each);
        for (int acn = 0; acn < harmoniccount; ++acn)
            compare(found, ordername(orderof(acn)), allowed, harmonicof(acn, each.azimuth, each.sine),
                    gains[static_cast<std::size_t>(acn)]);
    }
    return found;
}

table orthonormality(const std::vector<weighteddirection>& all) {
    table found{"Over the sphere",
                "Means of products of two channels, by a rule of quadrature that is exact for them: 1 / (2 n "
                "+ 1) for the square of one of order n, 0 for two different ones."};
    std::array<std::array<double, harmoniccount>, harmoniccount> products{};
    for (const weighteddirection& each : all) {
        const auto gains = gainsof(each);
        for (std::size_t i = 0; i < harmoniccount; ++i)
            for (std::size_t j = 0; j <= i; ++j) products[i][j] += each.weight * gains[i] * gains[j];
    }
    for (int i = 0; i < harmoniccount; ++i) {
        const int order = orderof(i);
        const auto at = static_cast<std::size_t>(i);
        compare(found, "Square, order " + std::to_string(order), allowed, 1.0 / (2 * order + 1),
                products[at][at]);
    }
    for (std::size_t i = 0; i < harmoniccount; ++i)
        for (std::size_t j = 0; j < i; ++j)
            compare(found, "Two different channels", allowed, 0, products[i][j]);
    return found;
}

} // namespace

int orderof(int acn) {
    int order = 0;
    while ((order + 1) * (order + 1) <= acn) ++order;
    return order;
}

double harmonicof(int acn, double azimuth, double sine) {
    const int order = orderof(acn), degree = acn - order * order - order, m = std::abs(degree);
    const real scale =
        std::sqrt((m == 0 ? 1 : 2) * std::tgamma(real(order - m + 1)) / std::tgamma(real(order + m + 1)));
    const real turn = degree < 0 ? std::sin(m * real(azimuth)) : std::cos(m * real(azimuth));
    return static_cast<double>(
        scale * turn *
        std::assoc_legendre(static_cast<unsigned>(order), static_cast<unsigned>(m), real(sine)));
}

subject verifyharmonics() {
    subject found{"harmonics", "Spherical harmonics",
                  "The channels of the Ambisonics formats, in ACN order and SN3D normalisation (AmbiX), "
                  "against the associated Legendre functions of the standard library."};
    const std::vector<weighteddirection> all = directions();
    found.tables.push_back(definitions(all));
    found.tables.push_back(orthonormality(all));
    return found;
}

} // namespace orv::verification
