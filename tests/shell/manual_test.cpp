// The manual that ships, as a browser and a reader of MIME archives take it apart.
#include "data/manual.h"

#include "tests/failures.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace orv;

const manualsources& shipped() {
    static const manualsources sources = readmanualsources(DATA_FILES "/manual", {MADE_CHAPTER});
    return sources;
}

// What stands between each `before` and the next of the characters `stops`.
std::vector<std::string> between(const std::string& text, std::string_view before, const char* stops) {
    std::vector<std::string> all;
    for (std::size_t at = text.find(before); at != std::string::npos; at = text.find(before, at)) {
        at += before.size();
        all.push_back(text.substr(at, text.find_first_of(stops, at) - at));
    }
    return all;
}

std::string decoded(std::string_view body, bool base64) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned group = 0, bits = 0;
    for (std::size_t i = 0; i < body.size(); ++i) {
        if (body[i] == '\r') continue;
        if (!base64) {
            if (body[i] != '=') {
                bytes += body[i];
            } else {
                if (body[i + 1] != '\r')
                    bytes += static_cast<char>(std::stoi(std::string(body.substr(i + 1, 2)), nullptr, 16));
                i += 2; // a soft line break, CR LF, too
            }
        } else if (const std::size_t digit = digits.find(body[i]); digit != std::string_view::npos) {
            group = group << 6 | static_cast<unsigned>(digit);
            bits += 6;
            if (bits < 8) continue;
            bits -= 8;
            bytes += static_cast<char>(group >> bits & 0xFFU);
        }
    }
    return bytes;
}

TEST(manual, EveryElementClosesAndEveryLinkLeadsSomewhere) {
    const std::string page = manualpage(shipped());
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

TEST(manual, TheArchiveHoldsPageAndPicturesByteByByte) {
    const std::string page = manualpage(shipped()), archive = manualarchive(shipped(), page);
    for (const std::string& line : between(archive, "\r\n", "\r")) EXPECT_LE(line.size(), 76U) << line;
    const auto boundaries = between(archive, "boundary=\"", "\"");
    ASSERT_EQ(boundaries.size(), 1U);
    const std::string mark = "\r\n--" + boundaries[0];
    std::map<std::string, std::string> parts;
    std::size_t at = archive.find(mark);
    while (at != std::string::npos && archive.compare(at + mark.size(), 2, "--") != 0) {
        const std::size_t next = archive.find(mark, at + mark.size());
        ASSERT_NE(next, std::string::npos);
        const std::size_t body = archive.find("\r\n\r\n", at + 2) + 4;
        const std::string headers = archive.substr(at, body - at);
        const bool base64 = headers.find("Transfer-Encoding: base64") != std::string::npos;
        const auto location = between(headers, "Content-Location: http://manual.invalid/", "\r");
        ASSERT_EQ(location.size(), 1U);
        parts[location[0]] = decoded(std::string_view(archive).substr(body, next - body), base64);
        at = next;
    }
    EXPECT_EQ(archive.substr(at), mark + "--\r\n");
    std::map<std::string, std::string> expected = shipped().pictures;
    expected["MOrvantaView.html"] = page;
    EXPECT_EQ(parts.size(), expected.size());
    for (const auto& [name, bytes] : expected) EXPECT_TRUE(parts[name] == bytes) << name;
}

TEST(manual, APictureThatIsMissingOrNotShownFails) {
    EXPECT_EQ(kindof([] {
                  manualpage({"<h2>A</h2><img src=\"pictures/a.png\">", "", {}});
              }),
              errorkind::filenotfound);
    EXPECT_EQ(kindof([] { manualpage({"<h2>A</h2>", "", {{"pictures/a.png", ""}}}); }), errorkind::domain);
}

} // namespace
