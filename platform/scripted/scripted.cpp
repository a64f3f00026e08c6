// The scripted double of the window system.
#include "platform/scripted/scripted.h"

#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "shell/menucommands.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <map>
#include <utility>

namespace orv::scripted {

namespace {

enum class kind { box, open, save, colour, print, window };
constexpr const char* kindnames[] = {"box",           "open dialog",  "save dialog",
                                     "colour dialog", "print dialog", "window"};

struct expectation {
    kind what{};
    std::string fragment = {};
    platform::answer given{};
    std::optional<std::string> path = {};
    std::optional<std::int32_t> colour = {};
    DrawSurface* page = nullptr;
    step inside = {};
};

struct delayedstep {
    std::int64_t at = 0;
    step run;
};

struct state {
    std::vector<std::string> calls;
    std::deque<expectation> expected;
    std::vector<delayedstep> steps;
    std::map<std::string, step> closing;
    std::int64_t yields = 0;
    std::map<std::string, std::string> texts;
    std::map<std::string, bool> visible, enabled, chosen;
    std::map<std::string, std::vector<std::string>> rows;
    std::map<std::string, std::string> commands; // the last line of each
    std::string status[2], title;
    std::vector<std::string> log;
    platform::shape pointer = platform::shape::normal;
    bool closed = false;
    std::int32_t background = 0xF0F0F0;
    DrawSurface* picture = nullptr;
    platform::regionmarks region{".", ","};
    std::uint64_t memory = std::uint64_t{8} << 30;
    std::string programdirectory = ".";
    bool programs = true;
};

state now;
bool recording = true;
std::function<void(const std::string&)> failurehandler;

void note(std::string line) {
    if (recording) now.calls.push_back(std::move(line));
}

void fail(const std::string& message) {
    if (failurehandler) {
        failurehandler(message);
        return;
    }
    std::fprintf(stderr, "%s\n", message.c_str());
    std::abort();
}

std::string described(const expectation& one) {
    return std::string(kindnames[static_cast<int>(one.what)]) + " \"" + one.fragment + "\"";
}

// Takes the head of the queue when it fits what is shown now; reports it otherwise.
std::optional<expectation> takeexpected(kind what, const std::string& title, const std::string& text) {
    const std::string shown =
        std::string(kindnames[static_cast<int>(what)]) + " \"" + title + "\" \"" + text + "\"";
    if (now.expected.empty()) {
        fail("Not expected: " + shown + ".");
        return std::nullopt;
    }
    const expectation& head = now.expected.front();
    if (head.what != what ||
        (title.find(head.fragment) == std::string::npos && text.find(head.fragment) == std::string::npos)) {
        fail("Not expected: " + shown + "; expected was the " + described(head) + ".");
        return std::nullopt;
    }
    expectation taken = std::move(now.expected.front());
    now.expected.pop_front();
    return taken;
}

[[noreturn]] void cancel() {
    throw runtimeerror{errorkind::cancelled, "The dialog was cancelled."};
}

std::string answeredpath(kind what, const char* word, const platform::filerequest& request) {
    note(std::string(word) + "|" + request.title + "|" + request.filter + "|" + request.proposal + "|" +
         request.directory);
    const auto taken = takeexpected(what, request.title, "");
    if (!taken || !taken->path) cancel();
    return *taken->path;
}

std::string switchline(const char* word, const std::string& control, bool value) {
    return std::string(word) + " " + control + (value ? " 1" : " 0");
}

bool valueof(const std::map<std::string, bool>& table, const std::string& control, bool unset) {
    const auto found = table.find(control);
    return found == table.end() ? unset : found->second;
}

} // namespace

void reset() {
    now = state{};
}

void onfailure(std::function<void(const std::string&)> handler) {
    failurehandler = std::move(handler);
}

void record(bool recorded) {
    recording = recorded;
}

const std::vector<std::string>& calls() {
    return now.calls;
}

void clearcalls() {
    now.calls.clear();
}

std::vector<std::string> callswith(std::string_view beginning) {
    std::vector<std::string> found;
    for (const std::string& line : now.calls)
        if (line.starts_with(beginning)) found.push_back(line);
    return found;
}

std::size_t countcalls(std::string_view beginning) {
    return static_cast<std::size_t>(
        std::count_if(now.calls.begin(), now.calls.end(),
                      [&](const std::string& line) { return line.starts_with(beginning); }));
}

bool called(std::string_view line) {
    return std::find(now.calls.begin(), now.calls.end(), line) != now.calls.end();
}

void expectbox(std::string fragment, platform::answer given) {
    now.expected.push_back({.what = kind::box, .fragment = std::move(fragment), .given = given});
}

void expectopen(std::optional<std::string> path, std::string fragment) {
    now.expected.push_back({.what = kind::open, .fragment = std::move(fragment), .path = std::move(path)});
}

void expectsave(std::optional<std::string> path, std::string fragment) {
    now.expected.push_back({.what = kind::save, .fragment = std::move(fragment), .path = std::move(path)});
}

void expectcolour(std::optional<std::int32_t> colour) {
    now.expected.push_back({.what = kind::colour, .colour = colour});
}

void expectprint(DrawSurface* page) {
    now.expected.push_back({.what = kind::print, .page = page});
}

void expectwindow(std::string name, step inside) {
    now.expected.push_back({.what = kind::window, .fragment = std::move(name), .inside = std::move(inside)});
}

std::vector<std::string> pending() {
    std::vector<std::string> left;
    for (const expectation& one : now.expected) left.push_back(described(one));
    for (const delayedstep& one : now.steps)
        left.push_back("step at yield " + std::to_string(one.at) + " of " + std::to_string(now.yields));
    return left;
}

void atclose(std::string name, step run) {
    now.closing[std::move(name)] = std::move(run);
}

void atyield(int n, step run) {
    now.steps.push_back({now.yields + n, std::move(run)});
}

std::int64_t yieldcount() {
    return now.yields;
}

bool isenabled(const std::string& control) {
    return valueof(now.enabled, control, true);
}

bool ischosen(const std::string& control) {
    return valueof(now.chosen, control, false);
}

const std::vector<std::string>& rowsof(const std::string& control) {
    return now.rows[control];
}

std::string statustext(int panel) {
    return panel == 1 || panel == 2 ? now.status[panel - 1] : std::string();
}

std::string title() {
    return now.title;
}

const std::vector<std::string>& logtext() {
    return now.log;
}

platform::shape pointershape() {
    return now.pointer;
}

bool windowsclosed() {
    return now.closed;
}

void setpicture(DrawSurface* surface) {
    now.picture = surface;
}

void setregion(platform::regionmarks marks) {
    now.region = std::move(marks);
}

void setmemory(std::uint64_t bytes) {
    now.memory = bytes;
}

void setprograms(bool there) {
    now.programs = there;
}

void setprogramdirectory(std::string directory) {
    now.programdirectory = std::move(directory);
}

} // namespace orv::scripted

