// The parameter file: byte for byte, there and back, both layouts, and every way in which one can be damaged.
#include "results/parameterfile.h"

#include "shell/startup.h"
#include "tests/failures.h"
#include "tests/golden.h"

namespace orv {

namespace {

auto& P = ParameterSet;

// All twelve-band tables in the order of the file; the speech index is the fifteenth.
template <class visitor>
void eachtable(visitor visit) {
    visit(P.Leq), visit(P.Ldir), visit(P.Lrev), visit(P.LdirLrev), visit(P.LeqLw), visit(P.C50), visit(P.C80);
    visit(P.Ts), visit(P.Aeq), visit(P.LE), visit(P.LF), visit(P.LFC), visit(P.Aeq2), visit(P.ITDGeq);
    visit(P.STI), visit(P.EDT), visit(P.T10), visit(P.T15), visit(P.T20), visit(P.T30);
}

// The golden files' values tell table, receiver and band apart; their sign changes.
float marked(int table, int receiver, int band) {
    const auto value = static_cast<float>(10 * table + receiver + band / 8.0);
    return (table + band) % 2 != 0 ? -value : value;
}

void expectmarked(int receiver, const std::function<bool(int)>& held) {
    int number = 0;
    eachtable([&](const auto& table) {
        if (!held(++number)) return;
        for (int b = 1; b <= bandcount; ++b) {
            const bool stored = number != 15 || (b > 2 && b != 10); // bands of the speech index
            EXPECT_EQ(table(receiver, b), stored ? marked(number, receiver, b) : 0) << number << " " << b;
        }
    });
    EXPECT_EQ(P.modulationTransfer(receiver, 2, 3), static_cast<float>((98 * receiver + 10) / 64.0));
    EXPECT_EQ(P.modulationTransfer(receiver, 14, 6), static_cast<float>((98 * receiver + 97) / 64.0));
}

struct parameterfiles : sessiontest {
    std::string path = inside("hall.-01");

    parameterfiles() {
        computeconstants();
        forget();
    }

    // A session that has nothing of a file's contents.
    static void forget() {
        clearparameters(8);
        RoomModel.receiverCount = 0;
        sessionstate& s = SessionState;
        s.backgroundNoiseFlag = s.equalizeSpectrumFlag = s.forceVoiceSplFlag = 5;
        s.noiseLevel.fill(0);
        s.voiceCorrection.fill(0);
        s.geometryFileName = "none";
        s.parameterSource = 1;
    }

    // The golden file with fewer receivers.
    std::string savedtext(int receivers) {
        loadparameters(TEST_FILES "/golden/parameters.-01");
        RoomModel.receiverCount = receivers;
        saveparameters(path);
        return readtext(path);
    }

    // Loads a text into a session without any parameters.
    void loadtext(const std::string& text) {
        writetext(path, text);
        forget();
        loadparameters(path);
    }

