// The rules behind the dialog "Mapping Options".
#include "maps/mappingoptions.h"

#include "base/arithmetic.h"
#include "base/formatpattern.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "maps/blanking.h"
#include "maps/mapfield.h"
#include "maps/rgbsettings.h"
#include "platform/platform.h"
#include "shell/filejob.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <cstdint>

namespace orv {

namespace {

constexpr std::int32_t mostdivisions = 500;
constexpr std::string_view levelpattern = "####.0", wholepattern = "####", incrementpattern = "###.0##";

// A number field: its setting, of one kind or the other, how it is written, and the step of its spin button.
struct numberfield {
    std::string_view control;
    float sessionstate::*value;
    std::int32_t sessionstate::*divisions;
    std::string_view pattern;
    double step;
};
constexpr numberfield numberfields[] = {
    {"MinL", &sessionstate::minLevel, nullptr, levelpattern, 5},
    {"MaxL", &sessionstate::maxLevel, nullptr, levelpattern, 5},
    {"Nx", nullptr, &sessionstate::Nx, wholepattern, 5},
    {"Ny", nullptr, &sessionstate::Ny, wholepattern, 5},
    {"MaxR", &sessionstate::maxRadius, nullptr, wholepattern, 1},
    {"Zvalue", &sessionstate::mapThirdCoordinate, nullptr, levelpattern, 0.1},
};

struct planecaptions {
    std::string_view third, mirror, axis;
};
constexpr planecaptions captions[] = {{"XY map at Z (m):", "Mirror about X axis", "X-axis"},
                                      // The question names another axis than the box; kept on purpose.
                                      {"YZ map at X (m):", "Mirror about Z axis", "Y-axis"},
                                      {"XZ map at Y (m):", "Mirror about Z axis", "Y-axis"}};

const numberfield& fieldof(std::string_view control) {
    for (const numberfield& field : numberfields)
        if (field.control == control) return field;
    throw runtimeerror{errorkind::subscript, "No number field is named \"" + std::string(control) + "\"."};
}

const planecaptions& presentcaptions() {
    return captions[static_cast<std::size_t>(SessionState.viewPlane)];
}

bool islevel(const numberfield& field) {
    return field.control == "MinL" || field.control == "MaxL";
}

bool isradius(const numberfield& field) {
    return field.control == "MaxR";
}

void forgetgrid() {
    SessionState.gridReady = SessionState.contourReady = 0;
}

void updateincrement() {
    sessionstate& s = SessionState;
    s.levelStep = single(levelstepfor(static_cast<double>(s.maxLevel) - static_cast<double>(s.minLevel)));
}

// Returns what the field then shows.
std::string storedivisions(std::int32_t& divisions, double value, const std::string& text) {
    const bool toomany = value > mostdivisions;
    const std::int32_t whole = toomany ? mostdivisions : whole32(value);
    if (whole <= 0) return text;
    divisions = whole;
    forgetgrid();
    return toomany ? trimmedwhole(whole) : text;
}

void storelevel(float& level, double value) {
    level = single(value);
    SessionState.contourReady = 0;
    updateincrement();
}

std::string storefield(const numberfield& field, const std::string& text) {
    const double value = lenientnumber(text);
    if (field.divisions) return storedivisions(SessionState.*field.divisions, value, text);
    float& setting = SessionState.*field.value;
    if (islevel(field))
        storelevel(setting, value);
    else if (!isradius(field) || value != 0)
        setting = single(value);
    return text;
}

// The number that a spin button leads to; the present one where it does nothing.
double spun(const numberfield& field, double value, bool up) {
    if (isradius(field)) {
        if (up) return value <= 0 ? 1 : value + field.step;
        return value > 0 ? value - field.step : value;
    }
    if (value == 0) return value;
    return up ? value + field.step : value - field.step;
}

} // namespace

void MapOptions() {
    platform::showwindow("Mapping Options", true);
}

void openmappingoptions() {
    sessionstate& s = SessionState;
    const std::int32_t grid = s.gridReady, contour = s.contourReady;
    s.mapCancelled = false;
    s.surferMethod = usablemethod(s.surferMethod);
    for (const numberfield& field : numberfields) typefield(field.control, fieldtext(field.control));
    s.gridReady = grid;
    s.contourReady = contour;
}

// --- Number fields ---

std::string fieldtext(std::string_view control) {
    const numberfield& field = fieldof(control);
    return field.divisions ? formatnumber(SessionState.*field.divisions, field.pattern)
                           : formatnumber(SessionState.*field.value, field.pattern);
}

std::string typefield(std::string_view control, const std::string& text) {
    std::string shown = text;
    attempt([&] { shown = storefield(fieldof(control), text); });
    return shown;
}

std::string spinfield(std::string_view control, const std::string& text, bool up) {
    const numberfield& field = fieldof(control);
    double value = 0;
    attempt([&] { value = lenientnumber(text); });
    const double next = spun(field, value, up);
    if (next == value) return text;
    return typefield(control, islevel(field) ? formatnumber(next, field.pattern) : trimmednumber(next));
}

std::string incrementtext() {
    return formatnumber(SessionState.levelStep, incrementpattern);
}

// --- Lists. Those of the session but the gridding methods begin with an empty entry. ---

std::span<const std::string_view> listentries(std::string_view list) {
    if (list == "ActFreq") return std::span(bandName).subspan(1);
    if (list == "Parameter") return std::span(parameterNames).subspan(1);
    if (list == "Colsch") return std::span(colourSchemeNames).subspan(1);
    return interpolationNames;
}

int listposition(std::string_view list) {
    const sessionstate& s = SessionState;
    if (list == "ActFreq") return s.bandIndex - 1;
    if (list == "Parameter") return s.parameterIndex - 1;
    if (list == "Colsch") return whole32(static_cast<double>(s.colourSchemeIndex)) - 1;
    return s.surferMethod;
}

void choosefromlist(std::string_view list, int position) {
    sessionstate& s = SessionState;
    const std::string_view entry = listentries(list)[static_cast<std::size_t>(position)];
    if (list == "Colsch") {
        s.colourSchemeIndex = static_cast<float>(position + 1);
        s.colourSchemeName = entry;
        return;
    }
    if (list == "ActFreq") s.bandIndex = position + 1;
    if (list == "Parameter") {
        s.parameterIndex = position + 1;
        s.parameterName = entry;
    }
    if (list == "Interpol") s.surferMethod = position;
    forgetgrid();
}

// --- Boxes ---

bool tickmirror(bool ticked) {
    SessionState.mirror =
        ticked &&
        platform::messagebox(
            "Warning",
            "No check is made about your geometry, to verify that " + std::string(presentcaptions().axis) +
                " is effectively the simmetry axis. Are You sure that your geometry copes with "
                "that assumption?",
            platform::buttons::okcancel, platform::icon::exclamation,
            platform::answer::ok) == platform::answer::ok;
    forgetgrid();
    return SessionState.mirror;
}

bool tickblanking(bool ticked) {
    forgetgrid();
    SessionState.useBlanking = ticked && unlessrefused(loadblanking);
    return SessionState.useBlanking;
}

void ticksurfer(bool ticked) {
    if (ticked)
        platform::messagebox("Warning!",
                             "Golden Software's SURFER must be installed!\n"
                             "The recommended version is Surfer 9",
                             platform::buttons::ok, platform::icon::none, platform::answer::ok);
    SessionState.useSurfer = ticked;
    for (const std::string_view name : {"MapDoContour3D", "MapDoContour2D"}) enablecommand(name, ticked);
}

// --- Captions ---

std::string_view thirdcaption() {
    return presentcaptions().third;
}

std::string_view mirrorcaption() {
    return presentcaptions().mirror;
}

} // namespace orv
