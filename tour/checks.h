// What steps of several subjects do and look at. For Qt files only.
#pragma once

#include "platform/platform.h"
#include "platform/qt/answers.h"

#include <cstddef>
#include <string>
#include <vector>

class QWidget;

namespace orv::tour {

constexpr int receivers = 30, sources = 2; // of the sample hall
constexpr int band1k = 6;

// What of the room a save keeps, number by number: all but the wall groups and the ray lines.
std::vector<double> savedroom();

void checktitle(const std::string& beginning);

// Something has been drawn since `before`, a former picturesum().
void checkredrawn(std::size_t before);

// Uses a control of the main window, which draws the picture anew.
void clickanddraw(const char* button);
void typeanddraw(const char* field, const char* text);

// Clicks a control of a dialog; a box only where it is not as wanted.
void clickin(const QWidget& dialog, const char* name);
void clickboxto(QWidget& dialog, const char* box, bool ticked);

// The dialogs that a load with responses brings: the options of the speech index, and whether to keep the
// parameters.
void expectspeechindex(platform::answer keep, answers::look options = {});

// The room's mean is that of a hall of this size and these materials.
void checkdecay();

} // namespace orv::tour
