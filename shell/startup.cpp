// Start-up: directories, start values, the files of the data directory, the first state of the window.
#include "shell/startup.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/formatpattern.h"
#include "base/listinput.h"
#include "base/runtimeerror.h"
#include "maps/redrawview.h"
#include "maps/rgbsettings.h"
#include "platform/keycodes.h"
#include "platform/platform.h"
#include "room/roommodel.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"
#include "shell/settings.h"
#include "shell/workflows.h"

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <system_error>

namespace orv {

namespace {

// Programs installed under a user's directory of these drives keep their data elsewhere.
struct movedhome {
    std::string_view home, data;
};
constexpr movedhome movedhomes[] = {
    {"C:\\US", "C:\\Orvanta"}, {"F:\\US", "C:\\Orvanta"}, {"J:\\US", "J:\\Orvanta27"}};

constexpr std::string_view viewgroups[] = {"Picture1", "Frame2DView", "SSFrame1", "Frame2", "Frame1"};
constexpr std::string_view disabledatstart[] = {
    "Redraw",     "CamRedr2D", "render",        "BLNnew",        "BLNadd",         "BLNdel",        "BLNsave",
    "MapOptions", "STIopt",    "MapDoDither2D", "MapDoDither3D", "MapDoContour2D", "MapDoContour3D"};

// A-weighting of the ten octave bands in dB, as IEC 61672-1 gives it rounded to one place.
constexpr double weightlevels[octavebands] = {-39.4, -26.2, -16.1, -8.6, -3.2, 0, 1.2, 1, -1.1, -6.6};

// Modulation frequencies in Hz (IEC 60268-16).
constexpr float modulationfrequencies[modulationcount] = {0.63F, 0.8F, 1.0F, 1.25F, 1.6F, 2.0F,  2.5F,
                                                          3.15F, 4.0F, 5.0F, 6.3F,  8.0F, 10.0F, 12.5F};

// Band weights, redundancy weights and voice spectra, 125 Hz..8 kHz (IEC 60268-16). The male weight at 1 kHz
// is 0.1233 on purpose, where the standard has 0.233.
constexpr std::array<float, speechbands> malealpha = {0.085F, 0.127F, 0.230F, 0.1233F,
                                                      0.309F, 0.224F, 0.173F};
constexpr std::array<float, speechbands> femalealpha = {0, 0.117F, 0.223F, 0.216F, 0.328F, 0.250F, 0.194F};
constexpr std::array<float, speechbands> malebeta = {0.085F, 0.078F, 0.065F, 0.011F, 0.047F, 0.095F, 0};
constexpr std::array<float, speechbands> femalebeta = {0, 0.099F, 0.066F, 0.062F, 0.025F, 0.076F, 0};
constexpr std::array<float, speechbands> malespectrum = {2.9F, 2.9F, -0.8F, -6.8F, -12.8F, -18.8F, -24.8F};
constexpr std::array<float, speechbands> femalespectrum = {-100, 5.3F, -1.9F, -9.1F, -15.8F, -16.7F, -18.0F};

constexpr std::string_view fieldpattern = "#####.#";

std::string datafile(const std::string& name) {
    return existingpath(joinpath(SessionState.dataDirectory, name));
}

void enterdatadirectory() {
    SessionState.dataDirectory = datadirectoryfor(platform::programdirectory());
    std::error_code error;
    std::filesystem::current_path(SessionState.dataDirectory, error);
    if (error)
        throw runtimeerror{errorkind::fileaccess, "The data directory " +
                                                      pagetext(SessionState.dataDirectory) +
                                                      " cannot be entered (" + error.message() + ")."};
}

// The files' numbers have a decimal point, and numbers shown to the user are written the same way.
bool regionfits() {
    const platform::regionmarks marks = platform::userregion();
    return marks.group.find(',') != std::string::npos && marks.decimal.find('.') != std::string::npos;
}

void setcamera() {
    sessionstate& s = SessionState;
    s.cameraX = -10;
    s.cameraY = -15;
    s.cameraZ = 8;
    s.targetX = 0;
    s.targetY = 0;
    s.targetZ = 10;
    s.focalLength = 0.05F;
    s.panX = s.panY = 0;
    s.viewPlane = planechoice::XY;
    resetroom();
    RoomModel.roomCentreX = s.targetX;
    RoomModel.roomCentreY = s.targetY;
    RoomModel.roomCentreZ = s.targetZ;
}

void showcamerafields() {
    const sessionstate& s = SessionState;
    const struct {
        const char* control;
        float value;
    } fields[] = {{"CamX", s.cameraX},    {"CamY", s.cameraY},    {"CamZ", s.cameraZ},
                  {"TargetX", s.targetX}, {"TargetY", s.targetY}, {"TargetZ", s.targetZ}};
    for (const auto& field : fields)
        attempt([&] { platform::settext(field.control, formatnumber(field.value, fieldpattern)); });
    attempt([&] { platform::settext("FocLenght", formatnumber(s.focalLength * 1000.0, fieldpattern)); });
}

void setmapvalues() {
    sessionstate& s = SessionState;
    s.Nx = s.Ny = 50;
    s.maxRadius = 5;
    s.bandIndex = linearband;
    s.maxLevel = 120;
    s.minLevel = 80;
    s.levelStep = 0;
    s.mapThirdCoordinate = 0;
    s.mapKind = "Normal";
    s.gridReady = s.contourReady = 0;
    s.colourSchemeCount = static_cast<std::int32_t>(colourSchemeNames.size()) - 1;
    s.colourSchemeIndex = 6;
    s.colourSchemeName = colourSchemeNames[6];
    s.parameterIndex = 1;
    s.parameterName = parameterNames[1];
    s.parameterCount = static_cast<std::int32_t>(parameterNames.size()) - 1;
    s.parameterSource = 0;
}

void setscenecolours() {
    sessionstate& s = SessionState;
    s.colourRoom = rgb(0, 0, 0);
    s.colourSources = rgb(255, 0, 0);
    s.colourReceivers = rgb(0, 0, 0);
    s.colourBlanking = rgb(255, 0, 255);
    s.colourPosted = rgb(255, 255, 255);
    s.colourRays = rgb(255, 0, 0);
}

// One integer a line for each material, row 0 first. A line that is no colour leaves its slot.
void readmaterialcolours() {
    const std::string path = datafile("orvcolor.mat");
    const filebytes file = readfile(path);
    listreader lines = openlist(file, pagetext(path));
    for (int slot = 0; slot <= highestmaterial; ++slot) {
        const numberfield field = tryreadnumber(lines);
        if (field.outcome == fieldoutcome::pastend) break;
        if (field.outcome == fieldoutcome::read)
            attempt([&] { SessionState.materialColour(slot) = whole32(field.value); });
        platform::yield();
    }
}

} // namespace

void computeconstants() {
    sessionstate& s = SessionState;
    s.halfTurnConstant = 2 * std::atan(1.0);
    for (int band = 1; band <= octavebands; ++band)
        s.aWeight[static_cast<std::size_t>(band)] = single(power(10, weightlevels[band - 1] / 10));
    s.maleAlpha = malealpha;
    s.femaleAlpha = femalealpha;
    s.maleBeta = malebeta;
    s.femaleBeta = femalebeta;
    s.maleVoiceSpectrum = malespectrum;
    s.femaleVoiceSpectrum = femalespectrum;
    // The constant is half of pi, so that these are pi times the frequency: responses are analysed at half
    // the named modulation frequency, which is required as it stands.
    for (std::size_t i = 0; i < modulationcount; ++i)
        s.modulationOmega[i + 1] =
            single(2 * static_cast<double>(modulationfrequencies[i]) * s.halfTurnConstant);
}

void startup() {
    enterdatadirectory();
    if (!regionfits()) {
        const auto given = platform::messagebox(
            "Warning - incompatible settings!",
            "Your regional settings are not compatible with Orvanta. Do You want to change them now?",
            platform::buttons::yesno, platform::icon::stop, platform::answer::yes);
        if (given == platform::answer::yes) platform::showregionsettings();
        suspendcommands(true); // all but Exit and Help: the program is to be started again
        return;
    }
    showtitle("");
    for (const std::string_view group : viewgroups) platform::setvisible(std::string(group), false);

    // From here on a failing step is skipped.
    attempt(computeconstants);
    for (const std::string_view name : disabledatstart) attempt([&] { enablecommand(name, false); });
    attempt([] { checkcommand("CamVrec", true); });
    attempt([] { checkcommand("BLNview", true); });
    attempt(setcamera);
    attempt(loadcolourtable);
    attempt(readsettings);
    showcamerafields();
    attempt(setmapvalues);
    SessionState.receiversShown = 20;
    SessionState.surferMethod = usablemethod(SessionState.surferMethod);
    attempt([] { checkcommand("Vroom", true); });
    setscenecolours();
    attempt(readmaterialcolours);
    attempt([] { platform::settext("Redisplay", "Auto Redraw"); });
    SessionState.autoRedraw = on;
}

std::string datadirectoryfor(const std::string& programdirectory) {
    const std::string path = uppercase(programdirectory);
    for (const movedhome& moved : movedhomes)
        if (path.starts_with(moved.home)) return std::string(moved.data);
    return programdirectory;
}

void mainkey(int code) {
    if (code == keyf1)
        platform::messagebox(std::string(programname) + std::string(versiontext),
                             "Sorry, no help still available", platform::buttons::ok, platform::icon::none,
                             platform::answer::ok);
    if (code == keyescape) SessionState.drawAbort = on;
}

void mainresized(int width, int height) {
    SessionState.pictureWidth = width;
    SessionState.pictureHeight = height;
    // A load draws at its end.
    if (RoomModel.faceCount <= 0 || commandssuspended()) return;
    DrawSurface& picture = platform::picture();
    picture.clear();
    redrawview(picture);
}

void FQuit() {
    platform::closewindows();
}

// The help file, or its twin for browsers where the desktop has no program for the help file.
void Hhelp() {
    const std::string archive = datafile(joinpath("manual", "MOrvantaView.mht"));
    const std::string page = datafile(joinpath("manual", "MOrvantaView.html"));
    const std::string document = canopen(page) && !platform::hasopener(archive) ? page : archive;
    platform::opendocument(document);
    // A desktop's opener that finds no browser says nothing; the manual can still be found.
    if (canopen(document)) platform::statustext(1, "The manual is " + pagetext(document));
}

void HAbout() {
    platform::showwindow("About", true);
}

} // namespace orv
