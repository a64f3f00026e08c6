// The settings file.
#include "shell/settings.h"

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/listinput.h"
#include "base/listoutput.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "results/resultset.h"
#include "shell/sessionstate.h"

namespace orv {

namespace {

constexpr std::size_t keylength = 4;

struct setting {
    std::string_view key;
    void (*store)(double value);
};
constexpr setting knownsettings[] = {
    {"Leve", [](double value) { SessionState.levelSetting = value; }},
    {"Time", [](double value) { ResultSet.responseLength = value; }},
    {"Prec", [](double value) { ResultSet.timeStep = single(value); }},
    {"Hist", [](double value) { SessionState.historySetting = value; }},
    {"Humi", [](double value) { SessionState.humidity = single(value); }},
    {"Temp", [](double value) { SessionState.temperature = single(value); }},
    {"Alfa", [](double value) { ResultSet.alfaConstant = single(value); }},
    {"Beta", [](double value) { ResultSet.betaConstant = single(value); }},
};

std::string changedline(std::string_view line, std::string_view value, behindvalue rest) {
    // A line without "=" is all value, so that nothing of it stays in front.
    const std::size_t mark = line.find('=');
    const std::size_t front = mark == std::string_view::npos ? 0 : mark + 1;
    std::string changed(line.substr(0, front));
    changed += value;
    if (rest == behindvalue::kept) {
        const std::string_view old = trimfront(line.substr(front));
        const std::size_t blank = old.find(' ');
        if (blank != std::string_view::npos) changed += old.substr(blank);
    }
    return changed;
}

} // namespace

std::string settingsfile() {
    return existingpath(joinpath(SessionState.dataDirectory, "orvanta.ini"));
}

void applysetting(std::string_view line) {
    for (const setting& known : knownsettings)
        if (line.substr(0, keylength) == known.key) known.store(lenientnumber(behindmark(line, '=')));
}

void readsettings() {
    const std::string path = settingsfile();
    const filebytes bytes = readfile(path);
    listreader reader = openlist(bytes, pagetext(path));
    while (!atend(reader)) attempt([&] { applysetting(readline(reader)); });
}

void updatesettings(std::initializer_list<settingchange> changes, behindvalue rest) {
    const std::string path = settingsfile();
    const filebytes bytes = readfile(path);
    listreader reader = openlist(bytes, pagetext(path));
    std::string text;
    for (int lines = 0; !atend(reader); ++lines) {
        if (lines == settinglines)
            inputfailure(reader, errorkind::subscript,
                         "subscript out of range, a settings file has at most " +
                             std::to_string(settinglines) + " lines");
        const std::string_view line = readline(reader);
        std::string written(line);
        for (const settingchange& change : changes)
            if (line.substr(0, keylength) == change.key) written = changedline(line, change.value, rest);
        text.append(written).append(lineend);
    }
    replacefile(path, text);
}

} // namespace orv
