// What the verification finds: for each subject tables of expected and computed values, and how they are
// written, as plain text and as a chapter of the manual.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orv::verification {

// How a computed value is held against the expected one. What departs on purpose is shown, and not judged.
enum class relation { within, atmost, departs };

// The comparison of a row that differs most, and how many there were; none leaves a cell empty.
struct comparison {
    double expected = 0, computed = 0, difference = 0;
    std::int64_t count = 0;
};

struct row {
    std::string quantity;
    relation kind = relation::within;
    double allowed = 0;
    std::vector<comparison> cases; // as many as its table has
};

// Rows that are alike. A table with cases has a column for each of them.
struct table {
    std::string title, note; // HTML
    std::vector<std::string> cases = {""};
    std::vector<row> rows = {};
};

struct subject {
    std::string name, title, introduction; // the two latter HTML
    std::vector<table> tables = {};
};

// Add a comparison to the row of this quantity, which is made when it is new. `atmost` takes any value up to
// the limit.
void compare(table& into, std::string_view quantity, double allowed, double expected, double computed,
             std::size_t atcase = 0);
void atmost(table& into, std::string_view quantity, double limit, double computed, std::size_t atcase = 0);
void departs(table& into, std::string_view quantity, double expected, double computed,
             std::size_t atcase = 0);

// Whether every row keeps what is allowed.
bool holds(const row& checked);
bool holds(const subject& checked);

// All of them, a line for each comparison.
std::string plaintext(std::span<const subject> subjects);

// A fragment of HTML as the manual's other chapters are.
std::string chapter(std::span<const subject> subjects);

} // namespace orv::verification
