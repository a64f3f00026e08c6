// The parameter file: byte for byte, there and back, both layouts, and every way in which one can be damaged.
#include "results/parameterfile.h"

#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "samples/random.h"
#include "tests/results/startvalues.h"
#include "tests/testsupport.h"

#include <sys/resource.h>

#include <cmath>
#include <csignal>
#include <iterator>

namespace orv {

namespace {

auto& P = ParameterSet;
constexpr int lastcleared = 8;

// All twelve-band tables but the speech index, in the order of the file.
template <class visitor>
void eachtable(visitor visit) {
    visit(P.Leq), visit(P.Ldir), visit(P.Lrev), visit(P.LdirLrev), visit(P.LeqLw), visit(P.C50), visit(P.C80);
    visit(P.Ts), visit(P.Aeq), visit(P.LE), visit(P.LF), visit(P.LFC), visit(P.Aeq2), visit(P.ITDGeq);
}
template <class visitor>
void eachdecay(visitor visit) {
    visit(P.EDT), visit(P.T10), visit(P.T15), visit(P.T20), visit(P.T30);
}

// A value that tells table, receiver and band apart; its sign changes.
double markedvalue(int table, int receiver, int band) {
    const double value = 10 * table + receiver + band / 8.0;
    return (table + band) % 2 != 0 ? -value : value;
}
double markedtransfer(int receiver, int frequency, int band) {
    return (receiver * 98 + (frequency - 1) * 7 + band) / 64.0;
}

// The error of a run, which must come.
template <class step>
runtimeerror raised(step run) {
    try {
        run();
    } catch (const runtimeerror& error) {
        return error;
    }
    ADD_FAILURE() << "no error";
    return {errorkind::cancelled, ""};
}

struct parameterfiles : sessiontest {
    std::string path = inside("hall.-01");

    parameterfiles() {
        clearparameters(lastcleared);
        setstartvalues();
    }

    static void fillmarked(int receivers) {
        RoomModel.receiverCount = receivers;
        for (int r = 0; r <= receivers; ++r) {
            int number = 0;
            const auto fill = [&](auto& table) {
                ++number;
                for (int b = 1; b <= bandcount; ++b)
                    table(r, b) = static_cast<float>(markedvalue(number, r, b));
            };
            eachtable(fill);
            fill(P.STI);
            eachdecay(fill);
            P.STI(r, 1) = P.STI(r, 2) = P.STI(r, 10) = 77; // not in the file
            for (int i = 1; i <= modulationcount; ++i)
                for (int k = 0; k < 7; ++k)
                    P.modulationTransfer(r, i, k) = static_cast<float>(markedtransfer(r, i, k));
        }
        sessionstate& s = SessionState;
        s.backgroundNoiseFlag = s.equalizeSpectrumFlag = -1;
        s.forceVoiceSplFlag = 0;
        for (std::size_t k = 0; k < 7; ++k) {
            s.noiseLevel[k] = 45 - 2.5F * static_cast<float>(k);
            s.voiceCorrection[k] = static_cast<float>(k) - 3;
        }
        s.geometryFileName = "hall.RAY";
    }

    // A session that has nothing of a file's contents.
    static void forget() {
        clearparameters(lastcleared);
        RoomModel.receiverCount = 0;
        sessionstate& s = SessionState;
        s.backgroundNoiseFlag = s.equalizeSpectrumFlag = s.forceVoiceSplFlag = 5;
        s.noiseLevel.fill(0);
        s.voiceCorrection.fill(0);
        s.geometryFileName = "none";
        s.parameterSource = 1;
    }

