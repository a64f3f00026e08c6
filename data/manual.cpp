// The manual, made of its plain sources.
#include "data/manual.h"

#include "base/files.h"
#include "base/runtimeerror.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace orv {

namespace {

constexpr std::string_view title = "Orvanta View", pagename = "MOrvantaView";
constexpr std::string_view boundary = "=_OrvantaView_Manual"; // "=_" stands in no encoded line
// Of the locations within the archive: a name that no net knows. Some browsers refuse "file:" there.
constexpr std::string_view base = "http://manual.invalid/";
constexpr std::size_t linewidth = 76; // of encoded lines (RFC 2045)
constexpr std::string_view newline = "\r\n";

std::vector<std::string> filesof(const std::string& directory, std::string_view extension) {
    std::error_code error;
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory, error))
        if (entry.path().extension() == extension) names.push_back(entry.path().filename().string());
    if (error)
        throw runtimeerror{errorkind::filenotfound,
                           "The directory " + directory + " cannot be read (" + error.message() + ")."};
    std::sort(names.begin(), names.end());
    return names;
}

std::string contentof(const std::string& path) {
    const filebytes bytes = readfile(path);
    return std::string(std::string_view(bytes));
}

struct heading {
    bool section;
    std::string id, text;
};

// Gives the headings of the chapters their ids: "c2" for the second chapter, "c2s1" for its first section.
std::vector<heading> numberheadings(std::string& text) {
    std::vector<heading> headings;
    int chapter = 0, section = 0;
    for (std::size_t at = text.find("<h"); at != std::string::npos; at = text.find("<h", at + 1)) {
        const std::string_view mark = std::string_view(text).substr(at, 4);
        if (mark != "<h2>" && mark != "<h3>") continue;
        const bool issection = mark == "<h3>";
        const std::size_t begin = at + 4, end = text.find("</h", begin);
        if (end == std::string::npos)
            throw runtimeerror{errorkind::domain, "A heading has no end: " + text.substr(at, 60)};
        section = issection ? section + 1 : 0;
        if (!issection) ++chapter;
        std::string id = "c" + std::to_string(chapter);
        if (issection) id += "s" + std::to_string(section);
        headings.push_back({issection, id, text.substr(begin, end - begin)});
        text.insert(at + 3, " id=\"" + id + "\"");
    }
    return headings;
}

std::string tableofcontents(const std::vector<heading>& headings) {
    std::string text = "<nav>\n<ol>\n";
    bool inchapter = false, insections = false;
    const auto close = [&] {
        if (insections) text += "</ul>\n";
        if (inchapter) text += "</li>\n";
        insections = false;
    };
    for (const heading& each : headings) {
        const std::string link = "<a href=\"#" + each.id + "\">" + each.text + "</a>";
        if (!each.section) {
            close();
            text += "<li>" + link + "\n";
            inchapter = true;
            continue;
        }
        if (!insections) text += "<ul>\n";
        insections = true;
        text += "<li>" + link + "</li>\n";
    }
    close();
    return text + "</ol>\n</nav>\n";
}

void checkpictures(const manualsources& sources) {
    constexpr std::string_view mark = "src=\"";
    std::map<std::string, int> named;
    for (std::size_t at = sources.chapters.find(mark); at != std::string::npos;
         at = sources.chapters.find(mark, at + 1)) {
        const std::size_t begin = at + mark.size();
        const std::string name = sources.chapters.substr(begin, sources.chapters.find('"', begin) - begin);
        if (!sources.pictures.contains(name))
            throw runtimeerror{errorkind::filenotfound, "The manual has no picture " + name + "."};
        ++named[name];
    }
    for (const auto& [name, bytes] : sources.pictures)
        if (!named.contains(name))
            throw runtimeerror{errorkind::domain, "No chapter of the manual shows " + name + "."};
}

