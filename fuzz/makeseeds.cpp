// makeseeds DIRECTORY: writes the inputs that fuzzing begins with, DIRECTORY/TARGET/NAME, from the sample
// hall and the shipped settings. They are short, since a fuzzer is fastest then.
#include "base/files.h"
#include "base/runtimeerror.h"
#include "data/filterbankdesign.h"
#include "fuzz/fuzzscratch.h"
#include "maps/levelfile.h"
#include "results/parameterfile.h"
#include "results/resultreader.h"
#include "results/speechindex.h"
#include "room/roommodel.h"
#include "samples/samplefiles.h"
#include "shell/startup.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct seed {
    const char* target;
    const char* name;
    std::string bytes;
};

// The lines of a text up to the n-th.
std::string firstlines(const std::string& text, int count) {
    std::size_t end = 0;
    for (; count > 0 && end < text.size(); --count) end = text.find('\n', end) + 1;
    return text.substr(0, end);
}

std::string textof(const char* path) {
    const orv::filebytes bytes = orv::readfile(path);
    return std::string(std::string_view(bytes));
}

std::string withoutreturns(std::string text) {
    std::erase(text, '\r');
    return text;
}

// A result of the first receivers of the hall with short responses, and the description of its source.
std::string shortresult(double format) {
    orv::samples::halloptions options;
    options.timeStep = 0.01;
    options.responseLength = 0.1;
    options.order = 1;
    options.format = format;
    const int sources[] = {1};
    const std::string all = orv::samples::resulttext(options, sources);
    std::string text = all.substr(0, all.find("\r\n[Microphone_3"));
    const std::size_t name = text.find(orv::samples::sourceFileName);
    if (name != std::string::npos)
        text.replace(name, std::string_view(orv::samples::sourceFileName).size(), "s");
    return text + "----\n" + orv::samples::sourcetext();
}

// The parameter file of the room's row and the first receiver of the hall, in the current layout.
std::string parametertext() {
    orv::scripted::onfailure([](const std::string&) {});
    orv::computeconstants();
    orv::replacefile("orvanta.ini", "Alfa = 1\r\nBeta = 2\r\nTime = 0.1\r\nPrecision = 0.01\r\n");
    orv::replacefile("r._01", shortresult(1.2));
    orv::loadresult("r._01");
    orv::RoomModel.receiverCount = 1;
    orv::computesti();
    orv::saveparameters("r._01");
    const orv::filebytes bytes = orv::readfile("r.-01");
    return std::string(std::string_view(bytes));
}

// The older layout with one receiver.
std::string olderparametertext() {
    std::string text = "\"Acoustic Parameters from file:\",\"r._01\"\r\n\r\n\r\n";
    for (int table = 0; table < 12; ++table) text += "0,\"-\",1,2,3,4,5,6,7,8,9,10,-.5,1E-02\r\n";
    for (int i = 0; i < orv::modulationcount; ++i)
        text += "0,\"-\",\"-\",\"-\",.1,.2,.3,.4,.5,.6,1,\"-\",\"-\",\"-\"\r\n";
    return text;
}

// Small files of other programs' formats.
constexpr const char* cattseed =
    ";TEMPERATURE 20\r\n;HUMIDITY 50\r\n;SOURCE A 1\r\n; DIRECTIVITY = \"Omni.SD0\"\r\n; POS =  1  2  1\r\n"
    "; AIMPOS =  2  2  1\r\n;END\r\n\r\n;RECEIVERS\r\n;  1     3.000000     2.000000     1.200000\r\n\r\n"
    "ABS Wood = <   15.0  11.0  10.0   7.0   6.0   7.0 :    7.0   7.0> L <   10.0  10.0  10.0  10.0  10.0"
    "  10.0 :   10.0  10.0> { 168 84 0}\r\n\r\nCORNERS\r\n\r\n 1      0.000000      0.000000      "
    "0.000000\r\n"
    " 2      4.000000      0.000000      0.000000\r\n 3      4.000000      3.000000      0.000000\r\n\r\n"
    "PLANES\r\n[1 wood /  1 2 3 / Wood ]\r\n";
