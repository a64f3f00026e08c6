// The table window's contents: the cells of every parameter, the three arrangements and the copied text.
#include "results/tablecells.h"

#include "base/runtimeerror.h"
#include "results/parameterfile.h"
#include "tests/golden.h"

namespace orv {

namespace {

auto& P = ParameterSet;

struct tablecells : sessiontest {
    tablecells() {
        clearparameters(4);
        RoomModel.receiverCount = 2;
    }

    static parametergrid grid(const char* mode) {
        SessionState.tableMode = mode;
        return opengrid();
    }

    static std::string cell(std::string_view parameter, int receiver, int band) {
        std::string text = "as before";
        filltablecell(text, parameter, receiver, band);
        return text;
    }
};

TEST_F(tablecells, RoundsItsSevenDigits) {
    P.LE(1, 4) = 0.12345F;
    EXPECT_EQ(cell("LE", 1, 4), "12.35");
    P.Leq(1, 4) = -123456.75F; // wider than the pattern
    EXPECT_EQ(cell("Leq", 1, 4), "-123456.8");
    P.Leq(1, 4) = 0.35F; // a half by its digits, below one as stored
    EXPECT_EQ(cell("Leq", 1, 4), "0.4");
    for (const char* none : {"Aeq2", "ITDGeq", "", "leq"}) EXPECT_EQ(cell(none, 1, 4), "as before") << none;
}

TEST_F(tablecells, OutsideTheTablesIsAnError) {
    for (const auto& [receiver, band] : {std::pair{-1, 3}, {100001, 3}, {0, 13}, {0, -1}})
        EXPECT_THROW(cell("Leq", receiver, band), runtimeerror);
}

// Title and copied text of what every menu entry opens, those of a receiver and of a band with a choice made.
// The speech index has nine bands and headings of its own; some others have no values, which is meant.
TEST_F(tablecells, EveryMenuEntryOpensItsTable) {
    loadparameters(TEST_FILES "/golden/parameters.-01");
    enablecommand("T_LF", true);
    enablecommand("T_LFC", true);
    std::string shown;
    for (const menucommand& row : menucommands()) {
        if (row.menu != "tabl" || row.name.empty()) continue;
        scripted::expectwindow("Table", [&] {
            parametergrid table = opengrid();
            if (selectioncount(table) > 0) chooseentry(table, std::max(firstselection(table), 1));
            shown.append(row.name).append(": ").append(gridtitle(table)).append("\r\n");
            shown.append(gridtext(table)).append("\r\n");
        });
        runcommand(row.name);
    }
    expectgolden("tables.txt", shown);
}

TEST_F(tablecells, AllParametersOfOneReceiver) {
    for (int r = 0; r <= 3; ++r) P.Leq(r, 1) = static_cast<float>(10 * r + 5);
    parametergrid table = grid("SingleRec");
    EXPECT_EQ(selectionlabel(table), "Receiver n.");
    EXPECT_EQ(selectioncount(table), 2);
    EXPECT_EQ(gridcell(table, 20, 0), "LFC");
    EXPECT_EQ(gridcell(table, 0, 12), "Lin"); // also beside the speech index
    EXPECT_EQ(gridcell(table, 1, 1), "");     // nothing chosen yet
    chooseentry(table, 1);
    EXPECT_EQ(gridcell(table, 1, 1), "25.0");
    const std::pair<const char*, const char*> cases[] = {
        {"0", "5.0"}, {" 1", "15.0"}, {"2.6", "35.0"}, {"abc", "5.0"}, {"99999", "0.0"}};
    for (const auto& [typed, shown] : cases) {
        typereceiver(table, typed);
        EXPECT_EQ(gridcell(table, 1, 1), shown) << typed;
    }
    for (const char* typed : {"-1", "100001", "1E99"}) EXPECT_THROW(typereceiver(table, typed), runtimeerror);
    EXPECT_EQ(table.chosen, 99999); // as before the error
}

TEST_F(tablecells, ASetOfParametersInOneBand) {
    P.LeqLw(1, 12) = -60;
    parametergrid table = grid("RoundRobin");
    EXPECT_EQ(selectionlabel(table), "Frequency");
    EXPECT_EQ(selectioncount(table), 12);
    EXPECT_EQ(selectionentry(table, firstselection(table)), "125");
    chooseentry(table, 11);
    EXPECT_EQ(gridcell(table, 7, 1), "-29.0");
    RoomModel.receiverCount = 500; // more than twenty columns
    EXPECT_EQ(gridcell(grid("RoundRobin"), 0, 500), "R500");
}

} // namespace

} // namespace orv
