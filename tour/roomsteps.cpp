// Steps: rooms as files, those of this program and those of others.
#include "base/files.h"
#include "platform/qt/answers.h"
#include "room/roommodel.h"
#include "shell/mainwindow.h"
#include "shell/menucommands.h"
#include "tour/checks.h"
#include "tour/guide.h"
#include "tour/steps.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace orv::tour {

namespace {

void checkroom(int faces, int roomsources, int roomreceivers, const char* name) {
    check(RoomModel.faceCount == faces && RoomModel.sourceCount == roomsources &&
              RoomModel.receiverCount == roomreceivers,
          "the room was not read whole");
    checktitle(datafile(name));
}

} // namespace

void saveroom() {
    const std::vector<double> room = savedroom();
    const std::string path = sessionfile("saved.ray");
    answers::expectfile("Save a Orvanta CAD File", path, [](QWidget&) { picture("save-dialog"); });
    choose("Fsave");
    resetroom();
    answers::expectfile("Load a Orvanta CAD File", path);
    choose("FLoad");
    check(savedroom() == room, "the saved room is not the one that was shown");
}

void importdrawing() {
    answers::expectfile("Load an AutoCAD (TM) DXF File", datafile("studio.dxf"));
    answers::expectbox("planarity check on 3DFACE entities", platform::answer::yes,
                       [](QWidget&) { picture("dxf-question"); });
    choose("DXFIN");
    check(RoomModel.faceCount == 11 && RoomModel.holeFace(1) == 2 && RoomModel.doorFace(1) == 5,
          "the drawing was not read whole");
    checktitle(datafile("studio.dxf"));
    replacefile(sessionfile("dxf-log.txt"), MainWindow->logtext);
}

// A triangle comes back with a fourth corner, so that the second drawing is compared.
void exportdrawing() {
    const std::string path = sessionfile("exported.dxf");
    const auto exportandimport = [&path](const answers::look& look) {
        answers::expectfile("Save a .DXF AutoCAD File", path, look);
        choose("DXFOUT");
        answers::expectfile("Load an AutoCAD (TM) DXF File", path);
        answers::expectbox("planarity check", platform::answer::no);
        choose("DXFIN");
    };
    exportandimport([](QWidget&) { picture("dxf-save-dialog"); });
    const std::vector<double> room = savedroom();
    std::filesystem::remove(path);
    exportandimport({});
    check(savedroom() == room, "the exported room is not the one that was shown");
}

void drawingin3d() {
    const std::size_t before = picturesum();
    choose("Redraw");
    checkredrawn(before);
}

void importcatt() {
    answers::expectfile("Load a Catt Acoustics .GEO File", datafile("lecture.geo"));
    choose("ImportCatt");
    checkroom(12, 1, 16, "lecture.ray");
    replacefile(sessionfile("catt.txt"), MainWindow->logtext);
}

// Both the file for the other program and the one that this program keeps give the same room.
void exportcatt() {
    const std::vector<double> room = savedroom();
    const std::string exported = sessionfile("lecture.geo"), saved = sessionfile("lecture.ray");
    answers::expectfile("Save a .GEO File for Catt Acoustics", exported);
    choose("ExportCatt");
    resetroom();
    answers::expectfile("Load a Catt Acoustics .GEO File", exported);
    choose("ImportCatt");
    check(savedroom() == room, "the exported room is not the one that was shown");
    answers::expectfile("Save a Orvanta CAD File", saved);
    choose("Fsave");
    resetroom();
    answers::expectfile("Load a Orvanta CAD File", saved);
    choose("FLoad");
    check(savedroom() == room, "the saved room is not the one that was imported");
}

void importnastran() {
    answers::expectfile("Load a Nastran NAS File", datafile("rotunda.nas"));
    choose("ImportNastran");
    checkroom(432, 0, 0, "rotunda.ray");
    replacefile(sessionfile("nastran.txt"), MainWindow->logtext);
    check(!isenabled("MapOptions"), "a result is still in memory");
}

// Its entry is not shown.
void importrayons() {
    answers::expectfile("Load a Rayons GEO File", datafile("booth.geo"));
    runcommand("ImporRayonGeo");
    checkroom(7, 1, 2, "booth.ray");
}

} // namespace orv::tour