std::string quotedprintable(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded, line;
    const auto put = [&](std::string_view piece) {
        if (line.size() + piece.size() >= linewidth) {
            encoded.append(line).append("=").append(newline);
            line.clear();
        }
        line += piece;
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool atlineend = i + 1 == text.size() || text[i + 1] == '\n';
        if (byte == '\n') {
            encoded.append(line).append(newline);
            line.clear();
        } else if (byte < ' ' || byte > '~' || byte == '=' || (byte == ' ' && atlineend)) {
            put(std::string{'=', digits[byte / 16], digits[byte % 16]});
        } else {
            put(text.substr(i, 1));
        }
    }
    return encoded.append(line);
}

std::string base64(std::string_view bytes) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string encoded;
    std::size_t column = 0;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        unsigned group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = group * 256 + (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0U);
        for (std::size_t k = 0; k < 4; ++k) encoded += k <= count ? digits[group >> (18 - 6 * k) & 63U] : '=';
        column += 4;
        if (column == linewidth) {
            encoded += newline;
            column = 0;
        }
    }
    return column == 0 ? encoded : encoded.append(newline);
}

std::string partof(std::string_view type, std::string_view encoding, const std::string& location,
                   const std::string& body) {
    std::string text;
    text.append("--").append(boundary).append(newline);
    text.append("Content-Type: ").append(type).append(newline);
    text.append("Content-Transfer-Encoding: ").append(encoding).append(newline);
    text.append("Content-Location: ").append(base).append(location).append(newline);
    return text.append(newline).append(body).append(newline);
}

} // namespace

manualsources readmanualsources(const std::string& directory, const std::vector<std::string>& made) {
    manualsources sources;
    const std::string chapters = joinpath(directory, "chapters"), pictures = joinpath(directory, "pictures");
    for (const std::string& name : filesof(chapters, ".html"))
        sources.chapters += contentof(joinpath(chapters, name)) + "\n";
    for (const std::string& path : made) sources.chapters += contentof(path) + "\n";
    for (const std::string& name : filesof(pictures, ".png"))
        sources.pictures["pictures/" + name] = contentof(joinpath(pictures, name));
    sources.style = contentof(joinpath(directory, "style.css"));
    return sources;
}

std::string manualpage(const manualsources& sources) {
    checkpictures(sources);
    std::string chapters = sources.chapters;
    const std::string contents = tableofcontents(numberheadings(chapters));
    std::string page = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"us-ascii\">\n<title>";
    page.append(title).append("</title>\n<style>\n").append(sources.style);
    page.append("</style>\n</head>\n<body>\n<h1>").append(title).append("</h1>\n");
    return page.append(contents).append(chapters).append("</body>\n</html>\n");
}

std::string manualarchive(const manualsources& sources, const std::string& page) {
    std::string text;
    // The date of the text, and not of the build, so that every build writes the same bytes.
    for (const std::string_view line : {"From: Orvanta View <manual@localhost>", "Subject: Orvanta View",
                                        "Date: Sat, 21 Nov 2026 12:00:00 +0000", "MIME-Version: 1.0"})
        text.append(line).append(newline);
    text.append("Content-Type: multipart/related; type=\"text/html\";").append(newline);
    text.append("\tboundary=\"").append(boundary).append("\"").append(newline).append(newline);
    text.append("This is a document of several parts in MIME format.").append(newline).append(newline);
    text += partof("text/html; charset=\"us-ascii\"", "quoted-printable", std::string(pagename) + ".html",
                   quotedprintable(page));
    for (const auto& [name, bytes] : sources.pictures)
        text += partof("image/png", "base64", name, base64(bytes));
    return text.append("--").append(boundary).append("--").append(newline);
}

void writemanual(const std::string& sourcedirectory, const std::string& target,
                 const std::vector<std::string>& made) {
    const manualsources sources = readmanualsources(sourcedirectory, made);
    const std::string page = manualpage(sources);
    std::error_code error;
    std::filesystem::create_directories(joinpath(target, "pictures"), error);
    const std::string stem = joinpath(target, std::string(pagename));
    replacefile(stem + ".html", page);
    replacefile(stem + ".mht", manualarchive(sources, page));
    for (const auto& [name, bytes] : sources.pictures) replacefile(joinpath(target, name), bytes);
}

} // namespace orv