    // What is written after it has been loaded.
    std::string savedagain(const std::string& text) {
        loadtext(text);
        saveparameters(path);
        return readtext(path);
    }
};

TEST_F(parameterfiles, AreReadAndWrittenByteForByte) {
    scripted::clearcalls();
    const std::string golden = TEST_FILES "/golden/parameters.-01";
    loadparameters(golden);
    EXPECT_EQ(scripted::calls()[0], "status 1|Loading acoustics parameters from " + golden + " ...");
    EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
    EXPECT_EQ(scripted::statustext(1) + scripted::statustext(2), "");
    EXPECT_EQ(RoomModel.receiverCount, 2);
    EXPECT_EQ(SessionState.geometryFileName, "Z\xC3\xBCrich ?.ray");
    EXPECT_EQ(SessionState.parameterSource, -1.0F);
    expectmarked(2, [](int) { return true; });
    P.STI(2, 1) = P.STI(2, 2) = P.STI(2, 10) = 77; // not in the file
    P.Leq(1, 1) = -0.0F;
    SessionState.geometryFileName = "Z\xC3\xBCrich \xE2\x88\x9E.ray"; // the page has not the last letter
    scripted::clearcalls();
    saveparameters("hall._01");
    expectgolden("parameters.-01", readtext("hall.-01"));
    EXPECT_TRUE(scripted::called("status 1|Saving parameters to hall.-01 ..."));
    const auto steps = scripted::callswith("status 2| ");
    EXPECT_EQ(steps.size(), 22U + 3); // the tables, and every receiver's modulation
    EXPECT_EQ(steps.back(), "status 2| 100%");
    const std::string roomonly = savedtext(0); // the room's row is still in every table
    EXPECT_EQ(savedagain(roomonly), roomonly);
}

// A file of the versions that ended behind the spectra, and one whose tail is short against the rest.
TEST_F(parameterfiles, DecayTimesFollowBelowNinetyNinePerCent) {
    const std::string text = savedtext(1);
    const std::size_t tail = text.find("\"Parameter =\",\"EDT\"");
    const std::size_t second = text.find('\n') + 1, third = text.find('\n', second) + 1;
    // The text with a second line so long that the tail is that share of the file.
    const auto padded = [&](double share) {
        const auto whole = static_cast<std::size_t>(static_cast<double>(text.size() - tail) / share);
        return text.substr(0, second) + std::string(whole - text.size(), 'x') + "\r\n" + text.substr(third);
    };
    const std::pair<std::string, bool> cases[] = {
        {text.substr(0, tail), false}, {padded(0.009), false}, {padded(0.011), true}};
    for (const auto& [whole, held] : cases) {
        loadtext(whole);
        EXPECT_EQ(P.EDT(0, 1), held ? marked(16, 0, 1) : 0.0F);
        EXPECT_EQ(P.T30(1, 12), held ? marked(20, 1, 12) : 0.0F);
        EXPECT_EQ(SessionState.voiceCorrection[0], -3.0F); // of the spectra before it
    }
}

TEST_F(parameterfiles, ReadOtherFormsOfTheirFields) {
    const std::string written = savedtext(2);
    std::string text = written;
    const std::pair<std::string, std::string> changes[] = {
        {"\"New File Format - Version 1.7 and above!\"", "whatever stands here"}, // is no test
        {"\"Parameter =\",\"Leq\"", "titles are counted, not read"},
        {" 0 , 30.125,-30.25,", "0,3.0125E1 ,  -302.5d-1 ,\t"}};
    for (const auto& [old, fresh] : changes) text.replace(text.find(old), old.size(), fresh);
    EXPECT_EQ(savedagain(text), written);
    std::erase(text, '\r');
    EXPECT_EQ(savedagain(text), written);
    // A row goes where its number says, and one of the last receiver or above ends its table.
    text.replace(text.find("\n 2 ,"), 5, "\n 4 ,");
    loadtext(text);
    EXPECT_EQ(P.Leq(4, 1), marked(1, 2, 1));
    EXPECT_EQ(P.Leq(2, 1), 0.0F);
    EXPECT_EQ(P.Ldir(2, 1), marked(2, 2, 1));
}

// --- The older layout ---

struct olderfiles : parameterfiles {
    std::string text = readtext(TEST_FILES "/golden/older.-07");

    olderfiles() {
        writetext(path, text);
        SessionState.backgroundNoiseFlag = SessionState.equalizeSpectrumFlag =
            SessionState.forceVoiceSplFlag = 0;
        P.LF(1, 1) = P.EDT(2, 12) = 0.25F; // which the older layout has not
    }

