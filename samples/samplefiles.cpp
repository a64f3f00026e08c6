// Writers of the sample files.
#include "samples/samplefiles.h"

#include "base/files.h"
#include "base/listoutput.h"
#include "base/numbertext.h"
#include "samples/random.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>

namespace orv::samples {

namespace {

// Readers add one to the speed of sound that a result states; so one less is stated.
constexpr double statedSpeedOffset = 1;

// Relative spread of the free paths of a box of about these proportions (Kuttruff, Room Acoustics): square
// root of a relative variance of 0.4.
constexpr double pathSpread = 0.63;

constexpr double firstNewFormat = 1.2;

constexpr int bothSources[] = {1, 2};

constexpr const char* bandTexts[bandCount] = {"31.5", "63",   "125",  "250",  "500",
                                              "1000", "2000", "4000", "8000", "16000"};

// Where the loose ray lines end: these receivers.
constexpr int rayTargets[] = {3, 8, 13, 18, 23, 28};

// A ray line is drawn as start + 50 x direction.
constexpr double rayLength = 50;

std::string& addline(std::string& text, std::string_view line) {
    return text.append(line).append(lineend);
}

// The numbers, separated by single blanks or as they are when negative.
template <class values>
std::string row(const values& numbers) {
    std::string line;
    for (const double number : numbers) {
        if (!line.empty()) line += ' ';
        line += trimmednumber(number);
    }
    return line;
}

// A blank and the number text of each, the form of geometry files.
void addcoordinates(std::string& line, std::initializer_list<double> numbers) {
    for (const double number : numbers) line.append(1, ' ').append(numbertext(number));
}

void addpolygon(std::string& text, std::string_view keyword, std::string_view gap, int material,
                const std::vector<point>& corners) {
    std::string line(keyword);
    printwhole(line, 0); // layer flag
    printwhole(line, material);
    printwhole(line, static_cast<std::int64_t>(corners.size()));
    line += gap;
    for (const point& corner : corners) addcoordinates(line, {corner.x, corner.y, corner.z});
    addline(text, line);
}

void addsource(std::string& text, const point& at, const point& aim) {
    std::string line = " Source";
    addcoordinates(line, {at.x, at.y, at.z, aim.x, aim.y, aim.z, 0});
    addline(text, line.append(1, ' ').append(sourceFileName));
}

void addreceiver(std::string& text, const point& at, const point& aim) {
    std::string line = " Receiver";
    addcoordinates(line, {at.x, at.y, at.z, aim.x, aim.y, aim.z});
    addline(text, line);
}

// One "key = value" line of a result's header. Keys are known by their first ten characters, blanks
// included, so that all are padded to one width.
void addkey(std::string& text, std::string_view key, const std::string& value) {
    constexpr std::size_t keyWidth = 24;
    std::string line(key);
    line.resize(keyWidth, ' ');
    addline(text, line.append("= ").append(value));
}

void addheader(std::string& text, int receivers, double pyramidCount, double responseLength, double timeStep,
               double format, const std::string& sourceName) {
    addkey(text, "Microphones", trimmedwhole(receivers));
    addkey(text, "SoundSpeed", trimmednumber(hallsoundspeed() - statedSpeedOffset));
    addkey(text, "First band", "0"); // counted from 0 here
    addkey(text, "Last band", "9");
    addkey(text, "Rays generated", trimmednumber(pyramidCount));
    addkey(text, "Mean free path", trimmednumber(readmeanfreepath()));
    addkey(text, "Standard deviation", trimmednumber(pathSpread * readmeanfreepath()));
    addkey(text, "Mean history", trimmednumber(hallsoundspeed() * responseLength));
    addkey(text, "Time", trimmednumber(responseLength));
    addkey(text, "Precision", trimmednumber(timeStep));
    addkey(text, "Format", trimmednumber(format));
    addkey(text, "Name", sourceName);
}

void addtitle(std::string& text, int receiver) {
    text += lineend; // the empty line belongs to the block's mark
    addline(text, "[Microphone_" + trimmedwhole(receiver) + "]");
}

// The lines from the position to the band frequencies in the new layout. The widths of the labels count:
// "Position = " is skipped as eleven characters, the labels of the rows as six.
template <class values>
void addlabelledrows(std::string& text, const std::string& position, double delay, const values& lfc,
                     const values& le, const values& lf) {
    addline(text, "Position = " + position);
    addline(text, "Delay = " + trimmednumber(delay));
    addline(text, "LFC = " + row(lfc));
    addline(text, "LE  = " + row(le));
    addline(text, "LF  = " + row(lf));
    std::string titles;
    for (const char* band : bandTexts) titles.append(titles.empty() ? "" : " ").append(band);
    addline(text, titles);
}

std::array<double, bandCount> share(const std::array<double, bandCount>& part,
                                    const std::array<double, bandCount>& whole) {
    std::array<double, bandCount> ratio{};
    for (std::size_t band = 0; band < bandCount; ++band) ratio[band] = part[band] / whole[band];
    return ratio;
}

std::string positionrow(const point& at, const point& aim) {
    return row(std::array<double, 6>{at.x, at.y, at.z, aim.x, aim.y, aim.z});
}

void addpath(std::string& text, int receiver, const hallpath& path, double factor) {
    std::string line = trimmedwhole(receiver);
    listwhole(line, path.source);
    listnumber(line, path.time);
    for (const double energy : path.energy) listnumber(line, energy * factor);
    listwhole(line, static_cast<std::int64_t>(path.points.size()));
    for (std::size_t i = 0; i < path.points.size(); ++i) {
        listwhole(line, path.faces[i]);
        for (const double coordinate : {path.points[i].x, path.points[i].y, path.points[i].z})
            listnumber(line, coordinate);
    }
    addline(text, line);
}

// The place of a receiver in a level grid over a floor of the given size, as square as it goes.
point gridplace(int receiver, int receivers, double length, double width) {
    const int columns = std::max(1, static_cast<int>(std::ceil(std::sqrt(receivers * length / width))));
    const int rows = (receivers + columns - 1) / columns;
    const int column = (receiver - 1) % columns;
    const int line = (receiver - 1) / columns;
    return {seven(length * (column + 0.5) / columns), seven(width * ((line + 0.5) / rows - 0.5)), 1.2};
}

// Hands over what has been made so far, for files too large to be built in memory first.
void put(filewriter& file, std::string& text) {
    file.write(text);
    text.clear();
}

// --- Large results ---

constexpr double floorlength = 36, floorwidth = 20; // m

// What is the same for all receivers of a large result.
struct decayforms {
    double step = 0, critical = 0;             // s
    std::vector<double> factors;               // the late energy factor by slots from the direct sound
    std::array<double, bandCount> perSlot{};   // what a slot leaves of the energy of the one before it
    std::array<double, bandCount> firstSlot{}; // energy behind the direct sound
};

decayforms decayformsof(const bigoptions& options) {
    constexpr double levelAtOne = 70; // dB in the slot behind the direct sound, at 1 kHz
    halloptions constants;
    constants.pyramidCount = options.pyramidCount;
    constants.beta = options.beta;
    decayforms forms;
    forms.step = static_cast<double>(static_cast<float>(options.timeStep));
    forms.critical = criticaltime(constants, readmeanfreepath(), readspeed());
    for (int slot = 0; slot < options.slots; ++slot)
        forms.factors.push_back(latefactor(forms.critical, forms.step * slot, options.alfa));
    for (std::size_t band = 0; band < bandCount; ++band) {
        forms.perSlot[band] =
            std::exp(-6 * std::numbers::ln10 * forms.step / bigdecaytime(options, static_cast<int>(band)));
        forms.firstSlot[band] =
            std::pow(10, (levelAtOne + hallsourcepower()[band] - hallsourcepower()[5]) / 10);
    }
    return forms;
}

void addbigrows(std::string& text, const point& at, double delay, randomstate& random) {
    std::array<double, bandCount> lfc{};
    std::array<double, bandCount> le{};
    std::array<double, bandCount> lf{};
    for (std::size_t band = 0; band < bandCount; ++band) {
        lf[band] = 0.1 + 0.2 * nextuniform(random);
        le[band] = 0.8 * lf[band];
        lfc[band] = 1.3 * lf[band];
    }
    addlabelledrows(text, positionrow(at, halllisteneraim()), delay, lfc, le, lf);
}

// The energies of a receiver whose direct sound comes in the slot `first`.
void addbigdecay(std::string& text, const decayforms& forms, std::size_t first, randomstate& random) {
    constexpr double ripple = 0.3;
    constexpr double directRatio = 5; // the direct sound's energy over that of the slot behind it
    constexpr double smallest = 1e-6; // energies below are written as 0
    std::array<double, bandCount> now = forms.firstSlot;
    for (std::size_t slot = 0; slot < forms.factors.size(); ++slot) {
        std::array<double, bandCount> energies{};
        if (slot >= first) {
            const double factor =
                slot == first ? directRatio * forms.factors[slot] : forms.factors[slot - first];
            for (std::size_t band = 0; band < bandCount; ++band) {
                const double energy = now[band] * factor * (1 + ripple * (2 * nextuniform(random) - 1));
                energies[band] = energy < smallest ? 0 : energy;
                now[band] *= forms.perSlot[band];
            }
        }
        addline(text, row(energies));
    }
}

void addbigblock(std::string& text, const bigoptions& options, const decayforms& forms, int receiver) {
    const point at = gridplace(receiver, options.receivers, floorlength, floorwidth);
    const point& from = hallsources().front();
    const double distance = std::hypot(at.x - from.x, at.y - from.y, at.z - from.z);
    const double delay = seven(distance / hallsoundspeed());
    const std::size_t first =
        std::min(static_cast<std::size_t>(delay / forms.step), forms.factors.size() - 1);
    randomstate random = branch(options.seed, static_cast<std::uint64_t>(receiver), 0);
    addtitle(text, receiver);
    addbigrows(text, at, delay, random);
    addbigdecay(text, forms, first, random);
}

// --- Large rooms ---

// A side of a box room: the corner where it starts, and its two directions in full length.
struct tiledside {
    point corner, u, v;
};
constexpr double roomheight = 12; // m
constexpr tiledside tiledSides[hallSides] = {{{0, -10, 0}, {floorlength, 0, 0}, {0, floorwidth, 0}},
                                             {{0, -10, roomheight}, {floorlength, 0, 0}, {0, floorwidth, 0}},
                                             {{0, -10, 0}, {floorlength, 0, 0}, {0, 0, roomheight}},
                                             {{0, 10, 0}, {floorlength, 0, 0}, {0, 0, roomheight}},
                                             {{0, -10, 0}, {0, floorwidth, 0}, {0, 0, roomheight}},
                                             {{floorlength, -10, 0}, {0, floorwidth, 0}, {0, 0, roomheight}}};

// The place at these shares of the side's directions.
point placeon(const tiledside& side, double u, double v) {
    return {side.corner.x + u * side.u.x + v * side.v.x, side.corner.y + u * side.u.y + v * side.v.y,
            side.corner.z + u * side.u.z + v * side.v.z};
}

// Divides a side into tiles, each a wall of one face.
void addtiles(std::string& text, filewriter& file, const tiledside& side, int tiles) {
    if (tiles == 0) return;
    const int columns = static_cast<int>(std::ceil(std::sqrt(tiles)));
    const int rows = (tiles + columns - 1) / columns;
    for (int line = 0; line < rows; ++line) {
        // What the full rows leave over fills the last one with wider tiles.
        const int here = line + 1 < rows ? columns : tiles - columns * (rows - 1);
        for (int column = 0; column < here; ++column) {
            const auto corner = [&](int du, int dv) {
                return placeon(side, static_cast<double>(column + du) / here,
                               static_cast<double>(line + dv) / rows);
            };
            const auto material = static_cast<std::size_t>(line + column) % hallmaterials().size();
            addline(text, " Wall");
            addpolygon(text, "  Face", "  ", hallmaterials()[material].row,
                       {corner(0, 0), corner(1, 0), corner(1, 1), corner(0, 1)});
            addline(text, " End");
        }
        put(file, text);
    }
}

} // namespace

std::string geometrytext() {
    std::string text;
    addline(text, "EntityList");
    addline(text, "# Sample hall. Lengths in metres; x along the hall, y across, z upwards.");
    addline(text, "# The sound of the sample results is that of the rectangular box of the first six walls.");
    addline(text, "# Platform, balconies and reflectors are drawn only.");
    int wall = 0;
    for (const hallface& face : hallfaces()) {
        if (face.wall != wall) {
            if (wall != 0) addline(text, " End");
            if (face.wall != 0) addline(text, " Wall");
            wall = face.wall;
        }
        addpolygon(text, face.wall != 0 ? "  Face" : " Face", "  ", face.material, face.corners);
        for (const hallopening& opening : face.openings)
            addpolygon(text, opening.door ? "  Door" : "  Hole", "", opening.material, opening.corners);
    }
    if (wall != 0) addline(text, " End");
    for (const point& source : hallsources()) addsource(text, source, hallsourceaim());
    for (const point& receiver : hallreceivers()) addreceiver(text, receiver, halllisteneraim());
    const point& from = hallsources().front();
    for (const int target : rayTargets) {
        const point& to = hallreceivers()[static_cast<std::size_t>(target - 1)];
        std::string line = " Ray";
        addcoordinates(line, {from.x, from.y, from.z, (to.x - from.x) / rayLength,
                              (to.y - from.y) / rayLength, (to.z - from.z) / rayLength});
        addline(text, line);
    }
    addline(text, "End");
    return text;
}

std::string sourcetext() {
    // The rows of the directivity table: every 30 degrees off the axis.
    constexpr int angleCount = 7;
    constexpr double angleStep = 30;

    std::string text;
    addline(text, "Source description: dodecahedron loudspeaker, pink noise");
    addline(text, "Per band: number, number, centre frequency");
    addline(text, "  frequency, efficiency, power level, level on axis at 1 m, directivity index, factor");
    addline(text, "  table number, angle count, then a heading, level re axis by angle, an empty line");
    addline(text, row(std::array<double, 2>{bandCount, bandCount}));
    for (std::size_t band = 0; band < bandCount; ++band) {
        const double power = hallsourcepower()[band];
        const auto number = static_cast<double>(band + 1);
        // The text behind the number keeps the number from ending its line, whose rest readers drop.
        addline(text, row(std::array<double, 2>{number, number}) + " band " + bandTexts[band] + " Hz");
        addline(text, row(std::array<double, 6>{lenientnumber(bandTexts[band]), 0, power, power - 11, 0, 1}));
        addline(text, row(std::array<double, 2>{1, angleCount}));
        addline(text, "Angle  Level");
        for (int i = 0; i < angleCount; ++i) addline(text, row(std::array<double, 2>{i * angleStep, 0}));
        addline(text, "");
    }
    return text;
}

double readspeed() {
    return static_cast<double>(
        static_cast<float>(seven(hallsoundspeed() - statedSpeedOffset) + statedSpeedOffset));
}

double readmeanfreepath() {
    return seven(hallmeanfreepath());
}

std::string resulttext(const halloptions& options, sourcelist sources) {
    const std::vector<point>& receivers = hallreceivers();
    const double critical = criticaltime(options, readmeanfreepath(), readspeed());
    const double step = static_cast<double>(static_cast<float>(options.timeStep));
    const bool labelled = options.format >= firstNewFormat;

    std::string text;
    addheader(text, static_cast<int>(receivers.size()), options.pyramidCount, options.responseLength,
              options.timeStep, options.format, sourceFileName);
    for (int receiver = 1; receiver <= static_cast<int>(receivers.size()); ++receiver) {
        const hallresponse response = respond(options, receiver, sources);
        const std::string position =
            positionrow(receivers[static_cast<std::size_t>(receiver - 1)], halllisteneraim());
        addtitle(text, receiver);
        if (labelled) {
            addlabelledrows(text, position, response.delay, share(response.cosine5, response.early),
                            share(response.lateral25, response.early),
                            share(response.lateral5, response.early));
        } else {
            addline(text, position);
            addline(text, row(response.lateral25)); // an energy here, not yet a ratio
            addline(text, trimmednumber(response.delay));
        }
        for (int slot = 0; slot < response.slotCount; ++slot) {
            const bool first = slot <= response.firstSlot;
            const double time = step * (first ? slot : slot - response.firstSlot);
            const double factor = latefactor(critical, time, options.alfa);
            std::array<double, bandCount> energies{};
            for (std::size_t band = 0; band < bandCount; ++band)
                energies[band] = response.energy[static_cast<std::size_t>(slot) * bandCount + band] * factor;
            addline(text, row(energies));
        }
    }
    return text;
}

std::string pathstext(const halloptions& options, sourcelist sources) {
    const double critical = criticaltime(options, readmeanfreepath(), readspeed());
    std::string text;
    for (int receiver = 1; receiver <= static_cast<int>(hallreceivers().size()); ++receiver) {
        std::vector<hallpath> paths;
        for (const int source : sources)
            for (hallpath& path : hallpaths(receiver, source, options.order))
                paths.push_back(std::move(path));
        std::stable_sort(paths.begin(), paths.end(),
                         [](const hallpath& a, const hallpath& b) { return a.time < b.time; });
        for (const hallpath& path : paths)
            addpath(text, receiver, path, latefactor(critical, path.time, options.alfa));
    }
    return text;
}

void writehall(const std::string& directory) {
    const halloptions full;
    halloptions fewer = full;
    fewer.pyramidCount = full.pyramidCount / 4;
    halloptions old = full;
    old.format = 1;
    const sourcelist both = bothSources;

    struct entry {
        const char* suffix; // the last two characters of the names
        const halloptions& options;
        sourcelist sources;
        bool paths;
    };
    const entry entries[] = {{"01", full, both.first(1), true},
                             {"02", full, both.last(1), true},
                             {"03", full, both, true},
                             {"04", fewer, both, false},
                             {"05", old, both.first(1), false}};

    const auto write = [&directory](const std::string& name, const std::string& text) {
        replacefile(joinpath(directory, name), text);
    };
    write("hall.RAY", geometrytext());
    write(sourceFileName, sourcetext());
    for (const entry& made : entries) {
        if (made.paths) write(std::string("hall.@") + made.suffix, pathstext(made.options, made.sources));
        write(std::string("hall._") + made.suffix, resulttext(made.options, made.sources));
    }
}

double bigdecaytime(const bigoptions& options, int band) {
    // Bands fall from 1.2 to 0.35 of the middle ones, as air and porous surfaces make them.
    constexpr double shape[bandCount] = {1.2, 1.15, 1.1, 1.05, 1, 1, .95, .85, .6, .35};
    constexpr double longest = 2; // s
    const double length = options.timeStep * (options.slots - 1);
    return shape[band] * std::min(longest, 0.7 * length);
}

void writebigresult(const std::string& path, const bigoptions& options) {
    const decayforms forms = decayformsof(options);
    filewriter file(path);
    std::string text;
    addheader(text, options.receivers, options.pyramidCount, options.timeStep * (options.slots - 1),
              options.timeStep, firstNewFormat, "NONE");
    for (int receiver = 1; receiver <= options.receivers; ++receiver) {
        addbigblock(text, options, forms, receiver);
        put(file, text);
    }
    file.write(text);
    file.finish();
}

void writebigpaths(const std::string& path, int paths, int receivers, bool sorted) {
    constexpr std::size_t piece = 1 << 20; // bytes handed to the file at once
    constexpr int mostpoints = 7;
    constexpr double first = 0.01, length = 2; // s
    randomstate random{1};
    filewriter file(path);
    std::string text;
    for (int i = 0; i < paths; ++i) {
        hallpath made;
        made.source = 1 + i % 2;
        made.time = first + length * (sorted ? static_cast<double>(i) / paths : nextuniform(random));
        for (double& energy : made.energy) energy = std::pow(10, 3 + 6 * nextuniform(random));
        for (int j = 0; j < i % (mostpoints + 1); ++j) {
            made.faces.push_back(1 + (i + j) % 90);
            made.points.push_back(
                {36 * nextuniform(random), 20 * nextuniform(random) - 10, 12 * nextuniform(random)});
        }
        addpath(text, 1 + i % receivers, made, 1);
        if (text.size() > piece) put(file, text);
    }
    file.write(text);
    file.finish();
}

void writebiggeometry(const std::string& path, int faces, int receivers) {
    filewriter file(path);
    std::string text;
    addline(text, "EntityList");
    for (int side = 0; side < hallSides; ++side) {
        const int tiles = faces / hallSides + (side < faces % hallSides ? 1 : 0);
        addtiles(text, file, tiledSides[side], tiles);
    }
    for (const point& source : hallsources()) addsource(text, source, hallsourceaim());
    for (int receiver = 1; receiver <= receivers; ++receiver)
        addreceiver(text, gridplace(receiver, receivers, floorlength, floorwidth), halllisteneraim());
    addline(text, "End");
    file.write(text);
    file.finish();
}

} // namespace orv::samples
