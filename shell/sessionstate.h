// SessionState: what all windows share. Lives as long as the process; start-up sets the values that are not
// zero, and nothing is saved at the end.
#pragma once

#include "base/table.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace orv {

// Colours are 0x00BBGGRR throughout.
constexpr std::int32_t rgb(int red, int green, int blue) {
    return red | green << 8 | blue << 16;
}

// The sixteen fixed colours, 0..15.
constexpr std::array<std::int32_t, 16> palette16 = {
    rgb(0, 0, 0),       rgb(0, 0, 128),   rgb(0, 128, 0),   rgb(0, 128, 128),
    rgb(128, 0, 0),     rgb(128, 0, 128), rgb(128, 128, 0), rgb(192, 192, 192),
    rgb(128, 128, 128), rgb(0, 0, 255),   rgb(0, 255, 0),   rgb(0, 255, 255),
    rgb(255, 0, 0),     rgb(255, 0, 255), rgb(255, 255, 0), rgb(255, 255, 255)};
constexpr std::int32_t QBColor(int number) {
    return palette16[static_cast<std::size_t>(number)];
}

constexpr std::string_view programname = "Orvanta View v. ";
constexpr std::string_view versiontext = "3.10";

// Flags are numbers: -1 for on, 0 for off; a test asks for a value other than 0.
constexpr float on = -1.0F;
constexpr float off = 0.0F;

enum class planechoice { XY, YZ, XZ };

constexpr int bandcount = 12; // bandIndex 1..10 octave bands, 11 A-weighted, 12 linear
constexpr int octavebands = 10;
constexpr int weightedband = 11;
constexpr int linearband = 12;
constexpr int firstspeechband = 3, speechbands = 7; // 125 Hz..8 kHz, the bands of the speech index
constexpr int modulationcount = 14;
constexpr int highestmaterial = 2000;

// The shared lists, in their order; slot 0 of the 1-based ones is empty.
constexpr std::array<std::string_view, 7> colourSchemeNames = {
    "", "Blue-Red", "Green-Red", "White-Blue", "White-Black", "R-G-B", "Iris"};
constexpr std::array<std::string_view, 13> bandName = {"",     "31.5", "63",   "125",   "250", "500", "1000",
                                                       "2000", "4000", "8000", "16000", "A",   "Lin"};
constexpr std::array<std::string_view, 21> parameterNames = {
    "",    "Leq", "Ldir", "Lrev", "Ldir-Lrev", "Leq-Lw", "G",   "EDT", "T10", "T15", "T20",
    "T30", "C50", "C80",  "D50",  "Ts",        "Aeq",    "STI", "LE",  "LF",  "LFC"};
constexpr std::array<std::string_view, 7> interpolationNames = {
    "Inverse distance",      "Kriging", "Minimum curvature", "Polynomial regression",
    "Radial basis function", "Shepard", "Triangulation"};

struct sessionstate {
    // Files
    std::string dataDirectory;
    std::string geometryFileName;
    std::string resultFileName;
    std::string dxfFileName;

    // Settings file; 0 where it has no such key
    double levelSetting = 0;
    double historySetting = 0;
    float humidity = 0;    // percent
    float temperature = 0; // degrees Celsius

    // Constants computed at start-up
    double halfTurnConstant = 0;                              // half of pi, which is the required value
    std::array<float, octavebands + 1> aWeight{};             // linear, bands 1..10
    std::array<float, modulationcount + 1> modulationOmega{}; // 1/s, 1..14; pi times the frequency

    // Camera (all metres, but for the pan, which is in fractions of the window)
    float focalLength = 0;
    float cameraX = 0, cameraY = 0, cameraZ = 0;
    float targetX = 0, targetY = 0, targetZ = 0;
    float panX = 0, panY = 0;
    planechoice viewPlane = planechoice::XY;
    float autoRedraw = off;

    // Scene
    std::int32_t colourRoom = 0, colourSources = 0, colourReceivers = 0, colourBlanking = 0, colourPosted = 0,
                 colourRays = 0;
    bool shrinkFaces = false;
    float dxfEnabled = 0;
    fixedtable<"materialColour", std::int32_t, highestmaterial> materialColour;
    float drawAbort = off;
    std::string mapKind;                              // "Normal", "Contour" or "Dither"
    std::int32_t pictureWidth = 0, pictureHeight = 0; // pixels

    // Maps
    bool mapInProgress = false;
    bool autorange = false, mirror = false, useBlanking = false, useSurfer = false;
    bool mapCancelled = false; // "Cancel" of the mapping options
    std::int32_t gridReady = 0, contourReady = 0;
    std::int32_t Nx = 0, Ny = 0;
    float maxRadius = 0;
    std::int32_t bandIndex = 0;
    float maxLevel = 0, minLevel = 0, levelStep = 0; // dB; levelStep is the contour step
    float mapThirdCoordinate = 0;
    float colourSchemeIndex = 0;
    std::string colourSchemeName;
    std::int32_t colourSchemeCount = 0;
    std::array<std::int32_t, 17> rgbTable{};
    std::int32_t surferMethod = 0;
    std::string parameterName;
    std::int32_t parameterIndex = 0;
    std::int32_t parameterCount = 0;

    // Results
    float parameterSource = 0; // 0 none yet, 1 computed from responses, -1 from a parameter file
    double decaySlope = 0;     // dB/s, of the last decay fitted
    std::int32_t receiversShown = 0;
    std::string tableMode;
    std::int32_t selectedPath = 0, markedPath = 0; // the cursor's, and the one drawn in the scene; 0 none
    float viewStart = 0, viewEnd = 0;              // s, what the plot of a response shows
    std::int16_t schroederOn = 0;                  // -1 while the plot shows the decay curve
    bool pathsExist = false;

    // Export
    std::string fileRadix;             // what the names of WAV files are made of
    std::int32_t requestedSamples = 0; // wanted length of a block

    // Speech transmission index; the speech bands are 0..6
    std::int32_t backgroundNoiseFlag = 0, forceVoiceSplFlag = 0, equalizeSpectrumFlag = 0;
    double femaleModulation = 0;                      // of the last evaluation with noise
    std::array<float, speechbands> noiseLevel{};      // dB
    std::array<float, speechbands> voiceCorrection{}; // dB
    std::array<float, speechbands> maleAlpha{}, femaleAlpha{}, maleBeta{}, femaleBeta{};
    std::array<float, speechbands> maleVoiceSpectrum{}, femaleVoiceSpectrum{}; // dB
};

extern sessionstate SessionState;

} // namespace orv
