// The sample hall: its faces and materials, its image sources and its diffuse tail.
#include "samples/hall.h"

#include "base/numbertext.h"
#include "samples/random.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orv::samples {

namespace {

constexpr double hallLength = 36; // x
constexpr double hallWidth = 20;  // y, centred on 0
constexpr double hallHeight = 12; // z

constexpr double celsius = 20;
constexpr double humidityPercent = 50;

// Scattered sound cannot be there before the first reflections are; tied to the direct sound so that the
// slot of the direct sound holds nothing else.
constexpr double tailGap = 0.005; // s

// Tail energies below this are written as 0: 60 dB below the threshold of hearing.
constexpr double tailFloor = 1e-6;

// A slot of the tail varies by up to this share of itself, as counts of rays do.
constexpr double tailRipple = 0.25;

// From the direct sound, s: the end of early sound, and where the lateral rows begin.
constexpr double earlyLimit = 0.08;
constexpr double lateralLimit = 0.005;
constexpr double efficiencyLimit = 0.025;

// Means over all directions of cosine squared and of |cosine|, which the tail brings to the lateral rows.
constexpr double diffuseSquare = 1.0 / 3;
constexpr double diffuseCosine = 0.5;

// Rows of the material table that the hall uses.
enum : int {
    limePlaster = 12,
    cofferedCeiling = 15,
    boards = 17,
    cavityPanelling = 19,
    bondedPanelling = 20,
    diffusingPanelling = 21,
    openSlats = 23,
    parquet = 25,
    joistFloor = 26,
    stageFloor = 27,
    solidDoor = 28,
    doubleGlazing = 39,
    emptySeats = 54,
    grille = 59
};

const std::vector<hallmaterial> materials = {
    {limePlaster,
     "Lime cement plaster on masonry",
     {0.016, 0.018, 0.02, 0.02, 0.03, 0.03, 0.04, 0.05, 0.055, 0.06},
     {0.02, 0.02, 0.02, 0.03, 0.04, 0.05, 0.06, 0.06, 0.07, 0.07}},
    {cofferedCeiling,
     "Plaster ceiling coffered and decorated",
     {0.098, 0.126, 0.14, 0.1, 0.07, 0.06, 0.06, 0.06, 0.06, 0.06},
     {0.05, 0.08, 0.12, 0.2, 0.32, 0.45, 0.55, 0.6, 0.62, 0.62}},
    {boards,
     "Gypsum board 2 x 13 mm on studs",
     {0.105, 0.135, 0.15, 0.1, 0.06, 0.04, 0.04, 0.05, 0.05, 0.05},
     {0.02, 0.02, 0.02, 0.03, 0.04, 0.05, 0.06, 0.06, 0.07, 0.07}},
    {cavityPanelling,
     "Wood panelling 10 mm over 50 mm cavity",
     {0.196, 0.252, 0.28, 0.22, 0.17, 0.09, 0.1, 0.11, 0.11, 0.11},
     {0.02, 0.02, 0.02, 0.03, 0.04, 0.05, 0.06, 0.06, 0.07, 0.07}},
    {bondedPanelling,
     "Wood panelling 25 mm bonded to masonry",
     {0.032, 0.036, 0.04, 0.04, 0.05, 0.05, 0.06, 0.06, 0.066, 0.072},
     {0.02, 0.02, 0.02, 0.03, 0.04, 0.05, 0.06, 0.06, 0.07, 0.07}},
    {diffusingPanelling,
     "Wood panelling profiled for diffusion",
     {0.105, 0.135, 0.15, 0.12, 0.1, 0.08, 0.08, 0.08, 0.08, 0.08},
     {0.05, 0.08, 0.12, 0.2, 0.32, 0.45, 0.55, 0.6, 0.62, 0.62}},
    {openSlats,
     "Wood slats open over mineral wool",
     {0.105, 0.18, 0.3, 0.6, 0.85, 0.8, 0.7, 0.6, 0.582, 0.57},
     {0.03, 0.04, 0.05, 0.07, 0.1, 0.14, 0.2, 0.25, 0.3, 0.3}},
    {parquet,
     "Wood parquet on concrete",
     {0.032, 0.036, 0.04, 0.04, 0.07, 0.06, 0.06, 0.07, 0.077, 0.084},
     {0.02, 0.02, 0.02, 0.03, 0.04, 0.05, 0.06, 0.06, 0.07, 0.07}},
    {joistFloor,
     "Wood floor on joists",
     {0.105, 0.135, 0.15, 0.11, 0.1, 0.07, 0.06, 0.07, 0.07, 0.07},
     {0.02, 0.02, 0.02, 0.03, 0.04, 0.05, 0.06, 0.06, 0.07, 0.07}},
    {stageFloor,
     "Stage floor wood over deep cavity",
     {0.28, 0.36, 0.4, 0.3, 0.2, 0.17, 0.15, 0.1, 0.1, 0.1},
     {0.02, 0.02, 0.02, 0.03, 0.04, 0.05, 0.06, 0.06, 0.07, 0.07}},
    {solidDoor,
     "Door solid wood",
     {0.098, 0.126, 0.14, 0.1, 0.06, 0.08, 0.08, 0.08, 0.08, 0.08},
     {0.02, 0.02, 0.02, 0.03, 0.04, 0.05, 0.06, 0.06, 0.07, 0.07}},
    {doubleGlazing,
     "Double glazing 30 mm gap",
     {0.105, 0.135, 0.15, 0.05, 0.03, 0.03, 0.02, 0.02, 0.02, 0.02},
     {0.02, 0.02, 0.02, 0.03, 0.04, 0.05, 0.06, 0.06, 0.07, 0.07}},
    {emptySeats,
     "Seats empty heavily upholstered",
     {0.432, 0.576, 0.72, 0.79, 0.83, 0.84, 0.83, 0.79, 0.758, 0.727},
     {0.1, 0.18, 0.3, 0.42, 0.52, 0.6, 0.66, 0.7, 0.7, 0.7}},
    {grille,
     "Ventilation grille half open",
     {0.28, 0.34, 0.4, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5},
     {0.03, 0.04, 0.05, 0.07, 0.1, 0.14, 0.2, 0.25, 0.3, 0.3}},
};

const std::array<double, bandCount> sourcePowerLevels = {98, 107, 113, 116, 118, 119, 118, 116, 113, 108};

const std::vector<point> sourcePoints = {{5, .4, 2.5}, {2.8, -5.2, 2.5}};

const hallmaterial& materialof(int row) {
    return *std::find_if(materials.begin(), materials.end(),
                         [row](const hallmaterial& material) { return material.row == row; });
}

// A rectangle of a side of the box, along the side's own directions: y and z of the sides at low and high x,
// x and z of those at low and high y, x and y of floor and ceiling.
struct sidespan {
    double low1, high1, low2, high2;
};

std::vector<point> sidecorners(int side, const sidespan& span) {
    const double u[] = {span.low1, span.high1, span.high1, span.low1};
    const double v[] = {span.low2, span.low2, span.high2, span.high2};
    std::vector<point> corners;
    for (int i = 0; i < 4; ++i) {
        if (side < 2)
            corners.push_back({side == 0 ? 0 : hallLength, u[i], v[i]});
        else if (side < 4)
            corners.push_back({u[i], side == 2 ? -hallWidth / 2 : hallWidth / 2, v[i]});
        else
            corners.push_back({u[i], v[i], side == 4 ? 0 : hallHeight});
    }
    return corners;
}

hallface sideface(int side, int wall, int material, const sidespan& span) {
    return {side, wall, material, sidecorners(side, span), {}};
}

void adddoor(hallface& face, int material, const sidespan& span) {
    face.openings.push_back({true, material, sidecorners(face.side, span)});
}

void addhole(hallface& face, int material, const sidespan& span) {
    face.openings.push_back({false, material, sidecorners(face.side, span)});
}

hallface drawnface(int wall, int material, std::vector<point> corners) {
    return {-1, wall, material, std::move(corners), {}};
}

hallface reflector(double x, double y, double z, double radius, double tilt) {
    hallface face = drawnface(0, diffusingPanelling, {});
    for (int i = 0; i < 8; ++i) {
        // Positions to the millimetre, as drawings have them.
        const double angle = (i + 0.5) * std::numbers::pi / 4;
        const double along = std::round(radius * std::cos(angle) * 1000) / 1000;
        const double across = std::round(radius * std::sin(angle) * 1000) / 1000;
        face.corners.push_back({x + along, y + across, z + std::round(along * tilt * 1000) / 1000});
    }
    return face;
}

void addfloor(std::vector<hallface>& faces, int wall) {
    faces.push_back(sideface(4, wall, stageFloor, {0, 8, -10, 10}));
    faces.push_back(sideface(4, wall, parquet, {8, 9.5, -10, 10}));
    faces.push_back(sideface(4, wall, emptySeats, {9.5, 33, -9.5, -.75}));
    faces.push_back(sideface(4, wall, emptySeats, {9.5, 33, .75, 9.5}));
    faces.push_back(sideface(4, wall, parquet, {9.5, 33, -.75, .75}));
    faces.push_back(sideface(4, wall, parquet, {9.5, 33, -10, -9.5}));
    faces.push_back(sideface(4, wall, parquet, {9.5, 33, 9.5, 10}));
    faces.push_back(sideface(4, wall, parquet, {33, 36, -10, 10}));
}

void addceiling(std::vector<hallface>& faces, int wall) {
    faces.push_back(sideface(5, wall, diffusingPanelling, {0, 9, -10, 10}));
    faces.push_back(sideface(5, wall, cofferedCeiling, {9, 36, -10, 10}));
    addhole(faces.back(), grille, {14, 16, -.5, .5});
    addhole(faces.back(), grille, {21, 23, -.5, .5});
    addhole(faces.back(), grille, {28, 30, -.5, .5});
}

void addplatformwall(std::vector<hallface>& faces, int wall) {
    faces.push_back(sideface(0, wall, cavityPanelling, {-10, 10, 0, 5}));
    adddoor(faces.back(), solidDoor, {-8.5, -7.1, 1, 3.2});
    adddoor(faces.back(), solidDoor, {7.1, 8.5, 1, 3.2});
    faces.push_back(sideface(0, wall, diffusingPanelling, {-10, 10, 5, 12}));
}

void addrearwall(std::vector<hallface>& faces, int wall) {
    faces.push_back(sideface(1, wall, cavityPanelling, {-10, 10, 0, 4.5}));
    adddoor(faces.back(), solidDoor, {-6, -4.2, 0, 2.3});
    adddoor(faces.back(), solidDoor, {4.2, 6, 0, 2.3});
    faces.push_back(sideface(1, wall, openSlats, {-10, 10, 4.5, 12}));
    addhole(faces.back(), doubleGlazing, {-2, 2, 8.8, 10.2});
}

void addsidewall(std::vector<hallface>& faces, int wall, int side) {
    faces.push_back(sideface(side, wall, bondedPanelling, {0, 36, 0, 5}));
    adddoor(faces.back(), solidDoor, {8.2, 9.4, 0, 2.2});
    faces.push_back(sideface(side, wall, boards, {0, 36, 5, 12}));
    for (const double x : {10., 16., 22., 28.}) addhole(faces.back(), doubleGlazing, {x, x + 1.6, 7.4, 10.6});
}

// With three steps to the hall.
void addplatform(std::vector<hallface>& faces, int wall) {
    faces.push_back(drawnface(wall, joistFloor, {{0, -10, 1}, {8, -10, 1}, {8, 10, 1}, {0, 10, 1}}));
    faces.push_back(drawnface(wall, bondedPanelling, {{8, -10, 0}, {8, 10, 0}, {8, 10, 1}, {8, -10, 1}}));
    for (int step = 0; step < 3; ++step) {
        const double x = 8.9 - .3 * step;
        const double z = .25 * (step + 1);
        faces.push_back(drawnface(wall, joistFloor, {{x, 6, z}, {x, 8, z}, {x - .3, 8, z}, {x - .3, 6, z}}));
    }
}

// With its fronts, on the side of this sign of y.
void addsidebalcony(std::vector<hallface>& faces, int wall, double sign) {
    const double back = 10 * sign;
    const double front = 8.5 * sign;
    faces.push_back(
        drawnface(wall, joistFloor, {{9, back, 5}, {30, back, 5}, {30, front, 5}, {9, front, 5}}));
    faces.push_back(
        drawnface(wall, bondedPanelling, {{9, front, 5}, {30, front, 5}, {30, front, 6}, {9, front, 6}}));
    faces.push_back(
        drawnface(wall, bondedPanelling, {{9, back, 5}, {9, front, 5}, {9, front, 6}, {9, back, 6}}));
}

// Raked seats, soffit, front.
void addrearbalcony(std::vector<hallface>& faces, int wall) {
    faces.push_back(drawnface(wall, emptySeats, {{30, -10, 4.6}, {36, -10, 7}, {36, 10, 7}, {30, 10, 4.6}}));
    faces.push_back(
        drawnface(wall, limePlaster, {{30, -10, 4.2}, {36, -10, 4.5}, {36, 10, 4.5}, {30, 10, 4.2}}));
    faces.push_back(
        drawnface(wall, bondedPanelling, {{30, -10, 4.2}, {30, 10, 4.2}, {30, 10, 5.5}, {30, -10, 5.5}}));
}

std::vector<hallface> makefaces() {
    std::vector<hallface> faces;
    int wall = 0;
    addfloor(faces, ++wall);
    addceiling(faces, ++wall);
    addplatformwall(faces, ++wall);
    addrearwall(faces, ++wall);
    for (const int side : {2, 3}) addsidewall(faces, ++wall, side);
    addplatform(faces, ++wall);
    for (const double sign : {-1., 1.}) addsidebalcony(faces, ++wall, sign);
    addrearbalcony(faces, ++wall);
    for (const double y : {-6., 0., 6.}) { // reflectors above the platform, in no wall
        faces.push_back(reflector(3, y, 9, 1.6, .15));
        faces.push_back(reflector(6.8, y, 9.6, 1.6, .15));
    }
    return faces;
}

std::vector<point> makereceivers() {
    std::vector<point> receivers;
    // Five rows in the stalls, shifted from row to row so that no two distances are alike, and one on the
    // rear balcony.
    for (int row = 0; row < 5; ++row)
        for (const double y : {-8., -4.6, -1.4, 2.7, 6.3})
            receivers.push_back({11 + 4. * row, y + .2 * row, 1.2});
    for (const double y : {-8.2, -4.1, .6, 4., 7.4}) receivers.push_back({32.5, y, 6.8});
    return receivers;
}

// Area of a plane polygon: half the length of the sum of the cross products of its fan.
double polygonarea(const std::vector<point>& corners) {
    point sum;
    for (std::size_t i = 1; i + 1 < corners.size(); ++i) {
        const point a{corners[i].x - corners[0].x, corners[i].y - corners[0].y, corners[i].z - corners[0].z};
        const point b{corners[i + 1].x - corners[0].x, corners[i + 1].y - corners[0].y,
                      corners[i + 1].z - corners[0].z};
        sum.x += a.y * b.z - a.z * b.y;
        sum.y += a.z * b.x - a.x * b.z;
        sum.z += a.x * b.y - a.y * b.x;
    }
    return std::sqrt(sum.x * sum.x + sum.y * sum.y + sum.z * sum.z) / 2;
}

// Area of each side of the box, and its absorption and scattering by area.
struct sidefigures {
    double area = 0;
    std::array<double, bandCount> absorption{};
    std::array<double, bandCount> scattering{};
};

std::array<sidefigures, hallSides> makesides() {
    std::array<sidefigures, hallSides> sides;
    const auto add = [&sides](int side, int row, double area) {
        sidefigures& figures = sides[static_cast<std::size_t>(side)];
        const hallmaterial& material = materialof(row);
        figures.area += area;
        for (std::size_t band = 0; band < bandCount; ++band) {
            figures.absorption[band] += area * material.absorption[band];
            figures.scattering[band] += area * material.scattering[band];
        }
    };
    for (const hallface& face : hallfaces()) {
        if (face.side < 0) continue;
        double area = polygonarea(face.corners);
        for (const hallopening& opening : face.openings) {
            const double open = polygonarea(opening.corners);
            area -= open;
            add(face.side, opening.material, open);
        }
        add(face.side, face.material, area);
    }
    for (sidefigures& figures : sides)
        for (std::size_t band = 0; band < bandCount; ++band) {
            figures.absorption[band] /= figures.area;
            figures.scattering[band] /= figures.area;
        }
    return sides;
}

const std::array<sidefigures, hallSides>& sides() {
    static const std::array<sidefigures, hallSides> figures = makesides();
    return figures;
}

double surfacearea() {
    double area = 0;
    for (const sidefigures& side : sides()) area += side.area;
    return area;
}

// Figures of the whole box by band, worked out once: absorption and scattering by area, and the air.
struct boxfigures {
    std::array<double, bandCount> absorption{};
    std::array<double, bandCount> scattering{};
    std::array<double, bandCount> air{};
};

boxfigures makebox() {
    boxfigures box;
    for (std::size_t band = 0; band < bandCount; ++band) {
        for (const sidefigures& side : sides()) {
            box.absorption[band] += side.area * side.absorption[band] / surfacearea();
            box.scattering[band] += side.area * side.scattering[band] / surfacearea();
        }
        box.air[band] = airabsorption(static_cast<int>(band));
    }
    return box;
}

const boxfigures& box() {
    static const boxfigures figures = makebox();
    return figures;
}

// The face of a side that a point of it lies on. All faces of the sides are upright rectangles, so that
// their extents decide; points on a common edge belong to the first.
int faceat(int side, const point& at) {
    constexpr double slack = 1e-9;
    const std::vector<hallface>& faces = hallfaces();
    for (std::size_t i = 0; i < faces.size(); ++i) {
        if (faces[i].side != side) continue;
        const point& low = faces[i].corners[0];
        const point& high = faces[i].corners[2];
        if (at.x >= low.x - slack && at.x <= high.x + slack && at.y >= low.y - slack &&
            at.y <= high.y + slack && at.z >= low.z - slack && at.z <= high.z + slack)
            return static_cast<int>(i) + 1;
    }
    return 0;
}

// A coordinate of the unfolded row of mirrored rooms, brought back into the room 0..extent.
double fold(double unfolded, double extent) {
    double rest = std::fmod(unfolded, 2 * extent);
    if (rest < 0) rest += 2 * extent;
    return rest > extent ? 2 * extent - rest : rest;
}

// The mirror image of a coordinate in room number `cell` of the unfolded row.
double unfold(double inside, double extent, int cell) {
    return cell * extent + (cell % 2 == 0 ? inside : extent - inside);
}

constexpr std::array<double, 3> extents = {hallLength, hallWidth, hallHeight};

// The way from a source to the receiver's image in one mirrored room: a straight line there, which folds into
// the reflected path here. Axes as in `extents`, each from the low side of the room.
struct straightway {
    std::array<int, 3> cell; // of the mirrored room; 0, 0, 0 is the room itself
    std::array<double, 3> start{}, line{};
    double square = 0, distance = 0; // the line's length squared, and itself, m
};

straightway wayto(const point& from, const point& to, const std::array<int, 3>& cell) {
    straightway way{cell};
    way.start = {from.x, from.y + hallWidth / 2, from.z};
    const std::array<double, 3> end = {to.x, to.y + hallWidth / 2, to.z};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        way.line[axis] = unfold(end[axis], extents[axis], cell[axis]) - way.start[axis];
        way.square += way.line[axis] * way.line[axis];
    }
    way.distance = std::sqrt(way.square);
    return way;
}