    void convert(platform::answer given) {
        scripted::expectwindow("STI Options");
        scripted::expectbox("Warning", given);
        loadparameters(path);
    }
};

TEST_F(olderfiles, AreReadAndKeptWhenTheUserCancels) {
    RoomModel.receiverCount = 2;
    convert(platform::answer::cancel);
    for (int r = 0; r <= 2; ++r)
        expectmarked(r, [](int table) { return table <= 14 && table != 11 && table != 12; });
    EXPECT_EQ(P.LF(1, 1), 0.25F);
    EXPECT_GT(P.STI(1, 11), 0.0F); // computed
    EXPECT_EQ(SessionState.geometryFileName, "C:\\halls\\Stage.RAY");
    EXPECT_EQ(SessionState.parameterSource, -1.0F);
    EXPECT_EQ(readtext(path), text);
    EXPECT_FALSE(canopen(path + ".old"));
    EXPECT_TRUE(scripted::called("box|Warning|STI values have been calculated - Do You want to update the "
                                 "compressed parameter file with new file format?|okcancel|exclamation|ok"));
}

TEST_F(olderfiles, AreRewrittenBesideACopy) {
    RoomModel.receiverCount = 1; // stays, so that fewer receivers are written than the old file held
    convert(platform::answer::ok);
    EXPECT_EQ(readtext(path + ".old"), text);
    const std::string fresh = readtext(path);
    EXPECT_NE(fresh.find("from file:\",\"" + path + "\"\r\n"), std::string::npos); // its own name
    loadtext(fresh);
    EXPECT_EQ(RoomModel.receiverCount, 1);
    EXPECT_EQ(P.LF(1, 1), 0.25F); // as it stood in memory
    EXPECT_EQ(P.ITDGeq(1, 12), marked(14, 1, 12));
    EXPECT_GT(P.STI(1, 11), 0.0F);
}

// --- Damaged files ---

// A beginning of a file fails with file and line, and stays as it is. Only behind the spectra with about a
// per cent of decay times, and within the very last number, it may count as whole.
TEST_F(parameterfiles, CutAnywhereNameFileAndLine) {
    const std::string text = savedtext(0);
    const std::size_t tail = text.find("\"Parameter =\",\"EDT\""), lastcomma = text.rfind(',');
    for (std::size_t cut = 0; cut < text.size(); ++cut) {
        const std::string part = text.substr(0, cut);
        writetext(path, part);
        try {
            loadparameters(path);
            EXPECT_TRUE((cut + 3 >= tail && cut < tail + tail / 50) || cut > lastcomma + 2) << cut;
        } catch (const runtimeerror& error) {
            EXPECT_NE(error.text.find(path + ", line "), std::string::npos) << error.text;
            EXPECT_EQ(readtext(path), part);
        }
    }
}

TEST_F(parameterfiles, BadFieldsNameTheirLine) {
    const std::string text = savedtext(1);
    const struct {
        const char *place, *old, *fresh;
        errorkind kind;
        int line;
    } cases[] = {{"receivers =", ",1", ",many", errorkind::typemismatch, 4},
                 {"receivers =", ",1", ",99999999999", errorkind::overflow, 4},
                 {"receivers =", ",1", ",-1", errorkind::subscript, 4},
                 {"receivers =", ",1", ",5", errorkind::typemismatch, 10}, // more than there are
                 {"\"Lrev\"", " 30.125", "\"30\"", errorkind::typemismatch, 18},
                 {"\"Leq\"", "\r\n 1 ", "\r\n 100001 ", errorkind::subscript, 9},
                 {"\"Leq\"", "\r\n 1 ", "\r\n-1 ", errorkind::subscript, 9},
                 {"Transfer", " .109375", " much", errorkind::typemismatch, 86},
                 {"Noise Level", " 45", "quiet", errorkind::typemismatch, 120},
                 {"\"T30\"", "\r\n 0 ", "\r\n 222222 ", errorkind::subscript, 145}};
    for (const auto& each : cases) {
        std::string bad = text;
        const std::size_t at = bad.find(each.old, bad.find(each.place));
        ASSERT_NE(at, std::string::npos) << each.place;
        bad.replace(at, std::string_view(each.old).size(), each.fresh);
        const runtimeerror error = failureof([&] { loadtext(bad); });
        EXPECT_EQ(error.kind, each.kind) << error.text;
        EXPECT_TRUE(error.text.starts_with(path + ", line " + std::to_string(each.line) + ": "))
            << each.place << " " << error.text;
    }
    EXPECT_EQ(kindof([&] { loadparameters(inside("missing.-01")); }), errorkind::filenotfound);
    // Of the older layout too, where a group is cut.
    const std::string older = readtext(TEST_FILES "/golden/older.-07");
    const runtimeerror error = failureof([&] { loadtext(older.substr(0, older.rfind(",\"-\"") - 3)); });
    EXPECT_TRUE(error.text.starts_with(path + ", line 81: ")) << error.text;
}

// --- Its name, and where nothing can be written ---

TEST_F(parameterfiles, HaveANameOfTheirOwn) {
    for (const char* name : {"/a/room._ab", "/a/room.-ab"}) EXPECT_EQ(parameternameof(name), "/a/room.-ab");
    EXPECT_EQ(parameternameof("abc"), "-bc");
    EXPECT_THROW(parameternameof("ab"), runtimeerror);
    const runtimeerror error = failureof([&] { saveparameters(inside("missing/hall._01")); });
    EXPECT_NE(error.text.find(inside("missing/hall.-01")), std::string::npos) << error.text;
}

} // namespace

} // namespace orv
