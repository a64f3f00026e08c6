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
#include <array>
#include <cmath>
#include <iterator>

namespace orv {

namespace {

constexpr double strengthoffset = 31; // dB: G refers to the level at 10 m in a free field (ISO 3382-1)
constexpr double percent = 100;
constexpr std::int32_t robinstart = 2; // 125 Hz

using at = std::int32_t;
const auto& P = ParameterSet;

float ratio(float stored) {
    return single(static_cast<double>(stored) * percent);
}

bool hasindex(at band) {
    return band >= 3 && band != 10;
}

// How each parameter is shown.
struct cellform {
    std::string_view name;
    std::string (*text)(at receiver, at band, std::string_view pattern);
    std::string_view pattern;
};
constexpr cellform cellforms[] = {
    {"Leq", [](at r, at b, std::string_view p) { return formatnumber(P.Leq(r, b), p); }, "##0.0"},
    {"Ldir", [](at r, at b, std::string_view p) { return formatnumber(P.Ldir(r, b), p); }, "##0.0"},
    {"Lrev", [](at r, at b, std::string_view p) { return formatnumber(P.Lrev(r, b), p); }, "##0.0"},
    {"Ldir-Lrev", [](at r, at b, std::string_view p) { return formatnumber(P.LdirLrev(r, b), p); }, "##0.0"},
    {"Leq-Lw", [](at r, at b, std::string_view p) { return formatnumber(P.LeqLw(r, b), p); }, "##0.0"},
    {"G",
     [](at r, at b, std::string_view p) {
         return formatnumber(single(static_cast<double>(P.LeqLw(r, b)) + strengthoffset), p);
     },
     "##0.0"},
    {"EDT", [](at r, at b, std::string_view p) { return formatnumber(P.EDT(r, b), p); }, "##0.00"},
    {"T10", [](at r, at b, std::string_view p) { return formatnumber(P.T10(r, b), p); }, "##0.00"},
    {"T15", [](at r, at b, std::string_view p) { return formatnumber(P.T15(r, b), p); }, "##0.00"},
    {"T20", [](at r, at b, std::string_view p) { return formatnumber(P.T20(r, b), p); }, "##0.00"},
    {"T30", [](at r, at b, std::string_view p) { return formatnumber(P.T30(r, b), p); }, "##0.00"},
    {"C50", [](at r, at b, std::string_view p) { return formatnumber(P.C50(r, b), p); }, "##0.00"},
    {"C80", [](at r, at b, std::string_view p) { return formatnumber(P.C80(r, b), p); }, "##0.00"},
    {"D50",
     [](at r, at b, std::string_view p) {
         return formatnumber(percent / (1 + std::pow(10.0, -static_cast<double>(P.C50(r, b)) / 10)), p);
     },
     "##0.00"},
    {"Ts", [](at r, at b, std::string_view p) { return formatnumber(P.Ts(r, b), p); }, "###0.0"},
    {"Aeq", [](at r, at b, std::string_view p) { return formatnumber(P.Aeq(r, b), p); }, "#0.00"},
    {"STI",
     [](at r, at b, std::string_view p) {
         return hasindex(b) ? formatnumber(P.STI(r, b), p) : std::string();
     },
     "#0.00"},
    {"LE", [](at r, at b, std::string_view p) { return formatnumber(ratio(P.LE(r, b)), p); }, "##0.00"},
    {"LF", [](at r, at b, std::string_view p) { return formatnumber(ratio(P.LF(r, b)), p); }, "##0.00"},
    {"LFC", [](at r, at b, std::string_view p) { return formatnumber(ratio(P.LFC(r, b)), p); }, "##0.00"},
};

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
    if (grid.kind != tablekind::roundrobin) return bandheading(grid, column);
    return "R" + std::to_string(column);
}

} // namespace

void filltablecell(std::string& cell, std::string_view parameter, std::int32_t receiver, std::int32_t band) {
    const auto* const form = std::find_if(std::begin(cellforms), std::end(cellforms),
                                          [&](const cellform& each) { return each.name == parameter; });
    if (form != std::end(cellforms)) cell = form->text(receiver, band, form->pattern);
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
    if (row == 0) return column == 0 ? std::string() : columnheading(grid, column);
    if (column == 0) return rowheading(grid, row);
    std::string cell;
    switch (grid.kind) {
    case tablekind::oneparameter:
        filltablecell(cell, grid.mode, row - 1, column);
        break;
    case tablekind::onereceiver:
        if (grid.chosen >= 0) filltablecell(cell, rowheading(grid, row), grid.chosen, column);
        break;
    case tablekind::roundrobin:
        if (grid.chosen >= 0) filltablecell(cell, rowheading(grid, row), column, grid.chosen);
        break;
    }
    return cell;
}

std::string gridtext(const parametergrid& grid) {
    std::string text;
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        if (row > 0) text += lineend;
        for (std::int32_t column = 0; column < grid.columns; ++column) {
            if (column > 0) text += '\t';
            text += gridcell(grid, row, column);
        }
    }
    return text;
}

void showtable(std::string_view mode) {
    SessionState.tableMode = mode;
    platform::showwindow("Table", true);
}

} // namespace orv