    static void expectmarked(int receivers, bool tail) {
        EXPECT_EQ(RoomModel.receiverCount, receivers);
        for (int r = 0; r <= receivers; ++r) {
            int number = 0;
            const auto check = [&](const auto& table) {
                ++number;
                const bool decay = number > 15, speech = number == 15;
                for (int b = 1; b <= bandcount; ++b) {
                    const bool held = decay ? tail : !speech || (b >= 3 && b != 10);
                    EXPECT_EQ(table(r, b), held ? static_cast<float>(markedvalue(number, r, b)) : 0.0F)
                        << "table " << number << " receiver " << r << " band " << b;
                }
            };
            eachtable(check);
            check(P.STI);
            eachdecay(check);
            for (int i = 1; i <= modulationcount; ++i)
                for (int k = 0; k < 7; ++k)
                    EXPECT_EQ(P.modulationTransfer(r, i, k), static_cast<float>(markedtransfer(r, i, k)));
        }
        const sessionstate& s = SessionState;
        EXPECT_EQ(s.backgroundNoiseFlag, -1);
        EXPECT_EQ(s.forceVoiceSplFlag, 0);
        EXPECT_EQ(s.equalizeSpectrumFlag, -1);
        EXPECT_EQ(s.noiseLevel[6], 30.0F);
        EXPECT_EQ(s.voiceCorrection[0], -3.0F);
        EXPECT_EQ(s.parameterSource, -1.0F);
    }

