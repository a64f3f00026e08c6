// Directional encoders.
#include "export/encoders.h"

#include "base/arithmetic.h"
#include "export/exportformats.h"
#include "response/raypathset.h"
#include "room/roommodel.h"

#include <cmath>
#include <cstddef>
#include <span>

namespace orv {

namespace {

// A virtual microphone: a cardioid along an axis, raised to a power.
struct element {
    double x, y, z;
    int exponent;
};

// The figures are rounded and not quite symmetric; they are used as they stand.

// Eight around at 45 degree steps, then four above and four below at 45 degrees.
constexpr element ring8x8[] = {
    {1, 0, 0, 4},          {0.707, 0.707, 0, 4},   {0, 1, 0, 4},           {-0.707, 0.707, 0, 4},
    {-1, 0, 0, 4},         {-0.707, -0.707, 0, 4}, {0, -1, 0, 4},          {0.707, -0.707, 0, 4},
    {0.707, 0, 0.707, 3},  {0, 0.707, 0.707, 3},   {-0.707, 0, 0.707, 3},  {0, -0.707, 0.707, 3},
    {0.707, 0, -0.707, 3}, {0, 0.707, -0.707, 3},  {-0.707, 0, -0.707, 3}, {0, -0.707, -0.707, 3},
};

// Sixteen around at 22.5 degree steps.
constexpr element ring16[] = {
    {1, 0, 0, 4},  {0.92388, 0.38268, 0, 4},   {0.707, 0.707, 0, 4},   {0.38268, 0.92388, 0, 4},
    {0, 1, 0, 4},  {-0.38268, 0.92388, 0, 4},  {-0.707, 0.707, 0, 4},  {-0.92388, 0.38268, 0, 4},
    {-1, 0, 0, 4}, {-0.92388, -0.38268, 0, 4}, {-0.707, -0.707, 0, 4}, {-0.38268, -0.92388, 0, 4},
    {0, -1, 0, 4}, {0.38268, -0.92388, 0, 4},  {0.707, -0.707, 0, 4},  {0.92388, -0.38268, 0, 4},
};

// Element 15 lies off the line of 14 and 31, and 11, 23 and 27 are one digit off from 7; meant.
constexpr element sphere32[] = {
    {0.933, 0, 0.359, 4},       {0.848, 0.53, 0, 4},        {0.933, 0, -0.359, 4},
    {0.848, -0.53, 0, 4},       {0.53, 0, 0.848, 4},        {0.579, 0.579, 0.574, 4},
    {0.359, 0.933, 0, 4},       {0.579, 0.579, -0.574, 4},  {0.53, 0, -0.848, 4},
    {0.579, -0.579, -0.574, 4}, {0.358, -0.934, 0, 4},      {0.579, -0.579, 0.574, 4},
    {-0.006, 0.359, 0.933, 4},  {0, 0.848, 0.53, 4},        {0, 0.857, -0.515, 4},
    {0.006, 0.359, -0.933, 4},  {-0.933, 0, 0.359, 4},      {-0.848, -0.53, 0, 4},
    {-0.933, 0, -0.359, 4},     {-0.848, 0.53, 0, 4},       {-0.53, 0, 0.848, 4},
    {-0.579, -0.579, 0.574, 4}, {-0.358, -0.934, 0, 4},     {-0.579, -0.579, -0.574, 4},
    {-0.53, 0, -0.848, 4},      {-0.579, 0.579, -0.574, 4}, {-0.358, 0.934, 0, 4},
    {-0.579, 0.579, 0.574, 4},  {-0.006, -0.359, 0.933, 4}, {0, -0.848, 0.53, 4},
    {0, -0.848, -0.53, 4},      {0.006, -0.359, -0.933, 4},
};

constexpr element sphere12[] = {
    {-0.30368792, -0.526002907, 0.794414621, 3}, {0.60737584, 0, 0.794414621, 3},
    {-0.30368792, 0.526002907, 0.794414621, 3},  {-0.491143625, 0.850685713, -0.187381315, 3},
    {0.491143625, 0.850685713, 0.187381315, 3},  {0.982287251, 0, -0.187381315, 3},
    {0.491143625, -0.850685713, 0.187381315, 3}, {-0.491143625, -0.850685713, -0.187381315, 3},
    {-0.982287251, 0, 0.187381315, 3},           {0.30368792, -0.526002907, -0.794414621, 3},
    {-0.60737584, 0, -0.794414621, 3},           {0.30368792, 0.526002907, -0.794414621, 3},
};

double elementgain(std::span<const element> table, int number, const direction& d) {
    if (number < 1 || number > static_cast<int>(table.size())) return 1;
    const element& e = table[static_cast<std::size_t>(number - 1)];
    const double cardioid = 0.5 + 0.5 * (d.x * e.x + d.y * e.y + d.z * e.z);
    double gain = cardioid;
    for (int i = 1; i < e.exponent; ++i) gain *= cardioid; // a base just below 0 keeps its sign at power 3
    return gain;
}

double stereogain(int channel, const direction& d) {
    switch (channel) {
    case 1:
        return 0.5 * (1 + 0.707 * d.x + 0.707 * d.y);
    case 2:
        return 0.5 * (1 + 0.707 * d.x - 0.707 * d.y);
    default:
        return 1;
    }
}

double root(double square) {
    return std::sqrt(square);
}

// Real spherical harmonics to the fifth order, in ACN order (number = ACN + 1) and SN3D normalisation,
// without the Condon-Shortley phase (C. Nachbar, F. Zotter, E. Deleflie, A. Sontacchi: ambiX - a suggested
// ambisonics format, 2011). They do not assume that x, y, z is a unit vector.
double harmonic(int number, const direction& d) {
    const double x = d.x, y = d.y, z = d.z;
    const double x2 = x * x, y2 = y * y, z2 = z * z;
    const double x4 = x2 * x2, y4 = y2 * y2, z4 = z2 * z2;
    switch (number) {
    case 2:
        return y;
    case 3:
        return z;
    case 4:
        return x;
    case 5:
        return root(3) * x * y;
    case 6:
        return root(3) * y * z;
    case 7:
        return 0.5 * (3 * z2 - 1);
    case 8:
        return root(3) * x * z;
    case 9:
        return root(0.75) * (x2 - y2);
    case 10:
        return root(0.625) * y * (3 * x2 - y2);
    case 11:
        return root(15) * x * y * z;
    case 12:
        return root(0.375) * y * (5 * z2 - 1);
    case 13:
        return 0.5 * z * (5 * z2 - 3);
    case 14:
        return root(0.375) * x * (5 * z2 - 1);
    case 15:
        return root(3.75) * z * (x2 - y2);
    case 16:
        return root(0.625) * x * (x2 - 3 * y2);
    case 17:
        return root(8.75) * x * y * (x2 - y2);
    case 18:
        return root(4.375) * y * z * (3 * x2 - y2);
    case 19:
        return root(1.25) * x * y * (7 * z2 - 1);
    case 20:
        return root(0.625) * y * z * (7 * z2 - 3);
    case 21:
        return 0.125 * (35 * z4 - 30 * z2 + 3);
    case 22:
        return root(0.625) * x * z * (7 * z2 - 3);
    case 23:
        return root(0.3125) * (x2 - y2) * (7 * z2 - 1);
    case 24:
        return root(4.375) * x * z * (x2 - 3 * y2);
    case 25:
        return root(0.546875) * (x4 - 6 * x2 * y2 + y4);
    case 26:
        return root(0.4921875) * y * (5 * x4 - 10 * x2 * y2 + y4);
    case 27:
        return root(78.75) * x * y * z * (x2 - y2);
    case 28:
        return root(0.2734375) * y * (y4 - 2 * x2 * y2 - 3 * x4 - 8 * y2 * z2 + 24 * x2 * z2);
    case 29:
        return root(26.25) * x * y * z * (2 * z2 - x2 - y2);
    case 30:
        return root(0.234375) * y * (x4 + 2 * x2 * y2 + y4 - 12 * x2 * z2 - 12 * y2 * z2 + 8 * z4);
    case 31:
        return 0.125 * z * (63 * z4 - 70 * z2 + 15);
    case 32:
        return root(0.234375) * x * (x4 + 2 * x2 * y2 + y4 - 12 * x2 * z2 - 12 * y2 * z2 + 8 * z4);
    case 33:
        return root(6.5625) * z * (2 * x2 * z2 - 2 * y2 * z2 - x4 + y4);
    case 34:
        return root(0.2734375) * x * (2 * x2 * y2 + 8 * x2 * z2 - 24 * y2 * z2 - x4 + 3 * y4);
    case 35:
        return root(4.921875) * z * (x4 - 6 * x2 * y2 + y4);
    case 36:
        return root(0.4921875) * x * (x4 - 10 * x2 * y2 + 5 * y4);
    default:
        return 1;
    }
}

double gainof(encoder side, int number, const direction& d) {
    switch (side) {
    case encoder::stereo:
        return stereogain(number, d);
    case encoder::harmonics:
        return harmonic(number, d);
    case encoder::ring8x8:
        return elementgain(ring8x8, number, d);
    case encoder::ring16:
        return elementgain(ring16, number, d);
    case encoder::sphere32:
        return elementgain(sphere32, number, d);
    case encoder::sphere12:
        return elementgain(sphere12, number, d);
    default:
        return 1;
    }
}

const exportformat& formatof(int formatRow) {
    return exportformats.at(static_cast<std::size_t>(formatRow));
}

direction unitvector(double x, double y, double z) {
    const double length = std::sqrt(x * x + y * y + z * z);
    return {quotient(x, length), quotient(y, length), quotient(z, length)};
}

direction receiverplace(std::int32_t receiver) {
    return {static_cast<double>(RoomModel.receiverX(receiver)),
            static_cast<double>(RoomModel.receiverY(receiver)),
            static_cast<double>(RoomModel.receiverZ(receiver))};
}

direction sourceplace(std::int32_t source) {
    return {static_cast<double>(RoomModel.sourceX(source)), static_cast<double>(RoomModel.sourceY(source)),
            static_cast<double>(RoomModel.sourceZ(source))};
}

direction reflectionpoint(const raypath& path, std::int32_t number) {
    const auto point = static_cast<std::size_t>(number);
    return {static_cast<double>(path.x.at(point)), static_cast<double>(path.y.at(point)),
            static_cast<double>(path.z.at(point))};
}

} // namespace

pathdirections directionsof(std::int32_t receiver, std::int32_t ray) {
    const raypath* const found = findpath(receiver, ray);
    if (!found) subscriptfailure("ray", ray, 1, pathsof(receiver));
    const raypath& path = *found;
    const direction from = sourceplace(path.source), to = receiverplace(receiver);
    const bool direct = path.pointCount < 1;
    const direction first = direct ? to : reflectionpoint(path, 1);
    const direction last = direct ? from : reflectionpoint(path, path.pointCount);
    return {unitvector(first.x - from.x, first.y - from.y, first.z - from.z),
            unitvector(last.x - to.x, last.y - to.y, last.z - to.z)};
}

double receivergain(const direction& receiver, int formatRow, int channel) {
    return gainof(formatof(formatRow).receiverside, channel, receiver);
}

double sourcegain(const direction& source, int formatRow, int block) {
    return gainof(formatof(formatRow).sourceside, block, source);
}

double encodegain(double sx, double sy, double sz, double rx, double ry, double rz, int formatRow, int block,
                  int channel) {
    return receivergain({rx, ry, rz}, formatRow, channel) * sourcegain({sx, sy, sz}, formatRow, block);
}

double raygain(int block, int channel, std::int32_t receiver, std::int32_t ray, int formatRow) {
    if (formatRow == 0) return 1;
    const auto [s, r] = directionsof(receiver, ray);
    return encodegain(s.x, s.y, s.z, r.x, r.y, r.z, formatRow, block, channel);
}

} // namespace orv