struct crossing {
    double share; // of the way
    int side;
};

// The sides that the way passes through, in order.
std::vector<crossing> crossingsof(const straightway& way) {
    std::vector<crossing> crossings;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        // Plane n of the unfolded row is the low side of the room for even n, the high one for odd n.
        const int first = way.cell[axis] > 0 ? 1 : way.cell[axis] + 1;
        const int last = way.cell[axis] > 0 ? way.cell[axis] : 0;
        for (int plane = first; plane <= last; ++plane)
            crossings.push_back({(plane * extents[axis] - way.start[axis]) / way.line[axis],
                                 static_cast<int>(axis) * 2 + (plane % 2 == 0 ? 0 : 1)});
    }
    std::sort(crossings.begin(), crossings.end(),
              [](const crossing& a, const crossing& b) { return a.share < b.share; });
    return crossings;
}

point reflectionpoint(const straightway& way, const crossing& hit) {
    std::array<double, 3> at{};
    for (std::size_t axis = 0; axis < 3; ++axis)
        at[axis] = fold(way.start[axis] + hit.share * way.line[axis], extents[axis]);
    // On the side exactly, whatever the folding has rounded.
    const auto across = static_cast<std::size_t>(hit.side / 2);
    at[across] = hit.side % 2 == 0 ? 0 : extents[across];
    return {at[0], at[1] - hallWidth / 2, at[2]};
}

