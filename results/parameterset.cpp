// The parameter tables and their reading for display.
#include "results/parameterset.h"

#include "base/arithmetic.h"
#include "base/formatpattern.h"
#include "base/runtimeerror.h"

#include <array>
#include <cmath>

namespace orv {

parameterset ParameterSet;

namespace {

// One row for each name that has a value, with its reading as a single-precision number.
struct parameterrow {
    std::string_view name;
    float (*value)(std::int32_t receiver, std::int32_t band);
};

const auto& P = ParameterSet;
constexpr std::array<parameterrow, 21> parameterrows = {{
    {"Leq", [](std::int32_t r, std::int32_t b) { return P.Leq(r, b); }},
    {"Ldir", [](std::int32_t r, std::int32_t b) { return P.Ldir(r, b); }},
    {"Lrev", [](std::int32_t r, std::int32_t b) { return P.Lrev(r, b); }},
    {"Ldir-Lrev", [](std::int32_t r, std::int32_t b) { return P.LdirLrev(r, b); }},
    {"Leq-Lw", [](std::int32_t r, std::int32_t b) { return P.LeqLw(r, b); }},
    {"G", [](std::int32_t r, std::int32_t b) { return single(P.LeqLw(r, b) + strengthoffset); }},
    {"EDT", [](std::int32_t r, std::int32_t b) { return P.EDT(r, b); }},
    {"T10", [](std::int32_t r, std::int32_t b) { return P.T10(r, b); }},
    {"T15", [](std::int32_t r, std::int32_t b) { return P.T15(r, b); }},
    {"T20", [](std::int32_t r, std::int32_t b) { return P.T20(r, b); }},
    {"T30", [](std::int32_t r, std::int32_t b) { return P.T30(r, b); }},
    {"C50", [](std::int32_t r, std::int32_t b) { return P.C50(r, b); }},
    {"C80", [](std::int32_t r, std::int32_t b) { return P.C80(r, b); }},
    {"Ts", [](std::int32_t r, std::int32_t b) { return P.Ts(r, b); }},
    {"Aeq", [](std::int32_t r, std::int32_t b) { return P.Aeq(r, b); }},
    {"STI",
     [](std::int32_t r, std::int32_t b) {
         if (b < firstspeechband)
             throw runtimeerror{errorkind::subscript, "STI has no value below 125 Hz."};
         return P.STI(r, b);
     }},
    {"LE", [](std::int32_t r, std::int32_t b) { return P.LE(r, b); }},
    {"LF", [](std::int32_t r, std::int32_t b) { return P.LF(r, b); }},
    {"LFC", [](std::int32_t r, std::int32_t b) { return P.LFC(r, b); }},
    {"Aeq2", [](std::int32_t r, std::int32_t b) { return P.Aeq2(r, b); }},
    {"ITDGeq", [](std::int32_t r, std::int32_t b) { return P.ITDGeq(r, b); }},
}};

const parameterrow* selectedrow() {
    for (const parameterrow& row : parameterrows)
        if (row.name == SessionState.parameterName) return &row;
    return nullptr;
}

double definition(std::int32_t receiver, std::int32_t band) {
    return 1 / (1 + std::pow(10.0, -wide(P.C50(receiver, band)) / 10));
}

} // namespace

double parametervalue(std::int32_t receiver, std::int32_t band) {
    if (SessionState.parameterName == "D50") return definition(receiver, band);
    const parameterrow* const row = selectedrow();
    return row ? wide(row->value(receiver, band)) : 0.0;
}

std::string parametertext(std::int32_t receiver, std::int32_t band, std::string_view pattern) {
    if (SessionState.parameterName == "D50") return formatnumber(definition(receiver, band), pattern);
    const parameterrow* const row = selectedrow();
    return formatnumber(row ? row->value(receiver, band) : 0.0F, pattern);
}

} // namespace orv
