// Files on disk and their names. Paths are carried as the file system's own bytes; only showing one, or
// writing one into a file, turns it into text of the files' code page.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

namespace orv {

// The bytes of a whole file, as the readers take them.
struct filebytes {
    std::unique_ptr<char[]> data;
    std::size_t size = 0;

    operator std::string_view() const { return {data.get(), size}; }
};

// Reads a whole file. Raises filenotfound, or fileaccess with the system's reason.
filebytes readfile(const std::string& path);

// A file that is read in parts, for one that may be larger than memory.
struct partreader {
    explicit partreader(const std::string& name); // raises filenotfound or fileaccess

    // The bytes from `position` on into `part`: `count` of them, fewer at the end of the file. Raises
    // fileaccess.
    void read(std::uint64_t position, std::size_t count, std::string& part);

private:
    std::string path;
    std::ifstream file;
};

// Writes a file that replaces any of that name, so that a failure leaves the old one as it was: the bytes
// go into a file beside it first, which then takes its place. Raises fileaccess.
void replacefile(const std::string& path, std::string_view bytes);

// A file that is written piece by piece and takes the place of the old one when it is finished. Given up
// before that, by a failure or otherwise, it leaves the old file as it was and nothing beside it (see also
// dropunfinished).
struct filewriter {
    explicit filewriter(const std::string& name); // raises fileaccess
    ~filewriter();
    filewriter(const filewriter&) = delete;
    filewriter& operator=(const filewriter&) = delete;

    void write(std::string_view bytes); // raises fileaccess
    void flush();                       // what was written is with the system; raises fileaccess
    void finish();                      // raises fileaccess

private:
    std::string path, target; // as named, and behind a link
    std::string fresh;        // the file beside it; empty for a device, which takes the bytes itself
    std::FILE* file = nullptr;
};

// Takes away what filewriters have begun and not finished, for an end of the program that destroys nothing.
// Raises nothing.
void dropunfinished();

// Whether the path can be opened for reading as a file. Raises nothing.
bool canopen(const std::string& path);

// Size in bytes. Raises filenotfound and fileaccess.
std::uint64_t filesize(const std::string& path);

// Time of the last change, in nanoseconds since an epoch that is the same for all files. Raises filenotfound
// and fileaccess.
std::int64_t filedate(const std::string& path);

// The path as it exists on disk: itself when it is there, else the one whose directories and name differ from
// it only in letter case (of several the first in alphabetical order), else itself. Backslashes are taken as
// the platform's separator when the path is not found as it stands.
std::string existingpath(const std::string& path);

// Directory and name joined by the platform's separator; an empty directory gives the name, an absolute name
// is itself.
std::string joinpath(const std::string& directory, const std::string& name);

// What stands before the last separator (empty when there is none), and behind it.
std::string directoryof(const std::string& path);
std::string filenameof(const std::string& path);

// The path with another extension ("dxf") in place of what stands behind the last point of its file name; a
// point as the first character makes no extension.
std::string withextension(const std::string& path, const std::string& extension);

// The path as it is when its file name has an extension, in the same sense, else with this one.
std::string completedname(const std::string& path, const std::string& extension);

// The name without its last `count` characters, from which the names of the files beside it are made; a
// character may be several bytes. Raises domain for a shorter name.
std::string withoutlast(const std::string& name, int count);

// Code page 1252 and UTF-8, the file system's encoding. A character that the page has no letter for, and a
// byte that is no UTF-8, becomes "?".
std::string pagetext(std::string_view utf8);
std::string utf8text(std::string_view page);

// A file's name as it stands inside another file, and the way back: in the code page, or, with a letter that
// the page does not have, as it is.
std::string storedname(const std::string& name);
std::string namestored(std::string_view stored);

// The same of a file in a directory, which tells names apart that could be either: bytes of the page of which
// only the name that they are without it is there, as of a UTF-8 text or of a name that is no UTF-8, are
// that.
std::string namestored(std::string_view stored, const std::string& directory);

} // namespace orv
