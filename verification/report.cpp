// Tables of the verification, and how they are written.
#include "verification/report.h"

#include "base/numbertext.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orv::verification {

namespace {

constexpr int valueplaces = 6, differenceplaces = 2; // significant digits
constexpr int plainpoint = 7;                        // digits before the point that are written in full
constexpr double nothing = 1e-13;                    // a value below this is shown as 0
constexpr double little = 1e-4;                      // a value below this is shown as a difference is

row& rowof(table& into, std::string_view quantity, relation kind, double allowed) {
    for (row& known : into.rows)
        if (known.quantity == quantity) return known;
    into.rows.push_back({std::string(quantity), kind, allowed, {}});
    into.rows.back().cases.resize(into.cases.size());
    return into.rows.back();
}

void add(row& to, std::size_t atcase, double expected, double computed, double difference) {
    comparison& worst = to.cases.at(atcase);
    if (std::isnan(difference)) difference = std::numeric_limits<double>::infinity();
    if (worst.count++ > 0 && difference <= worst.difference) return;
    worst.expected = expected;
    worst.computed = computed;
    worst.difference = difference;
}

double worstof(const row& checked) {
    double worst = 0;
    for (const comparison& each : checked.cases) worst = std::max(worst, each.difference);
    return worst;
}

std::int64_t countof(const row& checked) {
    std::int64_t count = 0;
    for (const comparison& each : checked.cases) count += each.count;
    return count;
}

// --- Numbers ---

struct numberform {
    std::string_view exponentfront, exponentback;
};
constexpr numberform plainform = {"E", ""}, htmlform = {" &times; 10<sup>", "</sup>"};

// A number with so many significant digits, and an exponent where it has one too many zeros.
std::string shown(double value, int places, const numberform& form) {
    if (!std::isfinite(value)) return "none";
    const decimaldigits digits = significantdigits(value, places);
    if (digits.count == 0) return "0";
    const bool plain = digits.point > -3 && digits.point <= plainpoint;
    const int point = plain ? digits.point : 1;
    std::string text = digits.negative ? "-" : "";
    if (point <= 0) text += "0." + std::string(static_cast<std::size_t>(-point), '0');
    for (int i = 0; i < std::max(digits.count, point); ++i) {
        if (i > 0 && i == point) text += '.';
        text += i < digits.count ? digits.digit[static_cast<std::size_t>(i)] : '0';
    }
    if (!plain)
        text.append(form.exponentfront).append(trimmedwhole(digits.point - 1)).append(form.exponentback);
    return text;
}

std::string valuetext(double value, const numberform& form) {
    if (std::fabs(value) < nothing) return "0";
    return shown(value, std::fabs(value) < little ? differenceplaces : valueplaces, form);
}

std::string expectedtext(const row& of, const comparison& cell, const numberform& form) {
    const std::string value = valuetext(cell.expected, form);
    return of.kind == relation::atmost ? value + " or less" : value;
}

std::string allowedtext(const row& of, const numberform& form) {
    switch (of.kind) {
    case relation::atmost:
        return "0";
    case relation::departs:
        return "departs";
    default:
        return shown(of.allowed, differenceplaces, form);
    }
}

std::string verdict(const row& of) {
    if (of.kind == relation::departs) return "shown";
    return holds(of) ? "ok" : "MISSED";
}

// --- Plain text ---

void pad(std::string& line, std::size_t column) {
    line += ' ';
    if (line.size() < column) line.resize(column, ' ');
}

constexpr std::size_t columns[] = {52, 88, 108, 124, 132, 144, 153};

std::string headline() {
    std::string line = "  quantity";
    const std::string_view titles[] = {"case", "expected", "computed", "numbers", "difference", "allowed"};
    for (std::size_t i = 0; i < std::size(titles); ++i) {
        pad(line, columns[i]);
        line += titles[i];
    }
    return line + "\n";
}

std::string textline(const table& of, const row& each, std::size_t atcase) {
    const comparison& cell = each.cases[atcase];
    std::string line = "  " + each.quantity;
    const std::string fields[] = {of.cases[atcase],
                                  expectedtext(each, cell, plainform),
                                  valuetext(cell.computed, plainform),
                                  trimmedwhole(cell.count),
                                  shown(cell.difference, differenceplaces, plainform),
                                  allowedtext(each, plainform),
                                  verdict(each)};
    for (std::size_t i = 0; i < std::size(fields); ++i) {
        pad(line, columns[i]);
        line += fields[i];
    }
    return line + "\n";
}

// --- HTML ---

std::string cell(std::string_view text) {
    return "<td>" + std::string(text) + "</td>";
}

std::string differencetext(const row& of) {
    return shown(worstof(of), differenceplaces, htmlform);
}

constexpr std::string_view tablestart = "<table class=\"proof\">\n<tr><th>Quantity</th>";

std::string plaintable(const table& of) {
    std::string text(tablestart);
    text += "<th>Expected</th><th>Computed</th><th>Numbers</th><th>Largest "
            "difference</th><th>Allowed</th></tr>\n";
    for (const row& each : of.rows)
        text += "<tr>" + cell(each.quantity) + cell(expectedtext(each, each.cases[0], htmlform)) +
                cell(valuetext(each.cases[0].computed, htmlform)) + cell(trimmedwhole(countof(each))) +
                cell(differencetext(each)) + cell(allowedtext(each, htmlform)) + "</tr>\n";
    return text + "</table>\n";
}

// Expected over computed in each cell, and the largest difference over what is allowed.
std::string casestable(const table& of) {
    std::string text(tablestart);
    for (const std::string& name : of.cases) text += "<th>" + name + "</th>";
    text += "<th>Numbers</th><th>Difference<br>allowed</th></tr>\n";
    for (const row& each : of.rows) {
        text += "<tr>" + cell(each.quantity);
        for (const comparison& value : each.cases)
            text += cell(value.count == 0 ? ""
                                          : expectedtext(each, value, htmlform) + "<br>" +
                                                valuetext(value.computed, htmlform));
        text += cell(trimmedwhole(countof(each))) +
                cell(differencetext(each) + "<br>" + allowedtext(each, htmlform)) + "</tr>\n";
    }
    return text + "</table>\n";
}

struct totals {
    std::int64_t numbers = 0;
    double share = 0; // the largest difference as a share of what is allowed
};

totals totalsof(const subject& of) {
    totals sum;
    for (const table& each : of.tables)
        for (const row& line : each.rows) {
            if (line.kind == relation::departs) continue;
            sum.numbers += countof(line);
            if (line.kind == relation::within && line.allowed > 0)
                sum.share = std::max(sum.share, worstof(line) / line.allowed);
        }
    return sum;
}

std::string summary(std::span<const subject> subjects) {
    std::string text = "<table>\n<tr><th>Subject</th><th>Numbers compared</th><th>Largest difference, share "
                       "of what is allowed</th><th></th></tr>\n";
    for (const subject& each : subjects) {
        const totals sum = totalsof(each);
        text += "<tr>" + cell(each.title) + cell(trimmedwhole(sum.numbers)) +
                cell(trimmedwhole(std::lround(100 * std::min(sum.share, 1e6))) + " %") +
                cell(holds(each) ? "holds" : "missed") + "</tr>\n";
    }
    return text + "</table>\n";
}

constexpr std::string_view foreword =
    "<h2>Verification</h2>\n"
    "<p>When the program is built, its routines compute what can be known without them, and the build fails "
    "where a value is farther off than allowed. This chapter is what that run has found. Expected values "
    "come from closed forms or from plain arithmetic in extended precision; computed ones from the program's "
    "own routines, through files wherever there is a file. Where a line stands for many numbers, the one "
    "that differs most is shown, and its difference.</p>\n"
    "<p>Tables with a column for each case have the expected value above the computed one. Where the program "
    "departs from a standard on purpose, or a method from the plain value, the line says so and is not "
    "counted.</p>\n";

} // namespace

