// What the table window shows.
#include "results/tablecells.h"

#include "base/arithmetic.h"
#include "base/formatpattern.h"
#include "base/listoutput.h"
#include "base/numbertext.h"
#include "platform/platform.h"
#include "results/parameterset.h"
#include "room/roommodel.h"
#include "shell/sessionstate.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace orv {

namespace {

constexpr double percent = 100;
constexpr std::int32_t robinstart = 2; // 125 Hz

// How each parameter is shown: what puts its value behind a text.
using cellwriter = void (*)(std::string& text, std::int32_t receiver, std::int32_t band,
                            std::string_view pattern);
struct cellform {
    std::string_view name;
    cellwriter write;
    std::string_view pattern;
};

// A value as it is stored, and one times a hundred.
template <auto table>
void stored(std::string& text, std::int32_t receiver, std::int32_t band, std::string_view pattern) {
    appendformatted(text, (ParameterSet.*table)(receiver, band), pattern);
}
template <auto table>
void hundredfold(std::string& text, std::int32_t receiver, std::int32_t band, std::string_view pattern) {
    const float value = (ParameterSet.*table)(receiver, band);
    appendformatted(text, single(wide(value) * percent), pattern);
}

void strength(std::string& text, std::int32_t receiver, std::int32_t band, std::string_view pattern) {
    const auto level = wide(ParameterSet.LeqLw(receiver, band));
    appendformatted(text, single(level + strengthoffset), pattern);
}
void definition(std::string& text, std::int32_t receiver, std::int32_t band, std::string_view pattern) {
    const auto clarity = wide(ParameterSet.C50(receiver, band));
    appendformatted(text, percent / (1 + std::pow(10.0, -clarity / 10)), pattern);
}
void speechindex(std::string& text, std::int32_t receiver, std::int32_t band, std::string_view pattern) {
    const bool speech = band >= firstspeechband && band < firstspeechband + speechbands;
    if (speech || band > octavebands) appendformatted(text, ParameterSet.STI(receiver, band), pattern);
}

using P = parameterset;
constexpr cellform cellforms[] = {
    {"Leq", stored<&P::Leq>, "##0.0"},      {"Ldir", stored<&P::Ldir>, "##0.0"},
    {"Lrev", stored<&P::Lrev>, "##0.0"},    {"Ldir-Lrev", stored<&P::LdirLrev>, "##0.0"},
    {"Leq-Lw", stored<&P::LeqLw>, "##0.0"}, {"G", strength, "##0.0"},
    {"EDT", stored<&P::EDT>, "##0.00"},     {"T10", stored<&P::T10>, "##0.00"},
    {"T15", stored<&P::T15>, "##0.00"},     {"T20", stored<&P::T20>, "##0.00"},
    {"T30", stored<&P::T30>, "##0.00"},     {"C50", stored<&P::C50>, "##0.00"},
    {"C80", stored<&P::C80>, "##0.00"},     {"D50", definition, "##0.00"},
    {"Ts", stored<&P::Ts>, "###0.0"},       {"Aeq", stored<&P::Aeq>, "#0.00"},
    {"STI", speechindex, "#0.00"},          {"LE", hundredfold<&P::LE>, "##0.00"},
    {"LF", hundredfold<&P::LF>, "##0.00"},  {"LFC", hundredfold<&P::LFC>, "##0.00"},
};

// The form of a parameter, or null for a name that no table shows.
const cellform* formof(std::string_view parameter) {
    const auto* const form = std::find_if(std::begin(cellforms), std::end(cellforms),
                                          [&](const cellform& each) { return each.name == parameter; });
    return form == std::end(cellforms) ? nullptr : form;
}

constexpr std::string_view robinparameters[] = {"",    "Leq", "T20", "EDT", "D50",
                                                "C80", "Ts",  "G",   "LF",  "LFC"};

std::string bandheading(const parametergrid& grid, std::int32_t band) {
    if (grid.mode == "STI" && band == weightedband) return "STImale";
    if (grid.mode == "STI" && band == linearband) return "STIfemale";
    return std::string(bandName.at(static_cast<std::size_t>(band)));
}

std::string rowheading(const parametergrid& grid, std::int32_t row) {
    switch (grid.kind) {
    case tablekind::onereceiver:
        return std::string(parameterNames.at(static_cast<std::size_t>(row)));
    case tablekind::roundrobin:
        return std::string(robinparameters[row]);
    default:
        return row == 1 ? "Room" : wholetext(row - 1);
    }
}

std::string columnheading(const parametergrid& grid, std::int32_t column) {
    if (column == 0) return "";
    if (grid.kind != tablekind::roundrobin) return bandheading(grid, column);
    return "R" + std::to_string(column);
}

// The form of the values of a row 1.., or null where they are empty.
const cellform* rowform(const parametergrid& grid, std::int32_t row) {
    if (grid.kind == tablekind::oneparameter) return formof(grid.mode);
    return grid.chosen < 0 ? nullptr : formof(rowheading(grid, row));
}

// Puts the value of a row and column, both 1.., behind a text.
void appendvalue(std::string& text, const parametergrid& grid, const cellform& form, std::int32_t row,
                 std::int32_t column) {
    switch (grid.kind) {
    case tablekind::oneparameter:
        return form.write(text, row - 1, column, form.pattern);
    case tablekind::onereceiver:
        return form.write(text, grid.chosen, column, form.pattern);
    case tablekind::roundrobin:
        return form.write(text, column, grid.chosen, form.pattern);
    }
}

} // namespace

