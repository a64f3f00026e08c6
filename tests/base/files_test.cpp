// Files on disk, their names and the two encodings.
#include "base/files.h"

#include "tests/failures.h"
#include "tests/testsupport.h"

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace orv;
namespace fs = std::filesystem;

namespace {

struct files : testing::Test {
    testdirectory directory;
};

std::size_t entries() {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator("."), fs::directory_iterator()));
}

TEST_F(files, AreReadWhole) {
    for (const std::string& bytes :
         {std::string("a\0b\r\n\xFF", 6), std::string(), std::string(3000000, 'x')}) {
        replacefile("some", bytes);
        EXPECT_EQ(readtext("some"), bytes);
        EXPECT_EQ(filesize("some"), bytes.size());
    }
}

TEST_F(files, SayWhatIsWrongWithThem) {
    EXPECT_EQ(kindof([] { readfile("absent"); }), errorkind::filenotfound);
    EXPECT_EQ(kindof([] { filedate("absent"); }), errorkind::filenotfound);
    EXPECT_EQ(kindof([] { filesize("absent"); }), errorkind::filenotfound);
    EXPECT_EQ(kindof([] { readfile("."); }), errorkind::fileaccess);
    EXPECT_FALSE(canopen("absent"));
    EXPECT_FALSE(canopen("."));
    // In the page's letters.
    EXPECT_EQ(failureof([] { readfile("Z\xC3\xBC.ray"); }).text, "Z\xFC.ray: the file was not found.");
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

TEST_F(files, AreReplacedWithoutATrace) {
    replacefile("room.ray.new", "somebody's own");
    replacefile("room.ray", "one");
    chmod("room.ray", 0640);
    fs::create_symlink("room.ray", "link");
    replacefile("link", "two");
    EXPECT_TRUE(fs::is_symlink("link"));
    EXPECT_EQ(readtext("room.ray"), "two");
    EXPECT_EQ(fs::status("room.ray").permissions(), fs::perms(0640));
    EXPECT_EQ(readtext("room.ray.new"), "somebody's own");
    EXPECT_EQ(entries(), 3U);
    fs::create_symlink("absent", "dangling");
    replacefile("dangling", "three");
    EXPECT_TRUE(fs::is_symlink("dangling"));
    EXPECT_EQ(readtext("absent"), "three");
    fs::create_symlink("circle", "circle");
    EXPECT_EQ(kindof([] { replacefile("circle", "x"); }), errorkind::fileaccess);
    const auto before = entries();
    filewriter begun("room.ray");
    EXPECT_EQ(entries(), before + 1);
    dropunfinished(); // the program ends now
    EXPECT_EQ(entries(), before);
    replacefile(std::string(255, 'n'), "as long as a name can be");
    EXPECT_EQ(kindof([] { replacefile("no/such/folder", "x"); }), errorkind::fileaccess);
}

TEST_F(files, AreFoundExactlyFirstThenInAnyCase) {
    fs::create_directory("Hall");
    for (const char* name : {"Hall/Room.Ray", "a\\b", "Z\xC3\xBC.ray"}) replacefile(name, "");
    const std::pair<std::string, std::string> cases[] = {
        {"Hall/Room.Ray", "Hall/Room.Ray"},
        {"hall/ROOM.RAY", "Hall/Room.Ray"},
        {"HALL\\room.ray", "Hall/Room.Ray"},
        {directory.path + "/hall\\room.ray", directory.path + "/Hall/Room.Ray"},
        {"hall/absent", "hall/absent"},
        {"", ""},
        {"a\\b", "a\\b"}, // a file of that very name
        {"z\xC3\x9C.RAY", "Z\xC3\xBC.ray"},
    };
    for (const auto& [asked, found] : cases) EXPECT_EQ(existingpath(asked), found);
    replacefile("Hall/room.ray", "");
    EXPECT_EQ(existingpath("Hall/room.ray"), "Hall/room.ray");
    EXPECT_EQ(existingpath("Hall/ROOM.ray"), "Hall/Room.Ray"); // the first of two by the alphabet
}

// A name within a file may be of the page, or already as the file system has it.
TEST_F(files, StatedInAFileAreTheOnesThatAreThere) {
    for (const char* name : {"Z\xC3\xBC", "\xF6l", "\xC3\xB6"}) replacefile(name, "");
    EXPECT_EQ(namestored("Z\xFC", directory.path), "Z\xC3\xBC");
    EXPECT_EQ(namestored("Z\xC3\xBC", directory.path), "Z\xC3\xBC"); // a text in UTF-8
    EXPECT_EQ(namestored("\xF6l", directory.path), "\xF6l");         // a name that is no UTF-8
    EXPECT_EQ(namestored("\xF6", directory.path), "\xC3\xB6");
    EXPECT_EQ(namestored("\xE4", directory.path), "\xC3\xA4"); // not there
}

TEST(encodings, TurnThePageIntoUtf8AndBack) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string letter(1, static_cast<char>(byte));
        const bool unassigned = byte == 0x81 || byte == 0x8D || byte == 0x8F || byte == 0x90 || byte == 0x9D;
        EXPECT_EQ(pagetext(utf8text(letter)), unassigned ? "?" : letter) << byte;
    }
    EXPECT_EQ(utf8text("\x80 \xFC"), "\xE2\x82\xAC \xC3\xBC");
    EXPECT_EQ(pagetext("\xF0\x9F\x98\x80!"), "?!"); // a letter that the page has not
    EXPECT_EQ(pagetext("\xFCz"), "?z");             // no UTF-8
    EXPECT_EQ(pagetext("\xE2\x82"), "??");
    for (const char* name : {"Z\xC3\xBC", "\xCE\xB1 Z\xC3\xBC"})
        EXPECT_EQ(namestored(storedname(name)), name);
    EXPECT_EQ(storedname("Z\xC3\xBC"), "Z\xFC");
}

} // namespace
