// The manual that ships, as a browser takes it apart, and the archive that it is written into.
#include "data/manual.h"

#include "tests/failures.h"
#include "tests/golden.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace orv;

// What stands between each `before` and the next of the characters `stops`.
std::vector<std::string> between(const std::string& text, std::string_view before, const char* stops) {
    std::vector<std::string> all;
    for (std::size_t at = text.find(before); at != std::string::npos; at = text.find(before, at)) {
        at += before.size();
        all.push_back(text.substr(at, text.find_first_of(stops, at) - at));
    }
    return all;
}

TEST(manual, EveryElementClosesAndEveryLinkLeadsSomewhere) {
    const std::string page = manualpage(readmanualsources(DATA_FILES "/manual", {MADE_CHAPTER}));
    std::vector<std::string> open;
    for (const std::string& tag : between(page, "<", " >\r\n")) {
        if (tag == "img" || tag == "meta" || tag == "br" || tag[0] == '!') continue;
        if (tag[0] != '/') {
            open.push_back(tag);
            continue;
        }
        ASSERT_FALSE(open.empty()) << tag;
        ASSERT_EQ("/" + open.back(), tag);
        open.pop_back();
    }
    EXPECT_TRUE(open.empty());
    const auto ids = between(page, " id=\"", "\"");
    EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), ids.size());
    EXPECT_EQ(between(page, "href=\"#", "\""), ids);
    for (const std::string& entity : between(page, "&", "; \r\n<\""))
        EXPECT_NE(page.find("&" + entity + ";"), std::string::npos) << entity;
}

// A long line, blanks at line ends, letters that have to be encoded, and pictures that end within a line and
// with one. Another reader of MIME archives took the golden file apart into the same bytes.
TEST(manual, TheArchiveHoldsPageAndPicturesByteByByte) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
    const manualsources sources = {"<h2>First</h2>\n<p class=\"a\">" + std::string(90, 'x') +
                                       " \n\t1 + 1 = 2 \xE9\n<img src=\"pictures/a.png\">\n"
                                       "<h2>Second</h2>\n<h3>Part</h3>\n<h3>Other</h3>\n" +
                                       std::string(75, '-') + " \n<img src=\"pictures/b.png\">\n",
                                   "p { margin: 0 }\n",
                                   {{"pictures/a.png", bytes}, {"pictures/b.png", bytes.substr(0, 57)}}};
    expectgolden("manual.mht", manualarchive(sources, manualpage(sources)));
}

TEST(manual, APictureThatIsMissingOrNotShownFails) {
    const char* const image = "<img src=\"pictures/a.png\">";
    EXPECT_EQ(kindof([&] { manualpage({image, "", {}}); }), errorkind::filenotfound);
    EXPECT_EQ(kindof([] { manualpage({"", "", {{"pictures/a.png", ""}}}); }), errorkind::domain);
}

} // namespace
