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

TEST_F(noisegrids, ShowsTheLevels) {
    const std::array<std::string, 8> expected = {"SPL (dB)", "45", "40.5", "", "33.3", "30", "", "100"};
    EXPECT_EQ(grid.cell, expected);
    EXPECT_TRUE(idle());
}

TEST_F(noisegrids, TheFirstKeyEmptiesTheCell) {
    type(2, "6");
    EXPECT_EQ(grid.cell[2], "6");
    EXPECT_EQ(grid.column, 2);
    type(2, "2.5");
    EXPECT_EQ(grid.cell[2], "62.5");
    EXPECT_EQ(level(2), 40.5F); // not stored yet
    type(2, "-+eE ,a\t");
    EXPECT_EQ(grid.cell[2], "62.5"); // no sign, no letter
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

TEST_F(noisegrids, ArrowsAndPagesStoreAndEnd) {
    for (const int key : {32, 33, 40, 41}) {
        const bool moves = key == 33 || key == 40;
        type(3, "5.125");
        noisemove(grid, key);
        EXPECT_EQ(idle(), moves) << key;
        EXPECT_EQ(grid.cell[3], moves ? "5.13" : "5.125") << key;
        EXPECT_EQ(level(3), moves ? 5.125F : 0.0F) << key;
        noiseenter(grid);
        SessionState.noiseLevel[2] = 0;
    }
}

TEST_F(noisegrids, LeavingACellStores) {
    type(5, "28.456");
    noiseleave(grid, 0); // the fixed column is no cell
    EXPECT_FALSE(idle());
    noiseleave(grid, 5);
    EXPECT_EQ(grid.cell[5], "28.46");
    EXPECT_EQ(level(5), 28.456F);
    EXPECT_TRUE(idle());
}

TEST_F(noisegrids, EnteringACellForgetsTheEntry) {
    type(5, "28");
    noiseenter(grid);
    EXPECT_TRUE(idle());
    EXPECT_EQ(level(5), 30.0F);
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
