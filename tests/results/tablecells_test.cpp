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
    const std::size_t last = parameterNames.size() - 1;
    std::map<std::string_view, std::string> shown;
    const auto fill = [](auto& table) { table(1, 4) = 0.12345F; };
    fill(P.Leq), fill(P.Ldir), fill(P.Lrev), fill(P.LdirLrev), fill(P.LeqLw), fill(P.C50), fill(P.C80);
    fill(P.Ts), fill(P.Aeq), fill(P.Aeq2), fill(P.ITDGeq), fill(P.EDT), fill(P.T10), fill(P.T15), fill(P.T20);
    fill(P.T30), fill(P.LE), fill(P.LF), fill(P.LFC), fill(P.STI);
    for (std::size_t i = 1; i <= last; ++i) shown[parameterNames[i]] = cell(parameterNames[i], 1, 4);
    for (const char* name : {"Leq", "Ldir", "Lrev", "Ldir-Lrev", "Leq-Lw", "Ts"})
        EXPECT_EQ(shown[name], "0.1");
    for (const char* name : {"EDT", "T10", "T15", "T20", "T30", "C50", "C80", "Aeq", "STI"})
        EXPECT_EQ(shown[name], "0.12") << name;
    for (const char* name : {"LE", "LF", "LFC"})
        EXPECT_EQ(shown[name], "12.35") << name; // 12.345 of seven digits
    EXPECT_EQ(shown["G"], "31.1");
    EXPECT_EQ(shown["D50"], "50.71");
    EXPECT_EQ(shown.size(), 20U);
    for (const char* name : {"Aeq2", "ITDGeq", "", "leq"}) EXPECT_EQ(cell(name, 1, 4), "as before") << name;
}

TEST_F(tablecells, ValuesAreShownFromTheirDigits) {
    P.C50(1, 4) = -0.004F;
    EXPECT_EQ(cell("C50", 1, 4), "-0.00");
    P.Leq(1, 4) = -123456.75F; // seven digits, wider than the pattern
    EXPECT_EQ(cell("Leq", 1, 4), "-123456.8");
    P.Leq(1, 4) = 0.35F; // a half by its digits, below one as stored
    EXPECT_EQ(cell("Leq", 1, 4), "0.4");
    P.LeqLw(1, 4) = -31.000001F;
    EXPECT_EQ(cell("G", 1, 4), "-0.0");
    P.C50(1, 4) = -400;
    EXPECT_EQ(cell("D50", 1, 4), "0.00");
    P.LF(1, 4) = 0.00005F;
    EXPECT_EQ(cell("LF", 1, 4), "0.01");
}

TEST_F(tablecells, TheSpeechIndexHasNineBands) {
    for (int band = 1; band <= 12; ++band) P.STI(1, band) = 0.5F;
    for (int band = 1; band <= 12; ++band)
        EXPECT_EQ(cell("STI", 1, band), band < 3 || band == 10 ? "" : "0.50") << band;
}

TEST_F(tablecells, OutsideTheTablesIsAnError) {
    for (const auto& [receiver, band] : {std::pair{-1, 3}, {100001, 3}, {0, 13}, {0, -1}}) {
        std::string text = "kept";
        EXPECT_THROW(filltablecell(text, "Leq", receiver, band), runtimeerror);
        EXPECT_EQ(text, "kept");
    }
    const parametergrid one = grid("Leq");
    EXPECT_THROW(gridcell(one, 4, 0), runtimeerror);
    EXPECT_THROW(gridcell(one, 0, 13), runtimeerror);
    EXPECT_THROW(gridcell(one, -1, 0), runtimeerror);
}

TEST_F(tablecells, OneParameterForAllReceivers) {
    P.T20(0, 1) = 1.25F;
    P.T20(2, 12) = -1;
    const parametergrid table = grid("T20");
    EXPECT_EQ(table.rows, 4);
    EXPECT_EQ(table.columns, 13);
    EXPECT_EQ(gridtitle(table), "Table of T20");
    EXPECT_EQ(selectionlabel(table), "");
    EXPECT_EQ(selectioncount(table), 0);
    const std::string zeros = "\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00";
    EXPECT_EQ(gridtext(table), "\t31.5\t63\t125\t250\t500\t1000\t2000\t4000\t8000\t16000\tA\tLin\r\n"
                               "Room\t1.25" +
                                   zeros + "\r\n 1\t0.00" + zeros + "\r\n 2" + zeros + "\t-1.00");
    EXPECT_TRUE(gridtext(grid("STI"))
                    .starts_with("\t31.5\t63\t125\t250\t500\t1000\t2000\t4000\t8000\t16000\t"
                                 "STImale\tSTIfemale\r\nRoom\t\t\t0.00"));
    // Headings and no values; meant.
    EXPECT_TRUE(gridtext(grid("Aeq2"))
                    .ends_with("\r\nRoom\t\t\t\t\t\t\t\t\t\t\t\t\r\n 1\t\t\t\t\t\t\t\t\t\t\t\t\r\n"
                               " 2\t\t\t\t\t\t\t\t\t\t\t\t"));
}

