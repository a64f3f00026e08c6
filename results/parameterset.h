// ParameterSet: the room-acoustic parameters of every receiver by band. Receiver 0 is the room average. The
// tables live as long as the process, and a load does not clear them: a value that no rule sets keeps what an
// earlier load gave it.
#pragma once

#include "base/table.h"
#include "room/roommodel.h"
#include "shell/sessionstate.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace orv {

// Single precision by receiver 0..100000 and bandIndex 1..12.
template <tablename name>
using parametertable = fixedtable<name, float, highestreceiver, bandcount>;

// dB to add to Leq less the power level for G, which refers to the level at 10 m in a free field (ISO
// 3382-1).
constexpr double strengthoffset = 31;

struct parameterset {
    parametertable<"Leq"> Leq;           // dB, equivalent level; row 0 energy mean
    parametertable<"Ldir"> Ldir;         // dB, direct sound
    parametertable<"Lrev"> Lrev;         // dB, all but the direct sound
    parametertable<"LdirLrev"> LdirLrev; // dB
    parametertable<"LeqLw"> LeqLw;       // dB, Leq less the source's power level; row 0 energy mean
    parametertable<"C50"> C50;           // dB, clarity (ISO 3382-1)
    parametertable<"C80"> C80;           // dB
    parametertable<"Ts"> Ts;             // ms, centre time (ISO 3382-1)
    parametertable<"Aeq"> Aeq;           // amplitude ratio of all reflected to direct sound
    parametertable<"Aeq2"> Aeq2;         // the same for the early reflected sound
    parametertable<"ITDGeq"> ITDGeq;     // ms, energy-weighted mean delay of the early sound
    parametertable<"EDT"> EDT;           // s, decay times; 0 where the decay does not reach their lower end
    parametertable<"T10"> T10;
    parametertable<"T15"> T15;
    parametertable<"T20"> T20;
    parametertable<"T30"> T30;
    parametertable<"LE"> LE; // lateral rows of the result file, ratios; row 0 is computed by nothing
    parametertable<"LF"> LF;
    parametertable<"LFC"> LFC;

    // Speech transmission index, bandIndex 3..9 male band indices, 11 STI-Male, 12 STI-Female; the bands
    // below 3 are none of it.
    parametertable<"STI"> STI;

    // Modulation transfer: receiver 0..100000, modulation frequency 1..14, band 3..9 as 0..6.
    fixedtable<"modulationTransfer", float, highestreceiver, modulationcount, speechbands - 1>
        modulationTransfer;
};

extern parameterset ParameterSet;

// The value for display of the parameter that SessionState.parameterName names, for a receiver 0..100000 and
// a bandIndex 1..12. G is LeqLw + 31 and D50 the fraction 1 / (1 + 10^(-C50 / 10)) (ISO 3382-1); both are
// computed here. STI has bands 3..12 only. 0 for a name that is no parameter. Raises subscript.
//
// Every value but D50 is single precision, widened.
double parametervalue(std::int32_t receiver, std::int32_t band);

// The same value written by a format pattern, from seven decimal digits or, for D50, fifteen.
std::string parametertext(std::int32_t receiver, std::int32_t band, std::string_view pattern);

} // namespace orv