    std::string savedtext(int receivers) {
        fillmarked(receivers);
        saveparameters(path);
        return readtext(path);
    }
};

TEST_F(parameterfiles, IsWrittenByteForByte) {
    fillmarked(2);
    P.Leq(0, 1) = 12345678, P.Leq(0, 2) = 0.01234567F, P.Leq(0, 3) = 0.0123456F;
    P.Leq(1, 1) = -0.0F, P.Leq(1, 2) = 9999999, P.Ldir(1, 3) = -1E-7F;
    SessionState.geometryFileName =
        "Z\xC3\xBCrich \xE2\x88\x9E.ray"; // the page has no letter for the last one
    scripted::clearcalls();
    saveparameters("hall._01");
    EXPECT_EQ(readtext("hall.-01"), readtext(TEST_FILES "/golden/parameters.-01"));

    std::vector<std::string> expected = {"beep", "pointer wait",
                                         "status 1|Saving parameters to hall.-01 ..."};
    const char* const steps[] = {"4",  "9",  "14", "19", "23", "28", "33", "38",
                                 "38", "42", "47", "52", "57", "61", "66"};
    for (const char* step : steps)
        expected.insert(expected.end(), {"status 2| " + std::string(step) + "%", "yield"});
    expected.push_back("status 2| 71%");
    for (int r = 0; r <= 2; ++r) expected.insert(expected.end(), {"status 2| 71%", "yield"});
    for (const char* step : {"76", "80", "85", "90", "95", "100"})
        expected.insert(expected.end(), {"status 2| " + std::string(step) + "%", "yield"});
    expected.insert(expected.end(), {"pointer normal", "status 1|", "status 2|"});
    EXPECT_EQ(scripted::calls(), expected);
}

TEST_F(parameterfiles, ComesBack) {
    savedtext(2);
    forget();
    scripted::clearcalls();
    loadparameters(path);
    expectmarked(2, true);
    EXPECT_EQ(SessionState.geometryFileName, "hall.RAY");
    EXPECT_EQ(scripted::calls()[0], "status 1|Loading acoustics parameters from " + path + " ...");
    EXPECT_EQ(scripted::countcalls("status 2| "), 20U + 3); // the tables, and every receiver's modulation
    EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
    EXPECT_EQ(scripted::statustext(1) + scripted::statustext(2), "");

    // N = 0 still has the room's row in every table.
    savedtext(0);
    forget();
    loadparameters(path);
    expectmarked(0, true);
}

TEST_F(parameterfiles, AnyValuesComeBackInTheirText) {
    samples::randomstate random{17};
    fillmarked(3);
    const auto fill = [&](auto& table) {
        for (int r = 0; r <= 3; ++r)
            for (int b = 1; b <= bandcount; ++b)
                table(r, b) = static_cast<float>((samples::nextuniform(random) - 0.5) *
                                                 std::pow(10, 40 * samples::nextuniform(random) - 25));
    };
    eachtable(fill);
    eachdecay(fill);
    saveparameters(path);
    const std::string first = readtext(path);
    forget();
    loadparameters(path);
    saveparameters(path);
    EXPECT_EQ(readtext(path), first);
}

TEST_F(parameterfiles, ProgressIsTheShareOfTheFile) {
    const std::string text = savedtext(1);
    forget();
    scripted::clearcalls();
    loadparameters(path);
    const double blocks = std::nearbyint(static_cast<double>(text.size()) / 128);
    std::size_t row = text.find("\"Parameter =\",\"Ldir\"");
    const auto percent = static_cast<int>(static_cast<double>(row) / 128 / blocks * 100);
    EXPECT_EQ(scripted::callswith("status 2|")[0], "status 2| " + std::to_string(percent) + "%");
    EXPECT_EQ(scripted::callswith("status 2| ").back(),
              "status 2| " +
                  std::to_string(static_cast<int>(static_cast<double>(text.size()) / 128 / blocks * 100)) +
                  "%");
}

// A file of the versions that ended behind the spectra, and one whose tail is short against the rest.
TEST_F(parameterfiles, DecayTimesFollowBelowNinetyNinePerCent) {
    const std::string text = savedtext(1);
    const std::size_t tail = text.find("\"Parameter =\",\"EDT\"");
    writetext(path, text.substr(0, tail));
    forget();
    loadparameters(path);
    expectmarked(1, false);

    const std::size_t second = text.find('\n') + 1, third = text.find('\n', second) + 1;
    for (const bool longer : {true, false}) {
        // The tail is 0.9 or 1.1 per cent of the file.
        const double whole = static_cast<double>(text.size() - tail) / (longer ? 0.009 : 0.011);
        writetext(path, text.substr(0, second) +
                            std::string(static_cast<std::size_t>(whole) - text.size(), 'x') + "\r\n" +
                            text.substr(third));
        forget();
        loadparameters(path);
        expectmarked(1, !longer);
    }
}

// The rows of the file decide where they go and when their table ends.
TEST_F(parameterfiles, RowsGoWhereTheirNumbersSay) {
    std::string text = savedtext(2);
    std::size_t at = 0; // of the tables with a row for each receiver, those of the modulation have none
    for (int table = 0; table < 20; ++table) {
        at = text.find("\r\n 1 ,", at) + 3;
        text[at] = '2';
        at = text.find("\r\n 2 ,", at + 1) + 3;
        text[at] = '4';
    }
    text.replace(text.find("receivers =\",2") + 13, 1, "3");
    // The modulation has a block for each receiver of the header.
    const std::size_t block = text.find("\"Rec.\",2,"), end = text.find("\"STI parameters\"");
    text.insert(end, text.substr(block, end - block));
    writetext(path, text);
    forget();
    loadparameters(path);
    EXPECT_EQ(RoomModel.receiverCount, 3);
    for (const auto& [row, source] : {std::pair{0, 0}, {2, 1}, {4, 2}}) {
        EXPECT_EQ(P.Leq(row, 1), static_cast<float>(markedvalue(1, source, 1)));
        EXPECT_EQ(P.STI(row, 3), static_cast<float>(markedvalue(15, source, 3)));
        EXPECT_EQ(P.T30(row, 12), static_cast<float>(markedvalue(20, source, 12)));
    }
    EXPECT_EQ(P.Leq(1, 1), 0.0F);
    EXPECT_EQ(P.Leq(3, 1), 0.0F);
    EXPECT_EQ(P.modulationTransfer(3, 1, 0), P.modulationTransfer(2, 1, 0));
}

TEST_F(parameterfiles, ReadsOtherFormsOfItsFields) {
    std::string text = savedtext(1);
    const auto replace = [&](const std::string& old, const std::string& fresh) {
        const std::size_t at = text.find(old);
        ASSERT_NE(at, std::string::npos) << old;
        text.replace(at, old.size(), fresh);
    };
    replace("\"New File Format - Version 1.7 and above!\"", "whatever stands here"); // is no test
    replace("\"hall.RAY\"", "\"a, b\xFC.RAY\"");
    replace("\"Parameter =\",\"Leq\"", "titles are counted, not read");
    replace(" 0 , 10.125,-10.25,", "0,1.0125E1 ,  -102.5d-1 ,\t");
    std::string bare;
    for (const char c : text)
        if (c != '\r') bare += c;
    for (const std::string& each : {text, bare}) {
        writetext(path, each);
        forget();
        loadparameters(path);
        expectmarked(1, true);
        EXPECT_EQ(SessionState.geometryFileName, "a, b\xC3\xBC.RAY");
    }
}

// --- The older layout ---

constexpr int oldtables[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 13, 14}; // numbers of those that it has

std::string oldlayout(int receivers) {
    std::string text =
        "\"Acoustic Parameters from file:\",\"C:\\halls\\Stage._07\"\r\n\"Rec.\",\"Parameter\"\r\n"
        "\"Num.\",\"31.5\"\r\n";
    for (int r = 0; r <= receivers; ++r) {
        for (const int table : oldtables) {
            text += std::to_string(r) + ",\"a title, quoted\"";
            for (int b = 1; b <= bandcount; ++b) text += "," + numbertext(markedvalue(table, r, b));
            text += "\r\n";
        }
        for (int i = 1; i <= modulationcount; ++i) {
            text += std::to_string(r) + ",\"MTF\",\"-\",\"-\"";
            for (int k = 0; k < 7; ++k) text += "," + numbertext(markedtransfer(r, i, k));
            text += ",\"-\",\"-\",\"-\"\r\n";
        }
    }
    return text;
}

struct olderfiles : parameterfiles {
    std::string text = oldlayout(2);

