// The projection of the 3D view.
#include "scene/camera.h"

#include "samples/hall.h"
#include "shell/sessionstate.h"
#include "verification/session.h"
#include "verification/subjects.h"

#include <cmath>
#include <numbers>

namespace orv::verification {

namespace {

constexpr double allowed = 2e-6; // m of the picture, which is 3.6 m wide; the camera has single precision
constexpr real degree = std::numbers::pi_v<real> / 180;

struct vector {
    real x, y, z;
};
vector operator+(const vector& a, const vector& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
vector operator-(const vector& a, const vector& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
vector operator*(real factor, const vector& a) {
    return {factor * a.x, factor * a.y, factor * a.z};
}
real dot(const vector& a, const vector& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

// A camera by where it stands, where it looks and how far its target is, with its axes by angles.
struct handcamera {
    vector place;
    real azimuth, elevation, distance, focal; // degrees, m, mm
    vector ahead() const {
        return {std::cos(azimuth * degree) * std::cos(elevation * degree),
                std::sin(azimuth * degree) * std::cos(elevation * degree), std::sin(elevation * degree)};
    }
    vector right() const { return {std::sin(azimuth * degree), -std::cos(azimuth * degree), 0}; }
    vector up() const {
        return {-std::cos(azimuth * degree) * std::sin(elevation * degree),
                -std::sin(azimuth * degree) * std::sin(elevation * degree), std::cos(elevation * degree)};
    }
    real enlarged() const { return focal / 10; } // m from the camera to the picture: a hundred times
};

const handcamera cameras[] = {{{-10, -15, 8}, 50, -10, 30, 50},
                              {{45, 3, 10}, 184, -12, 24, 35},
                              {{18, -40, 6}, 90, 0, 40, 100},
                              {{-30, 25, 30}, -35, -40, 50, 200}};

void setcamera(const handcamera& camera) {
    sessionstate& s = SessionState;
    const vector target = camera.place + camera.distance * camera.ahead();
    s.cameraX = static_cast<float>(camera.place.x);
    s.cameraY = static_cast<float>(camera.place.y);
    s.cameraZ = static_cast<float>(camera.place.z);
    s.targetX = static_cast<float>(target.x);
    s.targetY = static_cast<float>(target.y);
    s.targetZ = static_cast<float>(target.z);
    s.focalLength = static_cast<float>(camera.focal / 1000);
    setupcamera();
}

picturepoint projected(const vector& point) {
    return projectpoint(
        {static_cast<double>(point.x), static_cast<double>(point.y), static_cast<double>(point.z)});
}

std::vector<vector> hallcorners() {
    std::vector<vector> corners;
    for (const samples::hallface& face : samples::hallfaces())
        for (const samples::point& corner : face.corners) corners.push_back({corner.x, corner.y, corner.z});
    return corners;
}

table halls() {
    table found{"The corners of the sample hall",
                "From four places, with lenses of 50, 35, 100 and 200 mm; corners at least 1 m in front of "
                "the camera. The way back goes from the picture's coordinates and the depth to the point."};
    for (const handcamera& camera : cameras) {
        setcamera(camera);
        for (const vector& corner : hallcorners()) {
            const vector way = corner - camera.place;
            const real depth = dot(way, camera.ahead());
            if (depth < 1) continue;
            const real across = camera.enlarged() * dot(way, camera.right()) / depth;
            const real upwards = camera.enlarged() * dot(way, camera.up()) / depth;
            const picturepoint at = projected(corner);
            // Far off the frame the same error of an angle is a larger one of the place.
            const real widening =
                1 + (across * across + upwards * upwards) / (camera.enlarged() * camera.enlarged());
            const auto share = [widening](real value) { return static_cast<double>(value / widening); };
            compare(found, "To the right, m", 2 * allowed, share(across), share(at.x));
            compare(found, "Upwards, m", 2 * allowed, share(upwards), share(at.y));
            const vector back =
                camera.place + (depth / camera.enlarged()) * (camera.enlarged() * camera.ahead() +
                                                              at.x * camera.right() + at.y * camera.up());
            const vector error = back - corner;
            compare(found, "The way back: distance from the point, m", 2e-5, 0,
                    static_cast<double>(std::sqrt(dot(error, error)) / widening));
        }
    }
    return found;
}

// What a lens of so many mm sees of a frame of 36 x 24 mm.
table frames() {
    table found{"The edge of the frame",
                "A frame of 36 x 24 mm a hundred times enlarged: what a lens sees at half its angle of view, "
                "atan(18 mm / f) and atan(12 mm / f), lies 1.8 m and 1.2 m off the middle.",
                {"24 mm", "50 mm", "100 mm", "400 mm"}};
    const real lenses[] = {24, 50, 100, 400};
    for (std::size_t i = 0; i < std::size(lenses); ++i) {
        const handcamera camera{{2, 3, 4}, 30, -20, 60, lenses[i]};
        setcamera(camera);
        const real depth = 25;
        const vector middle = camera.place + depth * camera.ahead();
        const real halfwidth = depth * 18 / lenses[i], halfheight = depth * 12 / lenses[i];
        const auto add = [&](std::string_view quantity, double expected, double computed) {
            compare(found, quantity, allowed, expected, computed, i);
        };
        add("Right edge, m", 1.8, projected(middle + halfwidth * camera.right()).x);
        add("Left edge, m", -1.8, projected(middle - halfwidth * camera.right()).x);
        add("Upper edge, m", 1.2, projected(middle + halfheight * camera.up()).y);
        add("The target, m", 0, projected(camera.place + camera.distance * camera.ahead()).x);
    }
    return found;
}

} // namespace

subject verifycamera() {
    subject found{"camera", "Camera",
                  "A pinhole camera by angles: its axes by sines and cosines of azimuth and elevation, a "
                  "point at the depth d seen f / d times its distance from the axis, in extended precision. "
                  "The program holds its camera in single precision."};
    const session here;
    found.tables.push_back(halls());
    found.tables.push_back(frames());
    return found;
}

} // namespace orv::verification
