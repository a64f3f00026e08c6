// Room-acoustic parameters from energy responses.
#include "results/acousticparameters.h"

#include "base/arithmetic.h"
#include "base/wideloops.h"
#include "platform/platform.h"
#include "results/parameterset.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>

namespace orv {

namespace {

constexpr double earlylimit = 0.05;   // s, C50 and the end of the full early weight
constexpr double claritylimit = 0.08; // s, C80
constexpr double fadelimit = 0.1;     // s, where the early weight has faded out
constexpr double newformat = 1.2;     // result files from this format on hold finished lateral rows

// Offsets whose sines and cosines are kept; later slots compute theirs anew, so that a response of millions
// of slots costs no tables.
constexpr std::int32_t keptoffsets = 65536;

constexpr std::size_t bands = bandcount;
constexpr std::size_t integratedbands = 4; // at once, in one wide register
constexpr std::size_t index(int band) {
    return static_cast<std::size_t>(band);
}

// Every failing operation below ends in an infinity or NaN, so that storing only finite values leaves the
// target of a failed step as it was, at no cost in the loops.
void storefinite(float& target, double value) {
    const float stored = static_cast<float>(value);
    if (std::isfinite(stored)) target = stored;
}

// Levels to 0.1 dB, clarity cut down to 0.01 dB.
double energylevel(double energy) {
    return Int(10 * 10 * std::log10(energy) + 0.5) / 10;
}
double clarity(double early, double late) {
    return Int(1000 * std::log10(early / late)) / 100;
}

// The bands that are computed: firstBand..12 without the octave bands above lastBand.
template <class action>
void foreachband(action run) {
    const double first = std::nearbyint(static_cast<double>(ResultSet.firstBand));
    for (int b = static_cast<int>(std::clamp(first, 1.0, bandcount + 1.0)); b <= bandcount; ++b)
        if (b > octavebands || static_cast<float>(b) <= ResultSet.lastBand) run(b);
}

// --- Sums over the slots ---

// Adds a run of slots from slot `begin` on, whose first has the given offset from the first arrival.
ORV_WIDELOOPS
void addenergies(workingsums& sums, const float* row, std::int32_t begin, std::int32_t count,
                 std::int32_t offset, double timeStep) {
    for (std::int32_t t = 0; t < count; ++t) {
        const double time = timeStep * (offset + t);
        const float* const e = row + static_cast<std::size_t>(begin + t) * bands;
        double energy[bands];
        for (std::size_t i = 0; i < bands; ++i) energy[i] = std::fabs(static_cast<double>(e[i]));
        if (time < earlylimit)
            for (std::size_t i = 0; i < bands; ++i) {
                sums.energyTo50[i + 1] += energy[i];
                sums.momentEarly[i + 1] += time * energy[i];
            }
        if (time < claritylimit)
            for (std::size_t i = 0; i < bands; ++i) sums.energyTo80[i + 1] += energy[i];
        if (time >= earlylimit && time < fadelimit) {
            const double fade = (fadelimit - time) / earlylimit;
            for (std::size_t i = 0; i < bands; ++i) {
                sums.energyFade[i + 1] += energy[i] * fade;
                sums.momentEarly[i + 1] += time * energy[i] * fade;
            }
        }
        for (std::size_t i = 0; i < bands; ++i) {
            sums.energyTotal[i + 1] += energy[i];
            sums.momentTotal[i + 1] += time * energy[i];
        }
    }
}

// The sines and cosines of one modulation frequency for `count` slots.
struct wave {
    const double* cosine;
    const double* sine;
};

// Adds a run of slots to the modulation sums of two frequencies at once. The eight lanes are the seven bands
// and one more that nobody reads; each lane's sum runs in the order of the slots.
ORV_WIDELOOPS
void addmodulation(double* sums, const float* energies, std::int32_t count, wave a, wave b) {
    constexpr int lanes = 8;
    double cosineA[lanes], sineA[lanes], cosineB[lanes], sineB[lanes];
    for (int i = 0; i < lanes; ++i) {
        cosineA[i] = sums[i];
        sineA[i] = sums[lanes + i];
        cosineB[i] = sums[2 * lanes + i];
        sineB[i] = sums[3 * lanes + i];
    }
    for (std::int32_t t = 0; t < count; ++t) {
        const float* const e = energies + static_cast<std::size_t>(t) * bands;
        for (int i = 0; i < lanes; ++i) {
            const double energy = static_cast<double>(e[i]);
            cosineA[i] += energy * a.cosine[t];
            sineA[i] += energy * a.sine[t];
            cosineB[i] += energy * b.cosine[t];
            sineB[i] += energy * b.sine[t];
        }
    }
    for (int i = 0; i < lanes; ++i) {
        sums[i] = cosineA[i];
        sums[lanes + i] = sineA[i];
        sums[2 * lanes + i] = cosineB[i];
        sums[3 * lanes + i] = sineB[i];
    }
}

// Lets the kept sines and cosines reach up to `offsets`, as far as they are kept at all.
void extendtables(offsettables& tables, float timeStep, std::int32_t offsets) {
    if (tables.timeStep != timeStep) tables = {};
    tables.timeStep = timeStep;
    const auto wanted = static_cast<std::size_t>(std::min(offsets, keptoffsets));
    for (std::size_t i = 1; i <= modulationcount; ++i) {
        const double omega = static_cast<double>(SessionState.modulationOmega[i]);
        for (std::size_t k = tables.cosine[i].size(); k < wanted; ++k) {
            const double phase = omega * (static_cast<double>(timeStep) * static_cast<double>(k));
            tables.cosine[i].push_back(std::cos(phase));
            tables.sine[i].push_back(std::sin(phase));
        }
    }
}

void addmodulationrun(workingsums& sums, const offsettables& tables, const float* row, std::int32_t begin,
                      std::int32_t count, std::int32_t offset) {
    const float* const energies = row + static_cast<std::size_t>(begin) * bands + (firstmodulationband - 1);
    const auto from = static_cast<std::size_t>(offset);
    for (std::size_t i = 1; i < modulationcount; i += 2) {
        double lanes[4][8] = {};
        for (std::size_t k = 0; k < modulationbands; ++k) {
            lanes[0][k] = sums.mtfCosine[k][i];
            lanes[1][k] = sums.mtfSine[k][i];
            lanes[2][k] = sums.mtfCosine[k][i + 1];
            lanes[3][k] = sums.mtfSine[k][i + 1];
        }
        addmodulation(&lanes[0][0], energies, count,
                      {tables.cosine[i].data() + from, tables.sine[i].data() + from},
                      {tables.cosine[i + 1].data() + from, tables.sine[i + 1].data() + from});
        for (std::size_t k = 0; k < modulationbands; ++k) {
            sums.mtfCosine[k][i] = lanes[0][k];
            sums.mtfSine[k][i] = lanes[1][k];
            sums.mtfCosine[k][i + 1] = lanes[2][k];
            sums.mtfSine[k][i + 1] = lanes[3][k];
        }
    }
}

// The same for slots beyond the kept tables, one by one.
void addlatemodulation(workingsums& sums, const float* row, std::int32_t begin, std::int32_t count,
                       std::int32_t offset, double timeStep) {
    for (std::int32_t t = 0; t < count; ++t) {
        const float* const e = row + static_cast<std::size_t>(begin + t) * bands + (firstmodulationband - 1);
        const double time = timeStep * (offset + t);
        if (t % keptoffsets == 0) platform::yield(); // millions of slots take their time
        for (std::size_t i = 1; i <= modulationcount; ++i) {
            const double phase = static_cast<double>(SessionState.modulationOmega[i]) * time;
            const double cosine = std::cos(phase), sine = std::sin(phase);
            for (std::size_t k = 0; k < modulationbands; ++k) {
                sums.mtfCosine[k][i] += static_cast<double>(e[k]) * cosine;
                sums.mtfSine[k][i] += static_cast<double>(e[k]) * sine;
            }
        }
    }
}

// A run of slots whose offsets follow each other.
void addrun(workingsums& sums, offsettables& tables, const float* row, std::int32_t begin, std::int32_t count,
            std::int32_t offset, float timeStep) {
    const float* const energies = row + static_cast<std::size_t>(begin) * bands;
    // Silence adds nothing; the slots in front of the direct sound are silent in most responses.
    if (std::all_of(energies, energies + static_cast<std::size_t>(count) * bands,
                    [](float energy) { return energy == 0; }))
        return;
    extendtables(tables, timeStep, offset + count);
    addenergies(sums, row, begin, count, offset, static_cast<double>(timeStep));
    const std::int32_t kept = std::clamp(keptoffsets - offset, 0, count);
    if (kept > 0) addmodulationrun(sums, tables, row, begin, kept, offset);
    addlatemodulation(sums, row, begin + kept, count - kept, offset + kept, static_cast<double>(timeStep));
}

// Adds a receiver's share of the mean.
ORV_WIDELOOPS
void addshare(double* sum, const float* row, std::size_t size, double receivers) {
    for (std::size_t i = 0; i < size; ++i) sum[i] += static_cast<double>(row[i]) / receivers;
}

// --- Decay times ---

constexpr std::int32_t longestfit = std::numeric_limits<std::int16_t>::max(); // points are counted in 16 bits

enum class fitoutcome { fitted, notreached, nofall, toolong, noline };

struct decayfit {
    double bottom; // dB, the fit's lower end
    fitoutcome outcome = fitoutcome::nofall;
    double seconds = 0;
};

// The fits of reverb that share one upper end, in one walk down the curve; `fits` stand in the order of their
// lower ends, the highest first. `levelat(i)` gives the points 0..last.
template <class levels>
void fitdecays(double top, std::span<decayfit> fits, levels levelat, std::int32_t last, std::int32_t n,
               double step) {
    const auto endall = [&fits](fitoutcome outcome) {
        for (decayfit& fit : fits) fit.outcome = outcome;
    };
    if (last < 1) return endall(fitoutcome::nofall);
    const double reference = levelat(1); // the second point, not the first
    std::int32_t i = 2;
    for (;; ++i) {
        if (i > longestfit) return endall(fitoutcome::toolong);
        if (i > last) return endall(fitoutcome::nofall);
        if (levelat(i) < reference + top) break;
    }
    const std::int32_t start = --i;
    double sumx = 0, sumy = 0, sumxy = 0, sumxx = 0;
    while (!fits.empty()) {
        if (i > n) return endall(fitoutcome::notreached); // even if the last point fell below
        if (i > last) return endall(fitoutcome::nofall);
        const double x = (i - start) * step;
        const double y = levelat(i) - reference;
        sumx += x;
        sumy += y;
        sumxy += x * y;
        sumxx += x * x;
        if (i == longestfit) return endall(fitoutcome::toolong);
        ++i;
        for (; i <= n && !fits.empty() && y < fits.front().bottom; fits = fits.subspan(1)) {
            decayfit& fit = fits.front();
            const double points = i - start;
            const double slope = (points * sumxy - sumx * sumy) / (points * sumxx - sumx * sumx);
            fit.outcome = fitoutcome::noline;
            if (!std::isfinite(slope)) continue;
            SessionState.decaySlope = slope;
            fit.seconds = -60 / slope;
            if (std::isfinite(fit.seconds)) fit.outcome = fitoutcome::fitted;
        }
    }
}

float curvelevel(double energy, float former) {
    const double level = decibelsperneper * std::log(energy);
    return std::isfinite(level) ? static_cast<float>(level) : former;
}

// Computes the curve's points up to `slot`.
void fillcurve(decaycurve& curve, std::int32_t slot) {
    for (; curve.filled <= slot; ++curve.filled) {
        const auto t = static_cast<std::size_t>(curve.filled);
        curve.level[t] = curvelevel(curve.sums[t * integratedbands + curve.lane], curve.level[t]);
    }
}

// Backward integration of four bands of the row, from 1 and not from 0, which keeps the logarithms defined.
// The first `kept` sums are stored.
ORV_WIDELOOPS
void integratebackward(double* sums, std::int32_t kept, const float* row, std::int32_t slots) {
    double running[integratedbands] = {1, 1, 1, 1};
    for (std::int32_t t = slots - 1; t >= kept; --t) {
        const float* const e = row + static_cast<std::size_t>(t) * bands;
        for (std::size_t i = 0; i < integratedbands; ++i) running[i] += static_cast<double>(e[i]);
    }
    for (std::int32_t t = std::min(slots, kept) - 1; t >= 0; --t) {
        const float* const e = row + static_cast<std::size_t>(t) * bands;
        double* const sum = sums + static_cast<std::size_t>(t) * integratedbands;
        for (std::size_t i = 0; i < integratedbands; ++i) sum[i] = running[i] += static_cast<double>(e[i]);
    }
}

} // namespace

double dB(double value) {
    return value == 0 ? 0 : decibelsperneper * naturallog(value);
}

void addslots(workingsums& sums, offsettables& tables, const float* row, std::int32_t slots,
              std::span<const std::int32_t> arrivals, float timeStep) {
    std::int32_t begin = 0;
    for (const std::int32_t arrival : arrivals) {
        addrun(sums, tables, row, begin, arrival - begin, 0, timeStep);
        begin = arrival;
    }
    addrun(sums, tables, row, begin, slots - begin, 0, timeStep);
}

void storeparameters(std::int32_t r, workingsums& sums) {
    if (r < 0 || r > highestreceiver) return;
    auto& P = ParameterSet;
    foreachband([&](int b) {
        const std::size_t i = index(b);
        double& E = sums.energyTotal[i];
        const double D = sums.directEnergy[i];
        P.Leq(r, b) = 0;
        if (E > 0) storefinite(P.Leq(r, b), energylevel(E));
        // Without late energy the ratio has no divisor: E grows by 1, for all that follows too.
        if (E == sums.energyTo50[i]) E += 1;
        P.C50(r, b) = 0;
        if (sums.energyTo50[i] > 0)
            storefinite(P.C50(r, b), clarity(sums.energyTo50[i], E - sums.energyTo50[i]));
        if (E == sums.energyTo80[i]) E += 1;
        P.C80(r, b) = 0;
        if (sums.energyTo80[i] > 0)
            storefinite(P.C80(r, b), clarity(sums.energyTo80[i], E - sums.energyTo80[i]));
        P.Aeq(r, b) = 0;
        if (E > 0) storefinite(P.Aeq(r, b), std::sqrt((E - D) / D));
        storefinite(P.Ts(r, b), Int(10000 * sums.momentTotal[i] / E + 0.5) / 10);
        const double early = sums.energyTo50[i] + sums.energyFade[i] - D;
        storefinite(P.Aeq2(r, b), std::sqrt(std::fabs(early) / D));
        if (early > 0) storefinite(P.ITDGeq(r, b), Int(1000 * sums.momentEarly[i] / early + 0.5));
        P.Ldir(r, b) = 0;
        if (D > 0) storefinite(P.Ldir(r, b), energylevel(D));
        P.Lrev(r, b) = 0;
        if (E - D > 0) storefinite(P.Lrev(r, b), energylevel(E - D));
        storefinite(P.LdirLrev(r, b), static_cast<double>(P.Ldir(r, b)) - static_cast<double>(P.Lrev(r, b)));
        // The old file holds the lateral energy, the new one the finished ratio.
        if (ResultSet.resultFormat < newformat)
            storefinite(P.LE(r, b), static_cast<double>(P.LE(r, b)) / sums.energyTo80[i]);
    });
    if (ResultSet.resultFormat < newformat) return;
    const double count =
        static_cast<double>(ResultSet.lastBand) - static_cast<double>(ResultSet.firstBand) + 1;
    double weights = 0;
    foreachband([&](int b) {
        if (b <= octavebands) weights += static_cast<double>(SessionState.aWeight[index(b)]);
    });
    const auto finish = [r, count, weights](auto& table) {
        storefinite(table(r, linearband), static_cast<double>(table(r, linearband)) / count);
        storefinite(table(r, weightedband), static_cast<double>(table(r, weightedband)) / weights);
    };
    finish(P.LE);
    finish(P.LF);
    finish(P.LFC);
}

void storemodulation(std::int32_t r, const workingsums& sums) {
    if (r < 0 || r > highestreceiver) return;
    for (int k = 0; k < modulationbands; ++k) {
        const double total = sums.energyTotal[index(k + firstmodulationband)];
        for (int i = 1; i <= modulationcount; ++i) {
            const double sine = sums.mtfSine[index(k)][index(i)];
            const double cosine = sums.mtfCosine[index(k)][index(i)];
            storefinite(ParameterSet.modulationTransfer(r, i, k),
                        std::sqrt(sine * sine + cosine * cosine) / total);
        }
    }
}

void storedecays(std::int32_t r, const workingsums& sums, decaycurve& curve, const float* row,
                 std::int32_t slots, float timeStep) {
    if (r < 0 || r > highestreceiver) return;
    // A long response needs no more points than a fit can count.
    const std::int32_t kept = std::min(slots, longestfit + 1);
    const auto size = static_cast<std::size_t>(kept);
    // Where energies are negative a sum may have no logarithm, and the point keeps what the band before left
    // there: then all points must be computed, those of the band before first. Otherwise every sum is at
    // least 1, and only the points that the fits ask for are computed.
    const bool negative = std::any_of(row, row + static_cast<std::size_t>(slots) * bands,
                                      [](float energy) { return energy < 0; });
    std::size_t integrated = bands; // first of the bands that curve.sums holds; none yet
    foreachband([&](int b) {
        if (!(sums.energyTotal[index(b)] > 1)) return;
        if (negative) fillcurve(curve, static_cast<std::int32_t>(curve.level.size()) - 1);
        const std::size_t first = index(b - 1) / integratedbands * integratedbands;
        if (first != integrated) {
            curve.level.resize(size);
            curve.sums.resize(size * integratedbands);
            integratebackward(curve.sums.data(), kept, row + first, slots);
            integrated = first;
        }
        curve.lane = index(b - 1) - first;
        curve.filled = 0;
        if (negative) fillcurve(curve, kept - 1);
        const auto levelat = [&curve](std::int32_t i) {
            if (i >= curve.filled) fillcurve(curve, i);
            return static_cast<double>(curve.level[static_cast<std::size_t>(i)]);
        };
        auto& P = ParameterSet;
        const auto fit = [&](double top, std::span<decayfit> fits, std::initializer_list<float*> results) {
            fitdecays(top, fits, levelat, slots - 1, slots - 1, static_cast<double>(timeStep));
            std::size_t i = 0;
            for (float* result : results) {
                const decayfit& found = fits[i++];
                if (found.outcome == fitoutcome::notreached) *result = 0;
                if (found.outcome == fitoutcome::fitted) storefinite(*result, found.seconds);
            }
        };
        decayfit early[] = {{-10}}, late[] = {{-15}, {-20}, {-25}, {-35}};
        fit(-0.5, early, {&P.EDT(r, b)});
        fit(-5, late, {&P.T10(r, b), &P.T15(r, b), &P.T20(r, b), &P.T30(r, b)});
    });
}

void reverb(float& result, double top, double bottom, std::span<const float> curve, std::int32_t n,
            double step) {
    const auto last = static_cast<std::int32_t>(curve.size()) - 1;
    decayfit found{bottom};
    fitdecays(
        top, {&found, 1},
        [curve](std::int32_t i) { return static_cast<double>(curve[static_cast<std::size_t>(i)]); }, last, n,
        step);
    switch (found.outcome) {
    case fitoutcome::fitted:
        result = single(found.seconds);
        break;
    case fitoutcome::notreached:
        result = 0;
        break;
    case fitoutcome::nofall:
        subscriptfailure("decay curve", last + 1, 0, last);
    case fitoutcome::toolong:
        throw runtimeerror{errorkind::overflow, "Overflow: a decay curve of more than 32767 points."};
    case fitoutcome::noline:
        throw runtimeerror{errorkind::divisionbyzero, "Division by zero: no line through the decay curve."};
    }
}

void storeaverages() {
    auto& P = ParameterSet;
    const std::int32_t N = RoomModel.receiverCount;
    for (int b = 1; b <= bandcount; ++b) {
        const auto average = [b, N](auto& table) {
            double sum = 0;
            for (std::int32_t r = 1; r <= N; ++r) sum += static_cast<double>(table(r, b)) / N;
            table(0, b) = 0;
            storefinite(table(0, b), sum);
        };
        // The energy mean of levels; a mean without a logarithm stays what was summed up.
        const auto energyaverage = [b, N](auto& table) {
            double sum = 0;
            for (std::int32_t r = 1; r <= N; ++r) {
                const double energy = std::pow(10.0, static_cast<double>(table(r, b)) / 10) / N;
                if (std::isfinite(energy)) sum += energy;
            }
            table(0, b) = 0;
            storefinite(table(0, b), sum);
            storefinite(table(0, b), decibelsperneper * std::log(sum));
        };
        for (std::int32_t r = 1; r <= N; ++r)
            storefinite(P.LeqLw(r, b),
                        static_cast<double>(P.Leq(r, b)) - static_cast<double>(ResultSet.sourcePower(b)));
        energyaverage(P.Leq);
        energyaverage(P.LeqLw);
        average(P.C50);
        average(P.C80);
        average(P.Aeq);
        average(P.Ts);
        average(P.Aeq2);
        average(P.ITDGeq);
        average(P.Ldir);
        average(P.Lrev);
        average(P.LdirLrev);
        average(P.EDT);
        average(P.T10);
        average(P.T15);
        average(P.T20);
        average(P.T30);
    }
}

void addroommean() {
    const std::int32_t N = RoomModel.receiverCount;
    const std::int32_t present = std::min(N, ImpulseResponse.receivers);
    const auto cells = static_cast<std::size_t>(ImpulseResponse.slots) * bands;
    bool any = false;
    for (std::int32_t r = 1; r <= present; ++r) any = any || ImpulseResponse.rowof(r) != nullptr;
    if (!any) return;
    float* const room = takeresponse(0);
    // In pieces, so that the sums in double take no room beside a long response.
    constexpr std::size_t piece = 4096 * bands;
    std::vector<double> sum;
    for (std::size_t begin = 0; begin < cells; begin += piece) {
        const std::size_t size = std::min(piece, cells - begin);
        sum.assign(room + begin, room + begin + size);
        for (std::int32_t r = 1; r <= present; ++r) {
            const float* const row = ImpulseResponse.rowof(r);
            if (row != nullptr) addshare(sum.data(), row + begin, size, N);
        }
        for (std::size_t i = 0; i < size; ++i) storefinite(room[begin + i], sum[i]);
    }
}

} // namespace orv