// |cosine| between the arrival and the line through the ears of a listener at `to`, which is level and square
// to the way to the source.
double lateralof(const straightway& way, const point& from, const point& to) {
    const double awayX = from.x - to.x;
    const double awayY = from.y - to.y;
    const double away = std::hypot(awayX, awayY);
    // A mirrored room turns the direction of arrival over along its axis.
    const double arriveX = (way.cell[0] % 2 == 0 ? way.line[0] : -way.line[0]) / way.distance;
    const double arriveY = (way.cell[1] % 2 == 0 ? way.line[1] : -way.line[1]) / way.distance;
    return std::fabs(arriveY * awayX - arriveX * awayY) / away;
}

hallpath makepath(int receiver, int source, const std::array<int, 3>& cell) {
    const point& from = hallsources()[static_cast<std::size_t>(source - 1)];
    const point& to = hallreceivers()[static_cast<std::size_t>(receiver - 1)];
    const straightway way = wayto(from, to, cell);
    hallpath path;
    path.source = source;
    path.time = seven(way.distance / hallsoundspeed());
    for (std::size_t band = 0; band < bandCount; ++band)
        path.energy[band] = std::pow(10, sourcePowerLevels[band] / 10) / (4 * std::numbers::pi * way.square) *
                            std::exp(-box().air[band] * way.distance);
    for (const crossing& hit : crossingsof(way)) {
        const sidefigures& side = sides()[static_cast<std::size_t>(hit.side)];
        for (std::size_t band = 0; band < bandCount; ++band)
            path.energy[band] *= (1 - side.absorption[band]) * (1 - side.scattering[band]);
        path.points.push_back(reflectionpoint(way, hit));
        path.faces.push_back(faceat(hit.side, path.points.back()));
    }
    path.lateral = lateralof(way, from, to);
    return path;
}

