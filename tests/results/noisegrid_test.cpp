// The grid of noise levels, key by key.
#include "results/noisegrid.h"

#include "tests/testsupport.h"

namespace orv {

namespace {

struct noisegrids : sessiontest {
    noisegrid grid;

    noisegrids() {
        SessionState.noiseLevel = {45, 40.5F, 0, 33.25F, 30, 0.04F, 100};
        grid = opennoisegrid();
    }

    void type(int column, const std::string& keys) {
        for (const char key : keys) noisecharacter(grid, column, key);
    }
    float level(int column) const { return SessionState.noiseLevel.at(static_cast<std::size_t>(column - 1)); }
    bool idle() const { return grid.column == 0 && grid.buffer.empty(); }
};

TEST_F(noisegrids, ShowsTheLevelsUntilTheFirstKeyEmptiesTheCell) {
    const std::array<std::string, 8> expected = {"SPL (dB)", "45", "40.5", "", "33.3", "30", "", "100"};
    EXPECT_EQ(grid.cell, expected);
    EXPECT_TRUE(idle());
    type(2, "6");
    EXPECT_EQ(grid.cell[2], "6");
    type(2, "2.5-+eE ,a\t"); // no sign, no letter
    EXPECT_EQ(grid.cell[2], "62.5");
    EXPECT_EQ(grid.column, 2);
    EXPECT_EQ(level(2), 40.5F); // not stored yet
    for (const int column : {-1, 0, 8}) type(column, "5");
    EXPECT_EQ(grid.cell[0], "SPL (dB)");
}

TEST_F(noisegrids, EnterStores) {
    const struct {
        const char *typed, *shown;
        float stored;
    } cases[] = {{"62.5", "62.5", 62.5F}, {"7.127", "7.13", 7.127F}, {".5", "0.5", 0.5F},
                 {"1.2.3", "1.2", 1.2F},  {"0", "0.0", 0},           {"12\b\b\b8", "8.0", 8}};
    for (const auto& each : cases) {
        type(4, each.typed);
        type(4, "\r");
        EXPECT_EQ(grid.cell[4], each.shown);
        EXPECT_EQ(level(4), each.stored);
        EXPECT_TRUE(idle());
        noiseleave(grid, 4); // a zero too: nothing is being typed any more
    }
    type(1, "\b\r"); // without an entry
    EXPECT_EQ(grid.cell[1], "45");
    EXPECT_EQ(level(1), 45.0F);
}

// Arrows up and down, pages, and leaving the cell store; the other keys do not, and entering a cell forgets.
TEST_F(noisegrids, MovingAwayStores) {
    const auto moving = [this](int key) { noisemove(grid, key); };
    const struct {
        std::function<void()> step;
        bool stores;
    } cases[] = {{[&] { moving(32); }, false},
                 {[&] { moving(33); }, true},
                 {[&] { moving(40); }, true},
                 {[&] { moving(41); }, false},
                 {[&] { noiseleave(grid, 3); }, true},
                 {[&] { noiseleave(grid, 0); }, false}}; // the fixed column is no cell
    for (const auto& [step, stores] : cases) {
        SessionState.noiseLevel[2] = 0;
        type(3, "5.125");
        step();
        EXPECT_EQ(idle(), stores);
        EXPECT_EQ(grid.cell[3], stores ? "5.13" : "5.125");
        EXPECT_EQ(level(3), stores ? 5.125F : 0.0F);
        noiseenter(grid);
        EXPECT_TRUE(idle());
    }
}

// Kept on purpose.
TEST_F(noisegrids, LeavingACellThatReadsAsZeroStopsTheProgram) {
    for (const char* typed : {"0", ".", "5\b"}) {
        noiseenter(grid);
        type(1, typed);
        scripted::clearcalls();
        EXPECT_THROW(noiseleave(grid, 1), scripted::halted) << typed;
        EXPECT_EQ(scripted::calls(), std::vector<std::string>{"halt 0"});
        EXPECT_EQ(level(1), 45.0F); // not stored
    }
}

} // namespace

} // namespace orv
