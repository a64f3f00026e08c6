// The steps of the tour, by the file that they stand in.
#pragma once

namespace orv::tour {

// sessionsteps.cpp
void start();
void filemenu();
void cancelled();
void copypicture();
void print();
void about();
void helpkey();
void leave();

// resultsteps.cpp
void openresult();
void decaytable();
void onereceiver();
void roundrobin();
void speechindex();
void parametersalone();
void otherresult();
void roomelsewhere();

// exportsteps.cpp
void exportwav();

// responsesteps.cpp
void impulseresponse();
void raypaths();

// scenesteps.cpp
void sideview();
void longview();
void viewoptions();
void zoom();
void spatial();
void focallength();
void cameratyped();
void cameraspun();
void orbit();
void panned();

// mapsteps.cpp
void mappingoptions();
void rgbsettings();
void posted();
void mapinplan();
void mapinsection();
void contoursinplan();
void enterblankingline();
void blankedmap();
void surfermenu();
void mapinspace();
void mapinspacesection();
void contoursinspace();

// toolsteps.cpp
void sumsources();
void opensum();
void tuneconstants();

// roomsteps.cpp
void saveroom();
void importdrawing();
void exportdrawing();
void drawingin3d();
void importcatt();
void exportcatt();
void importnastran();
void importrayons();

} // namespace orv::tour