// --- A response ---

// A response while sounds are added to it.
struct summing {
    double step = 0; // s
    hallresponse sum;
};

// What a sound brings to the lateral rows: cosine squared and |cosine| of its arrival.
struct lateralweights {
    double square, cosine;
};

// Adds to a slot and, while it counts as early, to the sums of the lateral rows. Its time for that is the one
// from the slot of the direct sound.
void addenergy(summing& work, int slot, std::size_t band, double energy, const lateralweights& weights) {
    hallresponse& response = work.sum;
    response.energy[static_cast<std::size_t>(slot) * bandCount + band] += energy;
    const double time = work.step * (slot - response.firstSlot);
    if (time >= earlyLimit) return;
    response.early[band] += energy;
    if (time < lateralLimit) return;
    response.lateral5[band] += energy * weights.square;
    response.cosine5[band] += energy * weights.cosine;
    if (time >= efficiencyLimit) response.lateral25[band] += energy * weights.square;
}

void addimages(summing& work, const std::vector<hallpath>& paths) {
    for (const hallpath& path : paths) {
        const int slot = static_cast<int>(path.time / work.step);
        if (slot >= work.sum.slotCount) continue;
        for (std::size_t band = 0; band < bandCount; ++band) {
            work.sum.imageEnergy[static_cast<std::size_t>(slot) * bandCount + band] += path.energy[band];
            addenergy(work, slot, band, path.energy[band], {path.lateral * path.lateral, path.lateral});
        }
    }
}

