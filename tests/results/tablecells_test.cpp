// The table window's contents: the cells of every parameter, the three arrangements and the copied text.
#include "results/tablecells.h"

#include "base/runtimeerror.h"
#include "tests/testsupport.h"

#include <map>

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

TEST_F(tablecells, EveryParameterHasItsForm) {
    const auto fill = [](auto& table) { table(1, 4) = 0.12345F; };
    fill(P.Leq), fill(P.Ldir), fill(P.Lrev), fill(P.LdirLrev), fill(P.LeqLw), fill(P.C50), fill(P.C80);
    fill(P.Ts), fill(P.Aeq), fill(P.Aeq2), fill(P.ITDGeq), fill(P.EDT), fill(P.T10), fill(P.T15), fill(P.T20);
    fill(P.T30), fill(P.LE), fill(P.LF), fill(P.LFC), fill(P.STI);
    const std::pair<std::vector<const char*>, const char*> cases[] = {
        {{"Leq", "Ldir", "Lrev", "Ldir-Lrev", "Leq-Lw", "Ts"}, "0.1"},
        {{"EDT", "T10", "T15", "T20", "T30", "C50", "C80", "Aeq", "STI"}, "0.12"},
        {{"LE", "LF", "LFC"}, "12.35"}, // 12.345 of seven digits
        {{"G"}, "31.1"},
        {{"D50"}, "50.71"},
        {{"Aeq2", "ITDGeq", "", "leq"}, "as before"}};
    for (const auto& [names, shown] : cases)
        for (const char* name : names) EXPECT_EQ(cell(name, 1, 4), shown) << name;
    P.Leq(1, 4) = -123456.75F; // seven digits, wider than the pattern
    EXPECT_EQ(cell("Leq", 1, 4), "-123456.8");
    P.Leq(1, 4) = 0.35F; // a half by its digits, below one as stored
    EXPECT_EQ(cell("Leq", 1, 4), "0.4");
}

TEST_F(tablecells, OutsideTheTablesIsAnError) {
    for (const auto& [receiver, band] : {std::pair{-1, 3}, {100001, 3}, {0, 13}, {0, -1}})
        EXPECT_THROW(cell("Leq", receiver, band), runtimeerror);
}

TEST_F(tablecells, OneParameterForAllReceivers) {
    P.T20(0, 1) = 1.25F;
    P.T20(2, 12) = -1;
    const parametergrid table = grid("T20");
    EXPECT_EQ(gridtitle(table), "Table of T20");
    EXPECT_EQ(selectioncount(table), 0);
    const std::string zeros = "\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00";
    EXPECT_EQ(gridtext(table), "\t31.5\t63\t125\t250\t500\t1000\t2000\t4000\t8000\t16000\tA\tLin\r\n"
                               "Room\t1.25" +
                                   zeros + "\r\n 1\t0.00" + zeros + "\r\n 2" + zeros + "\t-1.00");
    // The speech index has nine bands and headings of its own; others have no values, which is meant.
    EXPECT_TRUE(gridtext(grid("STI"))
                    .ends_with("\t16000\tSTImale\tSTIfemale\r\n"
                               "Room\t\t\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t\t0.00\t0.00\r\n"
                               " 1\t\t\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t\t0.00\t0.00\r\n"
                               " 2\t\t\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t\t0.00\t0.00"));
    EXPECT_TRUE(gridtext(grid("Aeq2")).ends_with("\r\n 2\t\t\t\t\t\t\t\t\t\t\t\t"));
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
    P.T20(2, 3) = 1.5F;
    P.LeqLw(1, 12) = -60;
    parametergrid table = grid("RoundRobin");
    EXPECT_EQ(selectionlabel(table), "Frequency");
    EXPECT_EQ(selectioncount(table), 12);
    EXPECT_EQ(selectionentry(table, firstselection(table)), "125");
    chooseentry(table, firstselection(table));
    EXPECT_EQ(gridtext(table), "\tR1\tR2\r\nLeq\t0.0\t0.0\r\nT20\t0.00\t1.50\r\nEDT\t0.00\t0.00\r\n"
                               "D50\t50.00\t50.00\r\nC80\t0.00\t0.00\r\nTs\t0.0\t0.0\r\nG\t31.0\t31.0\r\n"
                               "LF\t0.00\t0.00\r\nLFC\t0.00\t0.00");
    chooseentry(table, 11);
    EXPECT_EQ(gridcell(table, 7, 1), "-29.0");
    RoomModel.receiverCount = 500; // more than twenty columns
    EXPECT_EQ(gridcell(grid("RoundRobin"), 0, 500), "R500");
}

// All but those whose name says it: T_ and the name of the parameter.
TEST_F(tablecells, EveryMenuEntryOpensItsTable) {
    const std::map<std::string_view, std::string_view> others = {{"SingleRec", "SingleRec"},
                                                                 {"R_Robin", "RoundRobin"},
                                                                 {"T_SPL", "Leq"},
                                                                 {"T_RD", "Ldir-Lrev"},
                                                                 {"T_LpLw", "Leq-Lw"},
                                                                 {"T_D", "D50"},
                                                                 {"T_Tbar", "Ts"}};
    enablecommand("T_LF", true);
    enablecommand("T_LFC", true);
    for (const menucommand& row : menucommands()) {
        if (row.menu != "tabl" || row.name.empty()) continue;
        const auto other = others.find(row.name);
        scripted::expectwindow("Table", [&] {
            EXPECT_EQ(SessionState.tableMode, other != others.end() ? other->second : row.name.substr(2));
        });
        runcommand(row.name);
    }
}

} // namespace

} // namespace orv