namespace orv::platform {

using namespace orv::scripted;

namespace {

constexpr const char* buttonnames[] = {"ok", "okcancel", "yesno"};
constexpr const char* iconnames[] = {"none", "information", "question", "exclamation", "stop"};
constexpr const char* answernames[] = {"ok", "cancel", "yes", "no"};
constexpr const char* shapenames[] = {"normal", "wait", "sizeall", "cross", "arrow", "placedpoint"};

} // namespace

answer messagebox(const std::string& title, const std::string& text, buttons choice, icon sign,
                  answer preset) {
    note("box|" + title + "|" + text + "|" + buttonnames[static_cast<int>(choice)] + "|" +
         iconnames[static_cast<int>(sign)] + "|" + answernames[static_cast<int>(preset)]);
    const auto taken = takeexpected(kind::box, title, text);
    return taken ? taken->given : preset;
}

std::string askopenfile(const filerequest& request) {
    return answeredpath(kind::open, "open", request);
}

std::vector<std::string> askopenfiles(const filerequest& request) {
    std::vector<std::string> paths(1);
    for (const char c : answeredpath(kind::open, "open", request))
        if (c == '\n')
            paths.emplace_back();
        else
            paths.back() += c;
    return paths;
}

std::string asksavefile(const filerequest& request) {
    return answeredpath(kind::save, "save", request);
}

std::int32_t askcolour(std::int32_t present) {
    note("colour " + std::to_string(present));
    const auto taken = takeexpected(kind::colour, "", "");
    if (!taken || !taken->colour) cancel();
    return *taken->colour;
}

void printpicture(const std::function<void(DrawSurface&)>& draw) {
    note("print");
    const auto taken = takeexpected(kind::print, "", "");
    if (!taken || !taken->page) cancel();
    draw(*taken->page);
}

void printersetup() {
    note("printersetup");
}

void showwindow(const std::string& name, bool modal) {
    note("window " + name + (modal ? " modal" : " modeless"));
    const auto taken = takeexpected(kind::window, name, "");
    if (taken && taken->inside) taken->inside();
}

void closewindow(const std::string& name) {
    note("closewindow " + name);
    const auto found = now.closing.find(name);
    if (found == now.closing.end()) return;
    const step close = std::move(found->second);
    now.closing.erase(found);
    close();
}

void updatewindow(const std::string& name) {
    note("updatewindow " + name);
}

void yield() {
    note("yield");
    ++now.yields;
    // A step may yield itself, or set the next one, so each is taken out before it runs and the search begins
    // anew behind it.
    const std::int64_t current = now.yields;
    for (std::size_t i = 0; i < now.steps.size();) {
        if (now.steps[i].at != current) {
            ++i;
            continue;
        }
        const step run = std::move(now.steps[i].run);
        now.steps.erase(now.steps.begin() + static_cast<std::ptrdiff_t>(i));
        run();
        i = 0;
    }
}

void closewindows() {
    note("close");
    now.closed = true;
}

void halt(int status) {
    note("halt " + std::to_string(status));
    throw halted{status};
}

void pointer(shape form) {
    note(std::string("pointer ") + shapenames[static_cast<int>(form)]);
    now.pointer = form;
}

void statustext(int panel, const std::string& text) {
    if (!recording) return;
    note("status " + std::to_string(panel) + "|" + text);
    if (panel == 1 || panel == 2) now.status[panel - 1] = text;
}

void windowtitle(const std::string& text) {
    note("title|" + text);
    now.title = text;
}

std::int32_t background(std::int32_t colour) {
    note("background " + std::to_string(colour));
    return std::exchange(now.background, colour);
}

void clearlog() {
    note("clearlog");
    now.log.clear();
}

void logline(const std::string& text) {
    if (!recording) return;
    note("log|" + text);
    now.log.push_back(text);
}

double logfill() {
    constexpr double fulllines = 40;
    return std::min(1.0, static_cast<double>(now.log.size()) / fulllines);
}

DrawSurface& picture() {
    if (!now.picture) {
        fail("The picture was asked for, and the test has set none.");
        throw halted{1};
    }
    return *now.picture;
}

void settext(const std::string& control, const std::string& text) {
    note("text " + control + "|" + text);
    now.texts[control] = text;
}

std::string gettext(const std::string& control) {
    const auto found = now.texts.find(control);
    return found == now.texts.end() ? std::string() : found->second;
}

void setvisible(const std::string& control, bool visible) {
    note(switchline("visible", control, visible));
    now.visible[control] = visible;
}

bool isvisible(const std::string& control) {
    return valueof(now.visible, control, false);
}

void setenabled(const std::string& control, bool enabled) {
    note(switchline("enabled", control, enabled));
    now.enabled[control] = enabled;
}

void setchosen(const std::string& control, bool chosen) {
    note(switchline("chosen", control, chosen));
    now.chosen[control] = chosen;
}

bool isenabled(const std::string& control) {
    return scripted::isenabled(control);
}

bool ischosen(const std::string& control) {
    return scripted::ischosen(control);
}

void setrows(const std::string& control, const std::vector<std::string>& rows) {
    note("rows " + control + " " + std::to_string(rows.size()));
    now.rows[control] = rows;
    now.texts[control] = rows.empty() ? std::string() : rows.front();
}

void addrow(const std::string& control, const std::string& text, bool selected) {
    note("row " + control + (selected ? " selected|" : "|") + text);
    now.rows[control].push_back(text);
}

void setprogress(const std::string& control, double percent) {
    if (recording) note("progress " + control + numbertext(percent));
}

void showcommand(const menucommand& row) {
    const std::string name(row.name);
    std::string line = "command " + name + (row.enabled ? " enabled" : " disabled") +
                       (row.checked ? " checked" : "") + (row.visible ? "" : " hidden");
    if (std::exchange(now.commands[name], line) != line) note(std::move(line));
}

void beep() {
    note("beep");
}

void cliptext(const std::string& text) {
    note("cliptext|" + text);
}

void clippicture() {
    note("clippicture");
}

void showregionsettings() {
    note("regionsettings");
}

void opendocument(const std::string& path) {
    note("document|" + path);
}

bool hasopener(const std::string&) {
    return now.programs;
}

void startcommand(const std::string& commandline) {
    note("start|" + commandline);
    if (!now.programs)
        throw runtimeerror{errorkind::filenotfound,
                           commandline.substr(0, commandline.find(' ')) + " cannot be started."};
}

regionmarks userregion() {
    return now.region;
}

std::uint64_t memorybytes() {
    return now.memory;
}

std::string programdirectory() {
    return now.programdirectory;
}

} // namespace orv::platform
