// Files on disk and their names.
#include "base/files.h"

#include "base/listinput.h"
#include "base/runtimeerror.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace orv {

namespace fs = std::filesystem;

namespace {

constexpr int mostlinks = 40;            // links on the way to a file, as many as a system follows
constexpr int freshnames = 99;           // tries for the name of a file that is going to replace another
constexpr std::size_t freshlength = 240; // what that takes of the other's name; a system ends names at 255

constexpr char separator = static_cast<char>(fs::path::preferred_separator);

// The letters of code page 1252 at 0x80..0x9F as code points; 0 where the page has none. All other bytes are
// the code point of the same number.
constexpr std::array<std::uint16_t, 32> pageletters = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

std::vector<std::string> unfinished; // the files that are going to replace another

[[noreturn]] void failed(errorkind kind, const std::string& path, const std::string& reason) {
    throw runtimeerror{kind, pagetext(path) + ": " + reason + "."};
}

[[noreturn]] void notopened(const std::string& path, int reason) {
    if (reason == ENOENT || reason == ENOTDIR)
        failed(errorkind::filenotfound, path, "the file was not found");
    failed(errorkind::fileaccess, path,
           "the file cannot be opened (" + std::string(std::strerror(reason)) + ")");
}

struct closefile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using openfile = std::unique_ptr<std::FILE, closefile>;

[[noreturn]] void notwritten(const std::string& path, int reason) {
    failed(errorkind::fileaccess, path,
           "the file cannot be written (" + std::string(std::strerror(reason)) + ")");
}

// The character at `at`, which moves on behind it; a byte that is no UTF-8 is not whole.
struct codepoint {
    std::uint32_t value;
    bool whole;
};
codepoint nextpoint(std::string_view utf8, std::size_t& at) {
    const auto lead = static_cast<unsigned char>(utf8[at]);
    const std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 0;
    std::uint32_t point = length < 2 ? lead : lead & (0xFFU >> (length + 1));
    bool whole = length > 0 && at + length <= utf8.size();
    for (std::size_t i = 1; whole && i < length; ++i) {
        const auto next = static_cast<unsigned char>(utf8[at + i]);
        whole = (next & 0xC0U) == 0x80;
        point = point << 6 | (next & 0x3FU);
    }
    at += whole ? length : 1;
    return {point, whole};
}

bool isutf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();)
        if (!nextpoint(text, at).whole) return false;
    return true;
}

// Upper case of the letters a to z, and of the accented ones of the files' code page in UTF-8.
std::string foldedname(std::string_view name) {
    constexpr std::pair<std::string_view, std::string_view> farpairs[] = {{"\xC5\x93", "\xC5\x92"},
                                                                          {"\xC5\xA1", "\xC5\xA0"},
                                                                          {"\xC5\xBE", "\xC5\xBD"},
                                                                          {"\xC3\xBF", "\xC5\xB8"}};
    std::string folded = uppercase(name);
    for (const auto& [lower, upper] : farpairs)
        for (std::size_t at = 0; (at = folded.find(lower, at)) != std::string::npos; at += upper.size())
            folded.replace(at, lower.size(), upper);
    for (std::size_t i = 0; i + 1 < folded.size(); ++i) {
        if (folded[i] != '\xC3') continue;
        const auto letter = static_cast<unsigned char>(folded[i + 1]);
        if (letter >= 0xA0 && letter <= 0xBE && letter != 0xB7)
            folded[i + 1] = static_cast<char>(letter - 0x20);
    }
    return folded;
}

// The entry of `directory` that has this name, first exactly, then in any letter case; empty when none has.
std::string entryof(const fs::path& directory, const std::string& name) {
    std::error_code error;
    if (fs::exists(directory / name, error)) return name;
    const std::string wanted = foldedname(name);
    std::string found;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string candidate = entry->path().filename().string();
        // Several may differ in case alone: the first in alphabetical order, whatever the disk's order.
        if (foldedname(candidate) == wanted && (found.empty() || candidate < found)) found = candidate;
    }
    return found;
}

// The path with each of its parts looked up in any letter case; empty when a part is not there.
std::string foundincase(const std::string& path) {
    const fs::path asked(path);
    fs::path here = asked.root_path();
    for (const fs::path& part : asked.relative_path()) {
        if (part.empty() || part == "." || part == "..") {
            here /= part;
            continue;
        }
        const std::string entry = entryof(here.empty() ? fs::path(".") : here, part.string());
        if (entry.empty()) return {};
        here /= entry;
    }
    return here.string();
}