// The diffuse tail of a source, by the path of its direct sound.
void addtail(summing& work, const halloptions& options, int receiver, const hallpath& direct) {
    std::array<double, bandCount> density{};
    std::array<double, bandCount> rate{};
    for (std::size_t band = 0; band < bandCount; ++band) {
        // A source of power W fills the volume with W c / V per second of its sound, and that decays.
        density[band] = std::pow(10, sourcePowerLevels[band] / 10) * hallsoundspeed() / hallvolume();
        rate[band] = 6 * std::numbers::ln10 / halldecaytime(static_cast<int>(band));
    }
    randomstate random =
        branch(options.seed, static_cast<std::uint64_t>(receiver), static_cast<std::uint64_t>(direct.source));
    const double begin = direct.time + tailGap;
    for (int slot = static_cast<int>(begin / work.step); slot < work.sum.slotCount; ++slot) {
        const double from = std::max(begin, slot * work.step);
        const double length = (slot + 1) * work.step - from;
        const double middle = from + length / 2;
        for (std::size_t band = 0; band < bandCount; ++band) {
            const double ripple = 1 + tailRipple * (2 * nextuniform(random) - 1);
            const double share = tailshare(static_cast<int>(band), middle, options.order);
            const double energy = density[band] * length * std::exp(-rate[band] * middle) * share * ripple;
            if (energy >= tailFloor) addenergy(work, slot, band, energy, {diffuseSquare, diffuseCosine});
        }
    }
}

} // namespace

