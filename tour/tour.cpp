// The tour: one typical session in the real main window, step by step, without anybody there. It is run by
// tour/run, in a data directory of its own with the sample hall.
//
// A new step is a routine in the file of its subject (steps.h) and a row in the table; guide.h has what it
// can do.
#include "platform/qt/platformqt.h"
#include "shell/mainwindow.h"
#include "tour/guide.h"
#include "tour/rounds.h"
#include "tour/steps.h"

#include <QApplication>
#include <QTimer>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>

namespace orv::tour {

namespace {

constexpr step steps[] = {
    {"Start", start, "start"},
    {"The File menu", filemenu, ""},
    {"Cancel a file dialog", cancelled, ""},
    {"Open a result and its room", openresult, "2d-xy"},
    {"Table of T30", decaytable, ""},
    {"Table of receiver 12", onereceiver, ""},
    {"Table of all receivers at 125 Hz", roundrobin, ""},
    {"Speech index with noise", speechindex, ""},
    {"The impulse response and its decay", impulseresponse, ""},
    {"Export to WAV in four formats", exportwav, ""},
    {"The parameters alone", parametersalone, ""},
    {"View YZ", sideview, "2d-yz"},
    {"View XZ", longview, "2d-xz"},
    {"Mapping options", mappingoptions, ""},
    {"View options", viewoptions, ""},
    {"RGB settings", rgbsettings, ""},
    {"Posted values: C80 at 1 kHz", posted, "2d-posted"},
    {"Map of C80 in plan", mapinplan, "map-2d"},
    {"Map of C80 in section", mapinsection, ""},
    {"Contours of C80 in plan", contoursinplan, "map-2d-gridded"},
    {"Enter a blanking line", enterblankingline, "blanking-line-closed"},
    {"Map within a blanking line", blankedmap, ""},
    {"The Surfer menu", surfermenu, ""},
    {"Zoom by focal length", zoom, "2d-zoom"},
    {"Draw 3D", spatial, "3d"},
    {"Focal length by its steps", focallength, "3d-wide"},
    {"Camera by its fields", cameratyped, "3d-camera"},
    {"Camera and target by their steps", cameraspun, "3d-steps"},
    {"Map of C80 in 3D", mapinspace, "map-3d"},
    {"Map of C80 across the hall", mapinspacesection, "map-3d-section"},
    {"Contours of C80 in 3D", contoursinspace, ""},
    {"Save the room and read it back", saveroom, ""},
    {"Copy the picture", copypicture, ""},
    {"Print the picture to a file", print, ""},
    {"About", about, ""},
    {"F1", helpkey, ""},
    {"Another result over the room", otherresult, "2d-other-result"},
    {"A ray path in the scene and the plot", raypaths, ""},
    {"Orbit with the right button", orbit, "3d-orbited"},
    {"Pan with the left button", panned, "3d-panned"},
    {"Sum two sources", sumsources, ""},
    {"Open the sum", opensum, ""},
    {"Tune Alfa and Beta on two results", tuneconstants, ""},
    {"A result whose room lies elsewhere", roomelsewhere, ""},
    {"Import a drawing", importdrawing, "2d-dxf"},
    {"Export it and read it back", exportdrawing, ""},
    {"The drawing in 3D", drawingin3d, "3d-dxf"},
    {"Import a Catt room", importcatt, "catt"},
    {"Export it and save it", exportcatt, ""},
    {"Import a Nastran mesh", importnastran, "nastran"},
    {"Import a Rayons set", importrayons, "rayons"},
    {"Exit", leave, ""},
};

// More rounds begin with the first result each.
bool taketour(const std::string& output, int rounds) {
    if (rounds == 1) return run(steps, output);
    const auto first = std::find_if(std::begin(steps), std::end(steps),
                                    [](const step& one) { return one.run == openresult; });
    return runrounds(steps, static_cast<std::size_t>(first - steps), output, rounds);
}

} // namespace

} // namespace orv::tour

int main(int argumentcount, char** arguments) {
    const int rounds = argumentcount == 3 ? std::atoi(arguments[2]) : 1;
    if (argumentcount < 2 || argumentcount > 3 || rounds < 1) {
        std::fputs("usage: orvtour OUTPUT [ROUNDS]\n", stderr);
        return 2;
    }
    QApplication application(argumentcount, arguments);
    orv::platform::prepare();
    bool good = false;
    QTimer::singleShot(0, [&] {
        good = orv::tour::taketour(arguments[1], rounds);
        QCoreApplication::quit();
    });
    QApplication::exec();
    orv::removemainwindow();
    return good ? 0 : 1;
}