// What a link leads to, whether something lies there or not. Raises fileaccess for links in a circle.
std::string behindlinks(const std::string& path) {
    std::error_code error;
    fs::path target(path);
    for (int links = 0; fs::is_symlink(target, error); ++links) {
        if (links == mostlinks) notwritten(path, ELOOP);
        const fs::path next = fs::read_symlink(target, error);
        if (error) notwritten(path, error.value());
        target = target.parent_path() / next;
    }
    return target.string();
}

// Memory for a file's bytes. That of a large file comes in large pages where the system has them: touching
// nine thousand small ones costs a third of reading 36 MB.
std::unique_ptr<char[]> roomfor(std::size_t size) {
    auto room = std::make_unique_for_overwrite<char[]>(size);
#ifdef __linux__
    constexpr std::uintptr_t largepage = std::uintptr_t{2} << 20;
    const auto begin = (reinterpret_cast<std::uintptr_t>(room.get()) + largepage - 1) / largepage * largepage;
    const auto end = (reinterpret_cast<std::uintptr_t>(room.get()) + size) / largepage * largepage;
    if (begin < end) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#endif
    return room;
}

} // namespace

filebytes readfile(const std::string& path) {
    std::error_code error;
    if (fs::is_directory(path, error)) failed(errorkind::fileaccess, path, "this is a directory, not a file");
    const openfile file(std::fopen(path.c_str(), "rb"));
    if (!file) notopened(path, errno);
    // The size is a first guess: special files state none, and a file may grow while it is read. One byte
    // more than stated lets the first read see the end.
    const auto stated = fs::file_size(path, error);
    std::size_t room = error ? 65536 : static_cast<std::size_t>(stated) + 1;
    filebytes bytes{roomfor(room), 0};
    while (const std::size_t got =
               std::fread(bytes.data.get() + bytes.size, 1, room - bytes.size, file.get())) {
        bytes.size += got;
        if (bytes.size < room) continue;
        room *= 2;
        auto larger = roomfor(room);
        std::memcpy(larger.get(), bytes.data.get(), bytes.size);
        bytes.data = std::move(larger);
    }
    if (std::ferror(file.get())) failed(errorkind::fileaccess, path, "the file cannot be read");
    return bytes;
}

partreader::partreader(const std::string& name) : path(name) {
    std::error_code error;
    if (fs::is_directory(path, error)) failed(errorkind::fileaccess, path, "this is a directory, not a file");
    errno = 0;
    file.open(path, std::ios::binary);
    if (!file) notopened(path, errno);
}

void partreader::read(std::uint64_t position, std::size_t count, std::string& part) {
    part.resize(count);
    file.clear(); // of the end that the last part met
    file.seekg(static_cast<std::streamoff>(position));
    file.read(part.data(), static_cast<std::streamsize>(count));
    if (file.bad() || file.gcount() < 0) failed(errorkind::fileaccess, path, "the file cannot be read");
    part.resize(static_cast<std::size_t>(file.gcount()));
}

void replacefile(const std::string& path, std::string_view bytes) {
    filewriter file(path);
    file.write(bytes);
    file.finish();
}

filewriter::filewriter(const std::string& name) : path(name), target(name) {
    std::error_code error;
    const auto status = fs::status(path, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        file = std::fopen(path.c_str(), "wb");
        if (!file) notwritten(path, errno);
        return;
    }
    // A link keeps pointing where it did, the rights of the old file stay, and a protected one is refused.
    target = behindlinks(path);
    if (fs::exists(status) && !openfile(std::fopen(target.c_str(), "r+b"))) notwritten(path, errno);
    const std::string beginning = joinpath(directoryof(target), filenameof(target).substr(0, freshlength));
    fresh = beginning + ".new";
    file = std::fopen(fresh.c_str(), "wbx");
    for (int i = 1; !file && errno == EEXIST && i <= freshnames; ++i) { // somebody's file of that name stays
        fresh = beginning + ".new" + std::to_string(i);
        file = std::fopen(fresh.c_str(), "wbx");
    }
    if (!file) notwritten(path, errno);
    unfinished.push_back(fresh);
    if (fs::exists(status)) fs::permissions(fresh, status.permissions(), error);
}

filewriter::~filewriter() {
    std::erase(unfinished, fresh);
    if (!file) return;
    std::fclose(file);
    std::error_code error;
    if (!fresh.empty()) fs::remove(fresh, error);
}

void filewriter::write(std::string_view bytes) {
    errno = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) notwritten(path, errno);
}

void filewriter::flush() {
    errno = 0;
    if (std::fflush(file) != 0) notwritten(path, errno);
}