TEST_F(tablecells, AllParametersOfOneReceiver) {
    for (int r = 0; r <= 3; ++r) P.Leq(r, 1) = static_cast<float>(10 * r + 5);
    parametergrid table = grid("SingleRec");
    EXPECT_EQ(table.rows, 21);
    EXPECT_EQ(table.columns, 13);
    EXPECT_EQ(gridtitle(table), "Table of SingleRec");
    EXPECT_EQ(selectionlabel(table), "Receiver n.");
    EXPECT_EQ(selectioncount(table), 2);
    EXPECT_EQ(selectionentry(table, 1), "2");
    EXPECT_EQ(firstselection(table), 0);
    EXPECT_EQ(gridcell(table, 1, 0), "Leq");
    EXPECT_EQ(gridcell(table, 20, 0), "LFC");
    EXPECT_EQ(gridcell(table, 0, 12), "Lin"); // also beside the speech index
    EXPECT_EQ(gridcell(table, 1, 1), "");     // nothing chosen yet

    scripted::clearcalls();
    chooseentry(table, 1);
    EXPECT_EQ(gridcell(table, 1, 1), "25.0");
    EXPECT_EQ(gridcell(table, 17, 1), ""); // STI has no 31.5 Hz
    const struct {
        const char *typed, *shown;
    } cases[] = {{"0", "5.0"},   {" 1", "15.0"}, {"3", "35.0"},   {"2.6", "35.0"},
                 {"abc", "5.0"}, {"", "5.0"},    {"99999", "0.0"}};
    for (const auto& each : cases) {
        typereceiver(table, each.typed);
        EXPECT_EQ(gridcell(table, 1, 1), each.shown) << each.typed;
    }
    EXPECT_EQ(scripted::countcalls("beep"), 1 + std::size(cases));
    for (const char* typed : {"-1", "100001", "1E9", "1E99"})
        EXPECT_THROW(typereceiver(table, typed), runtimeerror);
    EXPECT_EQ(table.chosen, 99999); // as before the error
}

TEST_F(tablecells, ASetOfParametersInOneBand) {
    P.T20(2, 3) = 1.5F;
    P.LeqLw(1, 12) = -60;
    parametergrid table = grid("RoundRobin");
    EXPECT_EQ(table.rows, 10);
    EXPECT_EQ(table.columns, 3);
    EXPECT_EQ(selectionlabel(table), "Frequency");
    EXPECT_EQ(selectioncount(table), 12);
    EXPECT_EQ(selectionentry(table, 0), "31.5");
    EXPECT_EQ(selectionentry(table, 11), "Lin");
    EXPECT_EQ(selectionentry(table, firstselection(table)), "125");
    chooseentry(table, firstselection(table));
    EXPECT_EQ(gridtext(table), "\tR1\tR2\r\nLeq\t0.0\t0.0\r\nT20\t0.00\t1.50\r\nEDT\t0.00\t0.00\r\n"
                               "D50\t50.00\t50.00\r\nC80\t0.00\t0.00\r\nTs\t0.0\t0.0\r\nG\t31.0\t31.0\r\n"
                               "LF\t0.00\t0.00\r\nLFC\t0.00\t0.00");
    chooseentry(table, 11);
    EXPECT_EQ(gridcell(table, 7, 1), "-29.0");
    EXPECT_TRUE(scripted::called("beep"));

    RoomModel.receiverCount = 0;
    EXPECT_EQ(grid("RoundRobin").columns, 1);
    RoomModel.receiverCount = 500; // more than twenty columns
    EXPECT_EQ(gridcell(grid("RoundRobin"), 0, 500), "R500");
}

TEST_F(tablecells, TheCopyHasEveryCell) {
    for (int r = 0; r <= 2; ++r)
        for (int b = 1; b <= 12; ++b) P.Leq(r, b) = P.LF(r, b) = static_cast<float>(r + b);
    for (const char* mode : {"Leq", "STI", "ITDGeq", "SingleRec", "RoundRobin"}) {
        parametergrid table = grid(mode);
        if (selectioncount(table) > 0) chooseentry(table, 1);
        std::string text;
        for (int row = 0; row < table.rows; ++row)
            for (int column = 0; column < table.columns; ++column)
                text += (column > 0 ? "\t" : row > 0 ? "\r\n" : "") + gridcell(table, row, column);
        EXPECT_EQ(gridtext(table), text) << mode;
    }
}

TEST_F(tablecells, EveryMenuEntryOpensItsTable) {
    const std::pair<const char*, const char*> entries[] = {{"SingleRec", "SingleRec"},
                                                           {"R_Robin", "RoundRobin"},
                                                           {"T_SPL", "Leq"},
                                                           {"T_Ldir", "Ldir"},
                                                           {"T_Lrev", "Lrev"},
                                                           {"T_RD", "Ldir-Lrev"},
                                                           {"T_LpLw", "Leq-Lw"},
                                                           {"T_G", "G"},
                                                           {"T_EDT", "EDT"},
                                                           {"T_T10", "T10"},
                                                           {"T_T15", "T15"},
                                                           {"T_T20", "T20"},
                                                           {"T_T30", "T30"},
                                                           {"T_C50", "C50"},
                                                           {"T_C80", "C80"},
                                                           {"T_D", "D50"},
                                                           {"T_Tbar", "Ts"},
                                                           {"T_Aeq", "Aeq"},
                                                           {"T_STI", "STI"},
                                                           {"T_LE", "LE"},
                                                           {"T_LF", "LF"},
                                                           {"T_LFC", "LFC"},
                                                           {"T_Aeq2", "Aeq2"},
                                                           {"T_ITDGeq", "ITDGeq"}};
    std::size_t shown = 0;
    for (const menucommand& row : menucommands()) shown += row.menu == "tabl" && !row.name.empty();
    EXPECT_EQ(shown, std::size(entries));
    enablecommand("T_LF", true);
    enablecommand("T_LFC", true);
    for (const auto& [name, mode] : entries) {
        std::string opened;
        scripted::expectwindow("Table", [&] { opened = SessionState.tableMode; });
        runcommand(name);
        EXPECT_EQ(opened, mode);
    }
    EXPECT_EQ(scripted::countcalls("window Table modal"), std::size(entries));
}

} // namespace

} // namespace orv
