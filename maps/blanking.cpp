// The blanking file, a text file of polygons one behind the other, numbers as list input:
//
//   COUNT,FLAG       points of the polygon; 1 blanks its inside, 0 its outside
//   X,Y              COUNT of these, m; the last repeats the first
//
// A sample, one square:
//
//   5,1
//   0,0
//   2.5,0
//   2.5,2.5
//   0,2.5
//   0,0
#include "maps/blanking.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listinput.h"
#include "base/listoutput.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "maps/redrawview.h"
#include "platform/platform.h"
#include "room/roommodel.h"
#include "scene/scenedrawing.h"
#include "shell/filejob.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <algorithm>

namespace orv {

blankinglines BlankingLines;
blankingoptions BlankingOptions;

namespace {

constexpr const char* filepattern = "*.BLN";
constexpr std::string_view linecommands[] = {"BLNdel", "BLNsave", "BLNnew"};

void widenbox(float x, float y) {
    RoomModel.roomMaxX = std::max(RoomModel.roomMaxX, x);
    RoomModel.roomMinX = std::min(RoomModel.roomMinX, x);
    RoomModel.roomMaxY = std::max(RoomModel.roomMaxY, y);
    RoomModel.roomMinY = std::min(RoomModel.roomMinY, y);
}

// The head of the next polygon, where there is one.
struct polygonhead {
    float points;
    std::int32_t flag;
};
polygonhead readhead(listreader& file) {
    const float points = readsingle(file);
    return {points, readwhole32(file)};
}

[[noreturn]] void toomany(const listreader& file, int most, const std::string& what) {
    inputfailure(file, errorkind::subscript,
                 "subscript out of range, " + what + " at most " + std::to_string(most));
}

void readpolygon(listreader& file, blankinglines& b, std::int32_t line) {
    const polygonhead head = readhead(file);
    if (head.points > blanklinehighestpoint)
        toomany(file, blanklinehighestpoint, "the points of a blanking line are");
    b.blanklinePoints(line) = std::max(head.points, 0.0F);
    b.blanklineFlag(line) = head.flag;
    const int count = static_cast<int>(b.blanklinePoints(line));
    for (int point = 1; point <= count; ++point) {
        b.blanklineX(line, point) = readsingle(file);
        b.blanklineY(line, point) = readsingle(file);
    }
}

void widenbox(const blankinglines& b) {
    for (std::int32_t line = 1; line <= b.blanklineCount; ++line) {
        const int count = static_cast<int>(b.blanklinePoints(line));
        for (int point = 1; point <= count; ++point)
            widenbox(b.blanklineX(line, point), b.blanklineY(line, point));
    }
}

// A line that is being entered would go on in a table that has changed under it.
void giveupline() {
    if (BlankingLines.addingLine == off) return;
    BlankingLines.addingLine = BlankingLines.rubberBand = off;
    platform::pointer(platform::shape::normal);
    platform::statustext(1, std::string(panhint3d));
}

void redrawcleared() {
    platform::picture().clear();
    redrawview(platform::picture());
}

} // namespace

void readblanking(const std::string& path) {
    const filebytes bytes = readfile(path);
    listreader file = openlist(bytes, pagetext(path));
    blankinglines lines = BlankingLines;
    lines.blanklineCount = 0;
    while (!nothingleft(file)) {
        if (++lines.blanklineCount > highestblankline) toomany(file, highestblankline, "blanking lines are");
        readpolygon(file, lines, lines.blanklineCount);
    }
    widenbox(lines);
    BlankingLines = lines;
}

void writeblanking(const std::string& path) {
    const blankinglines& b = BlankingLines;
    std::string text;
    for (std::int32_t line = 1; line <= b.blanklineCount; ++line) {
        std::string row;
        listnumber(row, wide(b.blanklinePoints(line)));
        listwhole(row, b.blanklineFlag(line));
        text.append(row).append(lineend);
        const int count = static_cast<int>(b.blanklinePoints(line));
        for (int point = 1; point <= count; ++point) {
            row.clear();
            listnumber(row, wide(b.blanklineX(line, point)));
            listnumber(row, wide(b.blanklineY(line, point)));
            text.append(row).append(lineend);
        }
    }
    replacefile(path, text);
}

std::vector<blankingpolygon> blankingpolygons(const std::string& path) {
    const filebytes bytes = readfile(path);
    listreader file = openlist(bytes, pagetext(path));
    std::vector<blankingpolygon> polygons;
    while (!nothingleft(file)) {
        const polygonhead head = readhead(file);
        blankingpolygon& polygon = polygons.emplace_back();
        polygon.flag = head.flag;
        for (float point = 1; point <= head.points; ++point) {
            polygon.x.push_back(readnumber(file));
            polygon.y.push_back(readnumber(file));
        }
    }
    return polygons;
}

bool checkblankingoptions() {
    double size = 0;
    attempt([&] { size = lenientnumber(BlankingOptions.gridsize); });
    if (!BlankingOptions.snap || size != 0) return true;
    platform::warningbox("Warning", "Points cannot snap to a grid of size 0.");
    return false;
}

void forgetblankedmap() {
    if (SessionState.useBlanking) SessionState.gridReady = SessionState.contourReady = 0;
}

void enableblankingcommands(bool enabled) {
    for (const std::string_view name : linecommands) enablecommand(name, enabled);
}

void loadblanking() {
    const std::string name =
        platform::askopenfile({"Load a Blanking File", "SURFER's Blanking Files (*.BLN)|*.BLN", filepattern,
                               SessionState.dataDirectory});
    readblanking(name);
    BlankingLines.blankingFile = name;
    giveupline();
    SessionState.gridReady = SessionState.contourReady = 0;
    enableblankingcommands(true);
    if (BlankingLines.blanklineCount == 0)
        platform::messagebox("Warning", pagetext(name) + " holds no blanking lines.", platform::buttons::ok,
                             platform::icon::exclamation, platform::answer::ok);
}

void BLNload() {
    unlessrefused(loadblanking);
}

void BLNsave() {
    unlessrefused([] {
        const std::string& present = BlankingLines.blankingFile;
        const std::string name = completedname(
            platform::asksavefile({"Save a Blanking File", "SURFER Blank.Files (*.BLN)|*.BLN",
                                   present.empty() ? filepattern : present, SessionState.dataDirectory}),
            "bln");
        writeblanking(name);
        BlankingLines.blankingFile = name;
        forgetblankedmap();
    });
}

void BLNnew() {
    giveupline();
    BlankingLines.blanklineCount = 0;
    enablecommand("BLNsave", false);
    enablecommand("BLNnew", false);
    forgetblankedmap();
    SessionState.useBlanking = false;
    redrawcleared();
}

void BLNview() {
    const bool shown = !ischecked("BLNview");
    checkcommand("BLNview", shown);
    checkcommand("Vbln", shown);
    if (shown && BlankingLines.blanklineCount > 0) redrawcleared();
}

} // namespace orv
