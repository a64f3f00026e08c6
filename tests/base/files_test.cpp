// Files on disk, their names and the two encodings.
#include "base/files.h"

#include "base/runtimeerror.h"
#include "tests/testsupport.h"

#include <gtest/gtest.h>

#include <csignal>
#include <functional>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace orv;
namespace fs = std::filesystem;

namespace {

struct files : testing::Test {
    testdirectory directory;
};

errorkind kindof(const std::function<void()>& run) {
    try {
        run();
    } catch (const runtimeerror& error) {
        return error.kind;
    }
    ADD_FAILURE() << "nothing failed";
    return errorkind::cancelled;
}

std::size_t entries() {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator("."), fs::directory_iterator()));
}

TEST_F(files, AreReadWhole) {
    const std::string bytes("a\0b\r\n\xFF", 6);
    replacefile("some", bytes);
    EXPECT_EQ(readtext("some"), bytes);
    EXPECT_EQ(filesize("some"), 6U);
    replacefile("none", "");
    EXPECT_EQ(readtext("none"), "");
    const std::string big(3'000'000, 'x');
    replacefile("big", big);
    EXPECT_EQ(readtext("big"), big);
    EXPECT_FALSE(readtext("/proc/self/status").empty()); // states no size
}

TEST_F(files, SayWhatIsWrongWithThem) {
    EXPECT_EQ(kindof([] { readfile("absent"); }), errorkind::filenotfound);
    EXPECT_EQ(kindof([] { readfile("absent/file"); }), errorkind::filenotfound);
    EXPECT_EQ(kindof([] { filedate("absent"); }), errorkind::filenotfound);
    EXPECT_EQ(kindof([] { filesize("absent"); }), errorkind::filenotfound);
    EXPECT_EQ(kindof([] { readfile("."); }), errorkind::fileaccess);
    EXPECT_FALSE(canopen("absent"));
    EXPECT_FALSE(canopen("."));
    try {
        readfile("K\xC3\xBC"
                 "che");
    } catch (const runtimeerror& error) {
        EXPECT_EQ(error.text, "K\xFC"
                              "che: the file was not found."); // in the page's letters
    }
}

// A limit on the size of files stands for a full disk.
TEST_F(files, KeepTheirOldBytesWhenTheDiskIsFull) {
    replacefile("kept", "old");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit limited{1000, before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limited);
    EXPECT_EQ(kindof([] { replacefile("kept", std::string(100000, 'x')); }), errorkind::fileaccess);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(readtext("kept"), "old");
    EXPECT_EQ(entries(), 1U);
}

TEST_F(files, KeepTheirOldBytesWhenProtected) {
    if (geteuid() == 0) GTEST_SKIP() << "nothing is write-protected for the superuser";
    replacefile("kept", "old");
    chmod("kept", 0444);
    EXPECT_EQ(kindof([] { replacefile("kept", "new"); }), errorkind::fileaccess);
    EXPECT_EQ(readtext("kept"), "old");
    EXPECT_EQ(entries(), 1U);
}

TEST_F(files, AreReplacedWithoutATrace) {
    replacefile("room.ray.new", "somebody's own");
    replacefile("room.ray", "one");
    chmod("room.ray", 0640);
    replacefile("room.ray", "two");
    EXPECT_EQ(readtext("room.ray"), "two");
    EXPECT_EQ(fs::status("room.ray").permissions(), fs::perms(0640));
    EXPECT_EQ(readtext("room.ray.new"), "somebody's own");
    EXPECT_EQ(entries(), 2U);

    fs::create_symlink("room.ray", "link");
    replacefile("link", "three");
    EXPECT_TRUE(fs::is_symlink("link"));
    EXPECT_EQ(readtext("room.ray"), "three");

    EXPECT_EQ(kindof([] { replacefile("no/such/folder", "x"); }), errorkind::fileaccess);
    EXPECT_EQ(kindof([] { replacefile(".", "x"); }), errorkind::fileaccess);
    if (fs::exists("/dev/full")) {
        EXPECT_EQ(kindof([] { replacefile("/dev/full", "x"); }), errorkind::fileaccess);
        EXPECT_TRUE(fs::is_character_file("/dev/full"));
    }
}

TEST_F(files, AreFoundExactlyFirstThenInAnyCase) {
    fs::create_directory("Hall");
    replacefile("Hall/Room.Ray", "");
    EXPECT_EQ(existingpath("Hall/Room.Ray"), "Hall/Room.Ray");
    EXPECT_EQ(existingpath("hall/ROOM.RAY"), "Hall/Room.Ray");
    EXPECT_EQ(existingpath("HALL\\room.ray"), "Hall/Room.Ray");
    EXPECT_EQ(existingpath("../" + filenameof(directory.path) + "/hall/room.ray"),
              "../" + filenameof(directory.path) + "/Hall/Room.Ray");
    EXPECT_EQ(existingpath(directory.path + "/hall\\room.ray"), directory.path + "/Hall/Room.Ray");
    EXPECT_EQ(existingpath("hall/absent"), "hall/absent");
    EXPECT_EQ(existingpath(""), "");
    replacefile("Hall/room.ray", "");
    EXPECT_EQ(existingpath("Hall/room.ray"), "Hall/room.ray");
    EXPECT_EQ(existingpath("Hall/ROOM.ray"), "Hall/Room.Ray"); // the first of two by the alphabet
    replacefile("a\\b", "");
    EXPECT_EQ(existingpath("a\\b"), "a\\b"); // a file of that very name
    replacefile("K\xC3\xBC"
                "che.ray",
                "");
    EXPECT_EQ(existingpath("k\xC3\x9C"
                           "che.RAY"),
              "K\xC3\xBC"
              "che.ray");
}

TEST_F(files, HaveNamesMadeOfDirectoryAndName) {
    EXPECT_EQ(joinpath("", "a"), "a");
    EXPECT_EQ(joinpath("/d", "a"), "/d/a");
    EXPECT_EQ(joinpath("/d", "/a"), "/a");
    EXPECT_EQ(directoryof("/d/e/a.ray"), "/d/e");
    EXPECT_EQ(directoryof("a.ray"), "");
    EXPECT_EQ(filenameof("/d/e/a.ray"), "a.ray");
}

TEST(encodings, TurnThePageIntoUtf8AndBack) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string letter(1, static_cast<char>(byte));
        const bool unassigned = byte == 0x81 || byte == 0x8D || byte == 0x8F || byte == 0x90 || byte == 0x9D;
        EXPECT_EQ(pagetext(utf8text(letter)), unassigned ? "?" : letter) << byte;
    }
    EXPECT_EQ(utf8text("\x80 \xFC"), "\xE2\x82\xAC \xC3\xBC");
    EXPECT_EQ(pagetext("\xCE\xA9"), "?"); // a letter that the page has not
    EXPECT_EQ(pagetext("\xF0\x9F\x98\x80!"), "?!");
    EXPECT_EQ(pagetext("a\xFC"
                       "b"),
              "a?b"); // no UTF-8
    EXPECT_EQ(pagetext("\xC3"), "?");
    EXPECT_EQ(pagetext("\xE2\x82"), "??");
}

} // namespace