constexpr const char* nastranseed =
    "$ Mesh\r\n$ Grid data section\r\nGRID,1,0,0.0,0.0,0.0\r\nGRID,2,0,4.0,0.0,0.0\r\n"
    "GRID,3,0,4.0,3.0,-.5E+0\r\n$ Elements\r\nCTRIA3,1,7,1,2,3\r\nENDDATA\r\n";
constexpr const char* rayonsseed =
    "2\n0 3 0 0 0 4 0 0 4 3 0 0 0 1\n-1 .5 3 0 0 2 4 0 2 4 3 2 0 0 -1\n----\n"
    "materials\n2\n0 Wood\n-1 none\n----\nsources\n1\n1 1 2 1 1 0 0 90 0\nUnknown\n"
    "----\nreceivers\n1\n1 3 2 1.2 0 0 0\n";

// Each of these adds the seeds of some targets.

void addrooms(std::vector<seed>& seeds) {
    const std::string room = orv::samples::geometrytext();
    seeds.insert(seeds.end(),
                 {{"fuzzgeometry", "hall", firstlines(room, 60)},
                  {"fuzzgeometry", "end", room.substr(room.rfind(" Source"))},
                  {"fuzzgeometry", "barelinefeeds", withoutreturns(firstlines(room, 12))},
                  {"fuzzgeometry", "drift",
                   "EntityList\r\n Wall\r\n Face 0 1 3 0 0 0 1 0 0 0 1 0 9\r\n End\r\nEnd\r\n"}});
}

void addforeignrooms(std::vector<seed>& seeds) {
    const std::string drawing = textof(SAMPLE_FILES "/exchange/studio.dxf");
    seeds.insert(seeds.end(),
                 {{"fuzzcatt", "room", cattseed},
                  {"fuzzcatt", "barelinefeeds", withoutreturns(cattseed)},
                  {"fuzznastran", "mesh", nastranseed},
                  {"fuzznastran", "barelinefeeds", withoutreturns(nastranseed)},
                  {"fuzzrayons", "set", rayonsseed},
                  {"fuzzdxf", "studio", drawing},
                  {"fuzzdxf", "barelinefeeds", withoutreturns(drawing)},
                  {"fuzzdxf", "entities",
                   "0\r\nSECTION\r\n2\r\nENTITIES\r\n" + drawing.substr(drawing.find("  0\r\nPOLYLINE"))}});
}

void addresults(std::vector<seed>& seeds) {
    const int sources[] = {1};
    const std::string paths = orv::samples::pathstext({.order = 1}, sources);
    std::string manypoints;
    for (int i = 0; i < 11; ++i) manypoints += ",1,1,2,3";
    seeds.insert(seeds.end(), {{"fuzzresult", "new", shortresult(1.2)},
                               {"fuzzresult", "old", shortresult(1.1)},
                               {"fuzzresult", "barelinefeeds", withoutreturns(shortresult(1.2))},
                               {"fuzzsum", "new", shortresult(1.2)},
                               {"fuzzsum", "old", shortresult(1.1)},
                               {"fuzzraypaths", "hall", firstlines(paths, 20)},
                               {"fuzzraypaths", "barelinefeeds", withoutreturns(firstlines(paths, 3))},
                               {"fuzzraypaths", "overflow",
                                "1,1,.02,1,1,1,1,1,1,1,1,1,1,11" + manypoints + "\r\n2 words"}});
}

void addparameters(std::vector<seed>& seeds) {
    const std::string parameters = parametertext();
    seeds.insert(seeds.end(), {{"fuzzparameters", "current", parameters},
                               {"fuzzparameters", "notail",
                                parameters.substr(0, parameters.find("\"Parameter =\",\"EDT\""))},
                               {"fuzzparameters", "older", olderparametertext()},
                               {"fuzzparameters", "barelinefeeds", withoutreturns(parameters)}});
}