const std::vector<hallmaterial>& hallmaterials() {
    return materials;
}

const std::vector<hallface>& hallfaces() {
    static const std::vector<hallface> faces = makefaces();
    return faces;
}

const std::vector<point>& hallsources() {
    return sourcePoints;
}

const std::vector<point>& hallreceivers() {
    static const std::vector<point> receivers = makereceivers();
    return receivers;
}

const std::array<double, bandCount>& hallsourcepower() {
    return sourcePowerLevels;
}

point halllisteneraim() {
    return {4, 0, 2.5};
}

point hallsourceaim() {
    return {20, 0, 1.2};
}

double hallvolume() {
    return hallLength * hallWidth * hallHeight;
}

double hallmeanfreepath() {
    return 4 * hallvolume() / surfacearea();
}

double hallsoundspeed() {
    return 343.2;
}

double airabsorption(int band) {
    // ISO 9613-1: equations 3 to 5 and annex B, at one atmosphere.
    constexpr double reference = 293.15;
    constexpr double triple = 273.16;
    const double kelvin = celsius + 273.15;
    const double ratio = kelvin / reference;
    const double saturation = std::pow(10, -6.8346 * std::pow(triple / kelvin, 1.261) + 4.6151);
    const double vapour = humidityPercent * saturation; // molar concentration, percent
    const double oxygen = 24 + 4.04e4 * vapour * (0.02 + vapour) / (0.391 + vapour);
    const double nitrogen =
        std::pow(ratio, -0.5) * (9 + 280 * vapour * std::exp(-4.170 * (std::pow(ratio, -1. / 3) - 1)));
    const double frequency = 1000 * std::pow(10, 0.3 * (band - 5));
    const double square = frequency * frequency;
    const double decibels =
        8.686 * square *
        (1.84e-11 * std::sqrt(ratio) +
         std::pow(ratio, -2.5) * (0.01275 * std::exp(-2239.1 / kelvin) / (oxygen + square / oxygen) +
                                  0.1068 * std::exp(-3352.0 / kelvin) / (nitrogen + square / nitrogen)));
    return decibels * std::numbers::ln10 / 10; // dB per metre to energy per metre
}