    olderfiles() {
        setspeechconstants();
        writetext(path, text);
        forget();
        SessionState.backgroundNoiseFlag = SessionState.equalizeSpectrumFlag =
            SessionState.forceVoiceSplFlag = 0;
        RoomModel.receiverCount = 2;
        P.LF(1, 1) = P.EDT(2, 12) = 0.25F; // which the older layout has not
    }

    void convert(platform::answer given) {
        scripted::expectwindow("STI Options");
        scripted::expectbox("Warning", given);
        loadparameters(path);
    }
};

TEST_F(olderfiles, AreReadAndKeptWhenTheUserCancels) {
    convert(platform::answer::cancel);
    for (int r = 0; r <= 2; ++r) {
        int number = 0, old = 0;
        eachtable([&](const auto& table) {
            if (++number == 11 || number == 12) return;
            EXPECT_EQ(number, oldtables[old++]);
            for (int b = 1; b <= bandcount; ++b)
                EXPECT_EQ(table(r, b), static_cast<float>(markedvalue(number, r, b))) << number;
        });
        for (int i = 1; i <= modulationcount; ++i)
            EXPECT_EQ(P.modulationTransfer(r, i, 6), static_cast<float>(markedtransfer(r, i, 6)));
    }
    EXPECT_EQ(P.LF(1, 1), 0.25F);
    EXPECT_GT(P.STI(1, 11), 0.0F); // computed
    EXPECT_EQ(SessionState.geometryFileName, "C:\\halls\\Stage.RAY");
    EXPECT_EQ(SessionState.parameterSource, -1.0F);
    EXPECT_EQ(RoomModel.receiverCount, 2);
    EXPECT_EQ(readtext(path), text);
    EXPECT_FALSE(canopen(path + ".old"));
    EXPECT_TRUE(scripted::called("box|Warning|STI values have been calculated - Do You want to update the "
                                 "compressed parameter file with new file format?|okcancel|exclamation|ok"));
    // Behind the first table of a group and behind its last, then two receivers and the end.
    EXPECT_EQ(scripted::countcalls("status 2| "), 6U + 2);
    EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
}

TEST_F(olderfiles, AreRewrittenBesideACopy) {
    RoomModel.receiverCount = 1; // stays, so that fewer receivers are written than the old file held
    convert(platform::answer::ok);
    EXPECT_EQ(readtext(path + ".old"), text);
    const std::string fresh = readtext(path);
    EXPECT_NE(fresh.find("from file:\",\"" + path + "\"\r\n"), std::string::npos); // its own name
    const float index = P.STI(1, 11);
    forget();
    loadparameters(path);
    EXPECT_EQ(RoomModel.receiverCount, 1);
    EXPECT_EQ(P.LF(1, 1), 0.25F); // as it stood in memory
    EXPECT_EQ(P.ITDGeq(1, 12), static_cast<float>(markedvalue(14, 1, 12)));
    EXPECT_EQ(P.ITDGeq(2, 12), 0.0F);
    EXPECT_NEAR(P.STI(1, 11), index, 1e-6);
}

TEST_F(olderfiles, InAFreshSessionComputeNothing) {
    SessionState.parameterSource = 0;
    convert(platform::answer::cancel);
    EXPECT_EQ(P.STI(1, 11), 0.0F);
    EXPECT_EQ(SessionState.parameterSource, -1.0F);
}

// --- Damaged files ---

TEST_F(parameterfiles, CutAnywhereNamesFileAndLine) {
    const std::string text = savedtext(0);
    const std::size_t tail = text.find("\"Parameter =\",\"EDT\""), lastcomma = text.rfind(',');
    for (std::size_t cut = 0; cut < text.size(); ++cut) {
        const std::string part = text.substr(0, cut);
        writetext(path, part);
        forget();
        bool loaded = false;
        try {
            loadparameters(path);
            loaded = true;
        } catch (const runtimeerror& error) {
            EXPECT_TRUE(error.kind == errorkind::pastend || error.kind == errorkind::typemismatch)
                << error.text;
            EXPECT_NE(error.text.find(path + ", line "), std::string::npos) << error.text;
        }
        // Behind the spectra with less than a per cent of decay times, and within the very last number.
        const bool may = (cut + 3 >= tail && static_cast<double>(cut) < 1.02 * static_cast<double>(tail)) ||
                         cut > lastcomma + 2;
        EXPECT_TRUE(!loaded || may) << cut;
        if (cut == tail || cut + 2 == text.size()) {
            EXPECT_TRUE(loaded) << cut;
        }
        EXPECT_EQ(readtext(path), part);
    }
}

TEST_F(olderfiles, CutAnywhereNameFileAndLine) {
    text = oldlayout(0);
    // Three lines without a group are a whole file, and so is one whose last text lacks its closing quote or
    // its line end; half of a line end is none.
    const std::size_t thirdline = text.find("\"Num."), firstgroup = text.find("\r\n0,") + 2;
    RoomModel.receiverCount = 0;
    scripted::record(false); // computations begin where the cut takes nothing
    scripted::onfailure([](const std::string&) {});
    for (std::size_t cut = 5; cut < text.size(); ++cut) {
        const std::string part = text.substr(0, cut);
        writetext(path, part);
        bool loaded = false;
        try {
            loadparameters(path);
            loaded = true;
        } catch (const runtimeerror& error) {
            EXPECT_NE(error.text.find(path + ", line "), std::string::npos) << error.text;
        }
        EXPECT_EQ(loaded, (cut > thirdline && cut <= firstgroup) ||
                              (cut > text.rfind("\"-\"") && cut + 1 != text.size()))
            << cut;
        if (!loaded) {
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
                 {"\"Leq\"", " 10.125", "loud", errorkind::typemismatch, 8},
                 {"\"Leq\"", " 10.125", "\"10\"", errorkind::typemismatch, 8},
                 {"\"Leq\"", " 10.125", " 1E39", errorkind::overflow, 8},
                 {"\"Leq\"", "\r\n 1 ", "\r\n 100001 ", errorkind::subscript, 9},
                 {"\"Leq\"", "\r\n 1 ", "\r\n-1 ", errorkind::subscript, 9},
                 {"\"Ldir\"", "\r\n 1 ", "\r\n one ", errorkind::typemismatch, 14},
                 {"\"STI\"", "\r\n 1 ", "\r\n 1E9 ", errorkind::subscript, 79},
                 {"Transfer", " .109375", " much", errorkind::typemismatch, 86},
                 {"Background", "-1", "yes", errorkind::typemismatch, 116},
                 {"Noise Level", " 45", "quiet", errorkind::typemismatch, 120},
                 {"\"T30\"", "\r\n 0 ", "\r\n 222222 ", errorkind::subscript, 145}};
    for (const auto& each : cases) {
        std::string bad = text;
        const std::size_t at = bad.find(each.old, bad.find(each.place));
        ASSERT_NE(at, std::string::npos) << each.place;
        bad.replace(at, std::string_view(each.old).size(), each.fresh);
        writetext(path, bad);
        const runtimeerror error = raised([&] { loadparameters(path); });
        EXPECT_EQ(error.kind, each.kind) << error.text;
        EXPECT_TRUE(error.text.starts_with(path + ", line " + std::to_string(each.line) + ": "))
            << each.place << " " << error.text;
        EXPECT_EQ(readtext(path), bad);
    }
    // More receivers than the file holds, up to more than there can be.
    for (const char* N : {"2", "100000", "100001", "2000000000"}) {
        std::string more = text;
        more.replace(more.find("receivers =\",1") + 13, 1, N);
        writetext(path, more);
        const runtimeerror error = raised([&] { loadparameters(path); });
        EXPECT_TRUE(error.text.starts_with(path + ", line 10: ")) << error.text;
    }
}

TEST_F(parameterfiles, TooShortOnesNameTheirLine) {
    writetext(path, "a\n\nb c d -1\n" + std::string(45, '\n')); // no rows at all, and no block of 128 bytes
    EXPECT_NE(raised([&] { loadparameters(path); }).text.find(path + ", line "), std::string::npos);
    writetext(path, "\"Acoustic Parameters from file:\",\"a\"\r\n");
    EXPECT_TRUE(raised([&] { loadparameters(path); }).text.starts_with(path + ", line 1: "));
    writetext(path, "");
    EXPECT_TRUE(raised([&] { loadparameters(path); }).text.starts_with(path + ", line 1: "));
    EXPECT_EQ(raised([&] { loadparameters(inside("missing.-01")); }).kind, errorkind::filenotfound);
}

// --- Its name, and where nothing can be written ---

TEST_F(parameterfiles, HaveANameOfTheirOwn) {
    EXPECT_EQ(parameternameof("/a/room._ab"), "/a/room.-ab");
    EXPECT_EQ(parameternameof("/a/room.-ab"), "/a/room.-ab");
    EXPECT_EQ(parameternameof("room.dat"), "room.-at");
    EXPECT_EQ(parameternameof("abc"), "-bc");
    EXPECT_THROW(parameternameof("ab"), runtimeerror);
}

TEST_F(parameterfiles, AFullDiskLeavesTheOldFile) {
    const std::string text = savedtext(1);
    fillmarked(3);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit full = before;
    full.rlim_cur = 2000;
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &full);
    const runtimeerror error = raised([&] { saveparameters(path); });
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(error.kind, errorkind::fileaccess);
    EXPECT_NE(error.text.find(path), std::string::npos) << error.text;
    EXPECT_EQ(readtext(path), text);
    const auto entries = std::filesystem::directory_iterator(directory.path);
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1); // nothing beside it
}

TEST_F(parameterfiles, AFolderThatCannotBeWrittenIsNamed) {
    for (const std::string& name : {inside("missing/hall._01"), std::string("/proc/hall._01")}) {
        const runtimeerror error = raised([&] { saveparameters(name); });
        EXPECT_NE(error.text.find(parameternameof(name)), std::string::npos) << error.text;
    }
    EXPECT_EQ(raised([] { saveparameters(""); }).kind, errorkind::domain);
}

} // namespace

} // namespace orv