void compare(table& into, std::string_view quantity, double allowed, double expected, double computed,
             std::size_t atcase) {
    add(rowof(into, quantity, relation::within, allowed), atcase, expected, computed,
        std::fabs(computed - expected));
}

void atmost(table& into, std::string_view quantity, double limit, double computed, std::size_t atcase) {
    row& to = rowof(into, quantity, relation::atmost, 0);
    comparison& cell = to.cases.at(atcase);
    const double beyond = std::max(computed - limit, 0.0);
    // Within the limit the largest value is shown.
    if (cell.count > 0 && beyond == 0 && cell.difference == 0) {
        ++cell.count;
        cell.computed = std::max(cell.computed, computed);
        return;
    }
    add(to, atcase, limit, computed, std::isnan(computed) ? computed : beyond);
}

void departs(table& into, std::string_view quantity, double expected, double computed, std::size_t atcase) {
    add(rowof(into, quantity, relation::departs, 0), atcase, expected, computed,
        std::fabs(computed - expected));
}

bool holds(const row& checked) {
    return checked.kind == relation::departs || worstof(checked) <= checked.allowed;
}

bool holds(const subject& checked) {
    for (const table& each : checked.tables)
        for (const row& line : each.rows)
            if (!holds(line)) return false;
    return !checked.tables.empty();
}

std::string plaintext(std::span<const subject> subjects) {
    std::string text;
    for (const subject& each : subjects) {
        text += each.name + "\n";
        for (const table& of : each.tables) {
            text += "\n  " + of.title + "\n" + headline();
            for (const row& line : of.rows)
                for (std::size_t c = 0; c < line.cases.size(); ++c)
                    if (line.cases[c].count > 0) text += textline(of, line, c);
        }
        text += "\n";
    }
    return text;
}

std::string chapter(std::span<const subject> subjects) {
    std::string text(foreword);
    text += summary(subjects);
    for (const subject& each : subjects) {
        text += "\n<h3>" + each.title + "</h3>\n<p>" + each.introduction + "</p>\n";
        for (const table& of : each.tables) {
            text += "<p><b>" + of.title + ".</b>" + (of.note.empty() ? "" : " ") + of.note + "</p>\n";
            text += of.cases.size() > 1 ? casestable(of) : plaintable(of);
        }
    }
    return text;
}

} // namespace orv::verification