double sideabsorption(int side, int band) {
    return sides()[static_cast<std::size_t>(side)].absorption[static_cast<std::size_t>(band)];
}

double halldecaytime(int band) {
    // Eyring: per mean free path the share 1 - absorption is left.
    const auto at = static_cast<std::size_t>(band);
    const double perMetre = -std::log(1 - box().absorption[at]) / hallmeanfreepath() + box().air[at];
    return 6 * std::numbers::ln10 / (hallsoundspeed() * perMetre);
}

double tailshare(int band, double time, int order) {
    const double kept = 1 - box().scattering[static_cast<std::size_t>(band)];
    const double reflections = hallsoundspeed() * time / hallmeanfreepath();
    double term = std::exp(-reflections); // chance of n reflections, none of them scattering
    double mirrored = term;
    for (int n = 1; n <= order; ++n) {
        term *= reflections / n * kept;
        mirrored += term;
    }
    return std::max(0., 1 - mirrored);
}

std::vector<hallpath> hallpaths(int receiver, int source, int order) {
    std::vector<hallpath> paths;
    for (int i = -order; i <= order; ++i)
        for (int j = -order; j <= order; ++j)
            for (int k = -order; k <= order; ++k)
                if (std::abs(i) + std::abs(j) + std::abs(k) <= order)
                    paths.push_back(makepath(receiver, source, {i, j, k}));
    std::stable_sort(paths.begin(), paths.end(),
                     [](const hallpath& a, const hallpath& b) { return a.time < b.time; });
    return paths;
}

