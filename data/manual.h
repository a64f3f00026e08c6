// The manual, made of its plain sources: a page for a browser, and the same with its pictures in one file.
//
// Sources are a directory with
//
//   chapters/*.html   fragments in the order of their names, ASCII: one <h2> each, sections by <h3>,
//                     pictures by <img src="pictures/NAME.png">
//   pictures/*.png    each named by a chapter
//   style.css
//
// and chapters that the build makes, which follow those.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace orv {

struct manualsources {
    std::string chapters, style;
    std::map<std::string, std::string> pictures; // bytes by "pictures/NAME.png"
};

// `made` are the paths of further chapters. Raises what readfile raises, and filenotfound for a directory
// that is not there.
manualsources readmanualsources(const std::string& directory, const std::vector<std::string>& made = {});

// The page in HTML: title, table of contents, chapters. Headings get the ids that the table refers to. Raises
// filenotfound for a picture that is named and not there, domain for one that is there and not named and for
// a heading without an end.
std::string manualpage(const manualsources& sources);

// The page and its pictures as one file: MIME multipart/related (RFC 2557), the page in quoted-printable,
// the pictures in base64.
std::string manualarchive(const manualsources& sources, const std::string& page);

// Writes MOrvantaView.html, MOrvantaView.mht and the pictures into a directory, which is made if necessary.
// Raises what the others raise, and fileaccess.
void writemanual(const std::string& sourcedirectory, const std::string& target,
                 const std::vector<std::string>& made = {});

} // namespace orv