void filltablecell(std::string& cell, std::string_view parameter, std::int32_t receiver, std::int32_t band) {
    const cellform* const form = formof(parameter);
    if (!form) return;
    std::string text;
    form->write(text, receiver, band, form->pattern);
    cell = std::move(text);
}

parametergrid opengrid() {
    parametergrid grid;
    grid.mode = SessionState.tableMode;
    const std::int32_t N = std::max(RoomModel.receiverCount, 0);
    if (grid.mode == "SingleRec") {
        grid.kind = tablekind::onereceiver;
        grid.rows = static_cast<std::int32_t>(parameterNames.size());
        grid.columns = bandcount + 1;
    } else if (grid.mode == "RoundRobin") {
        grid.kind = tablekind::roundrobin;
        grid.rows = static_cast<std::int32_t>(std::size(robinparameters));
        grid.columns = N + 1;
    } else {
        grid.rows = N + 2;
        grid.columns = bandcount + 1;
    }
    return grid;
}

std::string gridtitle(const parametergrid& grid) {
    return "Table of " + grid.mode;
}

std::string selectionlabel(const parametergrid& grid) {
    switch (grid.kind) {
    case tablekind::onereceiver:
        return "Receiver n.";
    case tablekind::roundrobin:
        return "Frequency";
    default:
        return "";
    }
}

std::int32_t selectioncount(const parametergrid& grid) {
    switch (grid.kind) {
    case tablekind::onereceiver:
        return std::max(RoomModel.receiverCount, 0);
    case tablekind::roundrobin:
        return bandcount;
    default:
        return 0;
    }
}

std::string selectionentry(const parametergrid& grid, std::int32_t entry) {
    if (grid.kind == tablekind::roundrobin)
        return std::string(bandName.at(static_cast<std::size_t>(entry + 1)));
    return formatnumber(entry + 1, "#####");
}

std::int32_t firstselection(const parametergrid& grid) {
    return grid.kind == tablekind::roundrobin ? robinstart : 0;
}

void chooseentry(parametergrid& grid, std::int32_t entry) {
    platform::beep();
    grid.chosen = entry + 1;
}

void typereceiver(parametergrid& grid, const std::string& text) {
    platform::beep();
    const std::int32_t receiver = whole32(lenientnumber(text));
    if (receiver < 0 || receiver > highestreceiver)
        subscriptfailure("receiver", receiver, 0, highestreceiver);
    grid.chosen = receiver;
}

std::string gridcell(const parametergrid& grid, std::int32_t row, std::int32_t column) {
    if (row < 0 || row >= grid.rows) subscriptfailure("table row", row, 0, grid.rows - 1);
    if (column < 0 || column >= grid.columns) subscriptfailure("table column", column, 0, grid.columns - 1);
    if (row == 0) return columnheading(grid, column);
    if (column == 0) return rowheading(grid, row);
    std::string cell;
    if (const cellform* const form = rowform(grid, row)) appendvalue(cell, grid, *form, row, column);
    return cell;
}

std::string gridtext(const parametergrid& grid) {
    std::string text;
    const cellform* form = nullptr;
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        if (row > 0) {
            text += lineend;
            text += rowheading(grid, row);
        }
        if (row == 1 || (row > 1 && grid.kind != tablekind::oneparameter)) form = rowform(grid, row);
        for (std::int32_t column = 1; column < grid.columns; ++column) {
            text += '\t';
            if (row == 0)
                text += columnheading(grid, column);
            else if (form)
                appendvalue(text, grid, *form, row, column);
        }
    }
    return text;
}

void showtable(std::string_view mode) {
    SessionState.tableMode = mode;
    platform::showwindow("Table", true);
}

} // namespace orv