hallresponse respond(const halloptions& options, int receiver, sourcelist sources) {
    summing work{static_cast<double>(static_cast<float>(options.timeStep)), {}};
    hallresponse& response = work.sum;
    response.slotCount = highestslot(options) + 1;
    response.energy.assign(static_cast<std::size_t>(response.slotCount) * bandCount, 0.0);
    response.imageEnergy = response.energy;
    std::vector<std::vector<hallpath>> paths; // of each source
    for (const int source : sources) {
        paths.push_back(hallpaths(receiver, source, options.order));
        const double delay = paths.back().front().time;
        response.delay = paths.size() == 1 ? delay : std::min(response.delay, delay);
    }
    response.firstSlot = static_cast<int>(response.delay / work.step);
    for (const std::vector<hallpath>& fromone : paths) {
        addimages(work, fromone);
        addtail(work, options, receiver, fromone.front());
    }
    return response;
}

double seven(double value) {
    return lenientnumber(numbertext(value));
}

int highestslot(const halloptions& options) {
    const double step = static_cast<double>(static_cast<float>(options.timeStep));
    return static_cast<int>(std::floor(options.responseLength / step + 0.5));
}

double criticaltime(const halloptions& options, double meanFreePath, double soundSpeed) {
    const double beta = static_cast<double>(static_cast<float>(options.beta));
    if (beta <= 0) return 1e9;
    const double speed = static_cast<double>(static_cast<float>(soundSpeed));
    const double time = meanFreePath / 4 / speed * std::sqrt(options.pyramidCount / beta);
    return static_cast<double>(static_cast<float>(time));
}

double latefactor(double criticalTime, double time, double alfa) {
    if (time <= 0) return 1;
    const double exponent = static_cast<double>(static_cast<float>(alfa));
    return 1 - std::exp(-std::pow(criticalTime / time, exponent));
}

} // namespace orv::samples