void addshippedfiles(std::vector<seed>& seeds) {
    const std::string settings = textof(DATA_FILES "/orvanta.ini");
    const std::string materials = firstlines(textof(DATA_FILES "/Orvanta.mat"), 4);
    const std::string colours = firstlines(textof(DATA_FILES "/orvcolor.mat"), 4);
    const std::string bank = orv::filterbankbytes(orv::designfilters(48000), 48000);
    seeds.insert(seeds.end(),
                 {{"fuzzfilterbank", "short", bank.substr(0, 400)},
                  {"fuzzfilterbank", "header", bank.substr(0, 40)},
                  {"fuzzsettings", "shipped", settings},
                  {"fuzzsettings", "barelinefeeds", withoutreturns(settings)},
                  {"fuzzsettings", "sixty", std::string(120, '\n')},
                  {"fuzzmaterials", "shipped", materials + '\0' + colours},
                  {"fuzzmaterials", "barelinefeeds", withoutreturns(materials + '\0' + colours)}});
}

void addjobs(std::vector<seed>& seeds) {
    seeds.insert(
        seeds.end(),
        {{"fuzzjob", "quoted", "\"d\"\r\n\"s.___\"\r\n\"a._01\", 20,0, 3,0,0,0,0,0,0,0,-30.5\r\n"},
         {"fuzzjob", "plain", "d\ns.___\na b._01 ,0, 1 ,2,3,4,5,6,7,8,9,10\nb,0,0,0,0,0,0,0,0,0,0,0"}});
}

// The first character says which kind of file the rest is.
void addmapfiles(std::vector<seed>& seeds) {
    seeds.insert(
        seeds.end(),
        {{"fuzzexchange", "blanking", "04,1\r\n0,0\r\n2.5,0\r\n.5,-3\r\n0,0\r\n1,0\r\n-2,7\r\n"},
         {"fuzzexchange", "grid",
          "1DSAA\r\n3 2\r\n0 1\r\n0 1\r\n1 6\r\n1 2 3\r\n\r\n4 1.70141E+38 6\r\n\r\n"},
         {"fuzzexchange", "levels", "2" + orv::leveltext(-3, 80)},
         {"fuzzexchange", "points",
          "3 0             1             80\r\n-1            nan            70\r\n"
          " 2             2             71\r\n 4             1             75\r\n"},
         {"fuzzexchange", "contours",
          "40\nSECTION\n2\nENTITIES\n0\nLWPOLYLINE\n62\n5\n100\nAcDbPolyline\n90\n2\n10\n1\n20\n1\n10\n3\n"
          "20\n1\n0\nPOLYLINE\n62\n1\n10\n0\n20\n0\n0\nVERTEX\n10\n2\n20\n1\n0\nSEQEND\n0\nENDSEC\n"}});
}

void writeseeds(const std::string& target) {
    std::vector<seed> seeds;
    for (void (*add)(std::vector<seed>&) :
         {addrooms, addforeignrooms, addresults, addparameters, addshippedfiles, addjobs, addmapfiles})
        add(seeds);
    for (const seed& one : seeds) {
        const std::string directory = orv::joinpath(target, one.target);
        std::filesystem::create_directories(directory);
        orv::replacefile(orv::joinpath(directory, one.name), one.bytes);
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("usage: makeseeds DIRECTORY\n", stderr);
        return 2;
    }
    try {
        const std::string target = std::filesystem::absolute(arguments[1]).string();
        orv::enterscratch();
        writeseeds(target);
    } catch (const orv::runtimeerror& error) {
        std::fprintf(stderr, "%s\n", error.text.c_str());
        return 1;
    }
    return 0;
}