void filewriter::finish() {
    flush();
    std::erase(unfinished, fresh);
    const bool closed = std::fclose(std::exchange(file, nullptr)) == 0;
    const int reason = errno;
    std::error_code error, ignored;
    if (closed && !fresh.empty()) fs::rename(fresh, target, error);
    if (closed && !error) return;
    if (!fresh.empty()) fs::remove(fresh, ignored);
    if (!closed) notwritten(path, reason);
    failed(errorkind::fileaccess, path, "the file cannot be replaced (" + error.message() + ")");
}

void dropunfinished() {
    std::error_code error;
    for (const std::string& path : unfinished) fs::remove(path, error);
}

bool canopen(const std::string& path) {
    std::error_code error;
    if (fs::is_directory(path, error)) return false;
    return openfile(std::fopen(path.c_str(), "rb")) != nullptr;
}

std::uint64_t filesize(const std::string& path) {
    std::error_code error;
    const auto size = fs::file_size(path, error);
    if (error) notopened(path, error.value());
    return size;
}

std::int64_t filedate(const std::string& path) {
    std::error_code error;
    const auto date = fs::last_write_time(path, error);
    if (error) notopened(path, error.value());
    return std::chrono::duration_cast<std::chrono::nanoseconds>(date.time_since_epoch()).count();
}

std::string existingpath(const std::string& path) {
    std::error_code error;
    if (path.empty() || fs::exists(path, error)) return path;
    std::string native = path;
    for (char& c : native)
        if (c == '\\') c = separator;
    if (fs::exists(native, error)) return native;
    const std::string found = foundincase(native);
    return found.empty() ? path : found;
}

std::string joinpath(const std::string& directory, const std::string& name) {
    return (fs::path(directory) / name).string();
}

std::string directoryof(const std::string& path) {
    return fs::path(path).parent_path().string();
}

std::string filenameof(const std::string& path) {
    return fs::path(path).filename().string();
}

std::string withextension(const std::string& path, const std::string& extension) {
    return fs::path(path).replace_extension(extension).string();
}

std::string completedname(const std::string& path, const std::string& extension) {
    return filenameof(path).find('.', 1) == std::string::npos ? path + "." + extension : path;
}

std::string withoutlast(const std::string& name, int count) {
    std::size_t size = name.size();
    for (; count > 0 && size > 0; --count) {
        --size;
        while (size > 0 && (static_cast<unsigned char>(name[size]) & 0xC0U) == 0x80) --size;
    }
    if (count > 0)
        throw runtimeerror{errorkind::domain,
                           pagetext(name) + ": the name is too short for the files beside it."};
    return name.substr(0, size);
}

std::string pagetext(std::string_view utf8) {
    std::string page;
    for (std::size_t at = 0; at < utf8.size();) {
        const codepoint next = nextpoint(utf8, at);
        char letter = '?';
        if (next.whole && (next.value < 0x80 || (next.value >= 0xA0 && next.value <= 0xFF))) {
            letter = static_cast<char>(next.value);
        } else if (next.whole) {
            for (std::size_t i = 0; i < pageletters.size(); ++i)
                if (pageletters[i] == next.value) letter = static_cast<char>(0x80 + i);
        }
        page += letter;
    }
    return page;
}

std::string utf8text(std::string_view page) {
    std::string utf8;
    for (const char c : page) {
        std::uint32_t point = static_cast<unsigned char>(c);
        if (point >= 0x80 && point < 0xA0) {
            point = pageletters[point - 0x80];
            if (point == 0) point = '?';
        }
        if (point < 0x80) {
            utf8 += static_cast<char>(point);
        } else if (point < 0x800) {
            utf8 += static_cast<char>(0xC0 | point >> 6);
            utf8 += static_cast<char>(0x80 | (point & 0x3F));
        } else {
            utf8 += static_cast<char>(0xE0 | point >> 12);
            utf8 += static_cast<char>(0x80 | (point >> 6 & 0x3F));
            utf8 += static_cast<char>(0x80 | (point & 0x3F));
        }
    }
    return utf8;
}

std::string storedname(const std::string& name) {
    std::string page = pagetext(name);
    return utf8text(page) == name ? page : name;
}

std::string namestored(std::string_view stored) {
    std::string name(stored);
    const bool asitwas = isutf8(stored) && storedname(name) == name;
    return asitwas ? name : utf8text(stored);
}

std::string namestored(std::string_view stored, const std::string& directory) {
    const auto isthere = [&directory](const std::string& name) {
        std::error_code error;
        return fs::exists(existingpath(joinpath(directory, name)), error);
    };
    const std::string name = namestored(stored), asitis(stored);
    return name != asitis && !isthere(name) && isthere(asitis) ? asitis : name;
}

} // namespace orv
