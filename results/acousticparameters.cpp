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
    const double first = std::nearbyint(wide(ResultSet.firstBand));
    for (int b = static_cast<int>(std::clamp(first, 1.0, bandcount + 1.0)); b <= bandcount; ++b)
        if (b > octavebands || static_cast<float>(b) <= ResultSet.lastBand) run(b);
}

// --- Sums over the slots ---

// The slots `begin` to `end` - 1.
energyrows part(const energyrows& rows, std::int32_t begin, std::int32_t end) {
    return {rows.first + static_cast<std::size_t>(begin) * bands, end - begin, rows.timeStep};
}

// Adds a run of slots, the first of which is the origin of time.
ORV_WIDELOOPS
void addenergies(workingsums& sums, energyrows run) {
    const double timeStep = wide(run.timeStep);
    for (std::int32_t t = 0; t < run.slots; ++t) {
        const double time = timeStep * t;
        const float* const e = run.first + static_cast<std::size_t>(t) * bands;
        double energy[bands];
        for (std::size_t i = 0; i < bands; ++i) energy[i] = std::fabs(wide(e[i]));
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
            const double energy = wide(e[i]);
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
        const double omega = wide(SessionState.modulationOmega[i]);
        for (std::size_t k = tables.cosine[i].size(); k < wanted; ++k) {
            const double phase = omega * (wide(timeStep) * static_cast<double>(k));
            tables.cosine[i].push_back(std::cos(phase));
            tables.sine[i].push_back(std::sin(phase));
        }
    }
}

void addmodulationrun(workingsums& sums, const offsettables& tables, const energyrows& run) {
    const float* const energies = run.first + (firstspeechband - 1);
    for (std::size_t i = 1; i < modulationcount; i += 2) {
        double lanes[4][8] = {};
        for (std::size_t k = 0; k < speechbands; ++k) {
            lanes[0][k] = sums.mtfCosine[k][i];
            lanes[1][k] = sums.mtfSine[k][i];
            lanes[2][k] = sums.mtfCosine[k][i + 1];
            lanes[3][k] = sums.mtfSine[k][i + 1];
        }
        addmodulation(&lanes[0][0], energies, run.slots, {tables.cosine[i].data(), tables.sine[i].data()},
                      {tables.cosine[i + 1].data(), tables.sine[i + 1].data()});
        for (std::size_t k = 0; k < speechbands; ++k) {
            sums.mtfCosine[k][i] = lanes[0][k];
            sums.mtfSine[k][i] = lanes[1][k];
            sums.mtfCosine[k][i + 1] = lanes[2][k];
            sums.mtfSine[k][i + 1] = lanes[3][k];
        }
    }
}

// The same for the slots of a run beyond the kept tables, one by one.
void addlatemodulation(workingsums& sums, const energyrows& run) {
    for (std::int32_t t = keptoffsets; t < run.slots; ++t) {
        const float* const e = run.first + static_cast<std::size_t>(t) * bands + (firstspeechband - 1);
        const double time = wide(run.timeStep) * t;
        if (t % keptoffsets == 0) platform::yield(); // millions of slots take their time
        for (std::size_t i = 1; i <= modulationcount; ++i) {
            const double phase = wide(SessionState.modulationOmega[i]) * time;
            const double cosine = std::cos(phase), sine = std::sin(phase);
            for (std::size_t k = 0; k < speechbands; ++k) {
                sums.mtfCosine[k][i] += wide(e[k]) * cosine;
                sums.mtfSine[k][i] += wide(e[k]) * sine;
            }
        }
    }
}

void addrun(workingsums& sums, offsettables& tables, const energyrows& run) {
    const float* const end = run.first + static_cast<std::size_t>(run.slots) * bands;
    // Silence adds nothing; the slots in front of the direct sound are silent in most responses.
    if (std::all_of(run.first, end, [](float energy) { return energy == 0; })) return;
    extendtables(tables, run.timeStep, run.slots);
    addenergies(sums, run);
    addmodulationrun(sums, tables, part(run, 0, std::min(run.slots, keptoffsets)));
    addlatemodulation(sums, run);
}

// --- Parameters ---

// All of a band. E, the total energy, can change on the way.
void storeband(std::int32_t r, int b, workingsums& sums) {
    auto& P = ParameterSet;
    const std::size_t i = index(b);
    double& E = sums.energyTotal[i];
    const double D = sums.directEnergy[i];
    P.Leq(r, b) = 0;
    if (E > 0) storefinite(P.Leq(r, b), energylevel(E));
    // Without late energy the ratio has no divisor: E grows by 1, for all that follows too.
    if (E == sums.energyTo50[i]) E += 1;
    P.C50(r, b) = 0;
    if (sums.energyTo50[i] > 0) storefinite(P.C50(r, b), clarity(sums.energyTo50[i], E - sums.energyTo50[i]));
    if (E == sums.energyTo80[i]) E += 1;
    P.C80(r, b) = 0;
    if (sums.energyTo80[i] > 0) storefinite(P.C80(r, b), clarity(sums.energyTo80[i], E - sums.energyTo80[i]));
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
    storefinite(P.LdirLrev(r, b), wide(P.Ldir(r, b)) - wide(P.Lrev(r, b)));
    // The old file holds the lateral energy, the new one the finished ratio.
    if (ResultSet.resultFormat < newformat) storefinite(P.LE(r, b), wide(P.LE(r, b)) / sums.energyTo80[i]);
}

// The two sums over the bands of the lateral rows become means.
void finishlateral(std::int32_t r) {
    const double count = wide(ResultSet.lastBand) - wide(ResultSet.firstBand) + 1;
    double weights = 0;
    foreachband([&](int b) {
        if (b <= octavebands) weights += wide(SessionState.aWeight[index(b)]);
    });
    const auto finish = [r, count, weights](auto& table) {
        storefinite(table(r, linearband), wide(table(r, linearband)) / count);
        storefinite(table(r, weightedband), wide(table(r, weightedband)) / weights);
    };
    finish(ParameterSet.LE);
    finish(ParameterSet.LF);
    finish(ParameterSet.LFC);
}

// Row 0 of a table in a band: the mean over the receivers.
template <class table>
void average(table& of, int b) {
    const std::int32_t N = RoomModel.receiverCount;
    double sum = 0;
    for (std::int32_t r = 1; r <= N; ++r) sum += wide(of(r, b)) / N;
    of(0, b) = 0;
    storefinite(of(0, b), sum);
}

// The same of levels, whose energies have the mean; one without a logarithm stays what was summed up.
template <class table>
void averageenergy(table& of, int b) {
    const std::int32_t N = RoomModel.receiverCount;
    double sum = 0;
    for (std::int32_t r = 1; r <= N; ++r) {
        const double energy = std::pow(10.0, wide(of(r, b)) / 10) / N;
        if (std::isfinite(energy)) sum += energy;
    }
    of(0, b) = 0;
    storefinite(of(0, b), sum);
    storefinite(of(0, b), decibelsperneper * std::log(sum));
}

// Adds a receiver's share of the mean.
ORV_WIDELOOPS
void addshare(double* sum, const float* row, std::size_t size, double receivers) {
    for (std::size_t i = 0; i < size; ++i) sum[i] += wide(row[i]) / receivers;
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
        for (std::size_t i = 0; i < integratedbands; ++i) running[i] += wide(e[i]);
    }
    for (std::int32_t t = std::min(slots, kept) - 1; t >= 0; --t) {
        const float* const e = row + static_cast<std::size_t>(t) * bands;
        double* const sum = sums + static_cast<std::size_t>(t) * integratedbands;
        for (std::size_t i = 0; i < integratedbands; ++i) sum[i] = running[i] += wide(e[i]);
    }
}

// The five decay times of a band, from its curve of `slots` points, which are computed as the fits ask for
// them.
void storefits(std::int32_t r, int b, decaycurve& curve, std::int32_t slots, double timeStep) {
    const auto levelat = [&curve](std::int32_t i) {
        if (i >= curve.filled) fillcurve(curve, i);
        return wide(curve.level[static_cast<std::size_t>(i)]);
    };
    const auto fit = [&](double top, std::span<decayfit> fits, std::initializer_list<float*> results) {
        fitdecays(top, fits, levelat, slots - 1, slots - 1, timeStep);
        std::size_t i = 0;
        for (float* result : results) {
            const decayfit& found = fits[i++];
            if (found.outcome == fitoutcome::notreached) *result = 0;
            if (found.outcome == fitoutcome::fitted) storefinite(*result, found.seconds);
        }
    };
    auto& P = ParameterSet;
    decayfit early[] = {{-10}}, late[] = {{-15}, {-20}, {-25}, {-35}};
    fit(-0.5, early, {&P.EDT(r, b)});
    fit(-5, late, {&P.T10(r, b), &P.T15(r, b), &P.T20(r, b), &P.T30(r, b)});
}

} // namespace

double dB(double value) {
    return value == 0 ? 0 : decibelsperneper * naturallog(value);
}

void addslots(workingsums& sums, offsettables& tables, const energyrows& rows,
              std::span<const std::int32_t> arrivals) {
    std::int32_t begin = 0;
    for (const std::int32_t arrival : arrivals) {
        addrun(sums, tables, part(rows, begin, arrival));
        begin = arrival;
    }
    addrun(sums, tables, part(rows, begin, rows.slots));
}

void storeparameters(std::int32_t r, workingsums& sums) {
    if (r < 0 || r > highestreceiver) return;
    foreachband([&](int b) { storeband(r, b, sums); });
    if (ResultSet.resultFormat >= newformat) finishlateral(r);
}

void storemodulation(std::int32_t r, const workingsums& sums) {
    if (r < 0 || r > highestreceiver) return;
    for (int k = 0; k < speechbands; ++k) {
        const double total = sums.energyTotal[index(k + firstspeechband)];
        for (int i = 1; i <= modulationcount; ++i) {
            const double sine = sums.mtfSine[index(k)][index(i)];
            const double cosine = sums.mtfCosine[index(k)][index(i)];
            storefinite(ParameterSet.modulationTransfer(r, i, k),
                        std::sqrt(sine * sine + cosine * cosine) / total);
        }
    }
}

void storedecays(std::int32_t r, const workingsums& sums, decaycurve& curve, const energyrows& rows) {
    if (r < 0 || r > highestreceiver) return;
    // A long response needs no more points than a fit can count.
    const std::int32_t kept = std::min(rows.slots, longestfit + 1);
    const auto size = static_cast<std::size_t>(kept);
    // Where energies are negative a sum may have no logarithm, and the point keeps what the band before left
    // there: then all points must be computed, those of the band before first. Otherwise every sum is at
    // least 1, and only the points that the fits ask for are computed.
    const bool negative = std::any_of(rows.first, rows.first + static_cast<std::size_t>(rows.slots) * bands,
                                      [](float energy) { return energy < 0; });
    std::size_t integrated = bands; // first of the bands that curve.sums holds; none yet
    foreachband([&](int b) {
        if (!(sums.energyTotal[index(b)] > 1)) return;
        if (negative) fillcurve(curve, static_cast<std::int32_t>(curve.level.size()) - 1);
        const std::size_t first = index(b - 1) / integratedbands * integratedbands;
        if (first != integrated) {
            curve.level.resize(size);
            curve.sums.resize(size * integratedbands);
            integratebackward(curve.sums.data(), kept, rows.first + first, rows.slots);
            integrated = first;
        }
        curve.lane = index(b - 1) - first;
        curve.filled = 0;
        if (negative) fillcurve(curve, kept - 1);
        storefits(r, b, curve, rows.slots, wide(rows.timeStep));
    });
}

void reverb(float& result, double top, double bottom, std::span<const float> curve, std::int32_t n,
            double step) {
    const auto last = static_cast<std::int32_t>(curve.size()) - 1;
    decayfit found{bottom};
    fitdecays(
        top, {&found, 1}, [curve](std::int32_t i) { return wide(curve[static_cast<std::size_t>(i)]); }, last,
        n, step);
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
    for (int b = 1; b <= bandcount; ++b) {
        for (std::int32_t r = 1; r <= RoomModel.receiverCount; ++r)
            storefinite(P.LeqLw(r, b), wide(P.Leq(r, b)) - wide(ResultSet.sourcePower(b)));
        averageenergy(P.Leq, b);
        averageenergy(P.LeqLw, b);
        average(P.C50, b);
        average(P.C80, b);
        average(P.Aeq, b);
        average(P.Ts, b);
        average(P.Aeq2, b);
        average(P.ITDGeq, b);
        average(P.Ldir, b);
        average(P.Lrev, b);
        average(P.LdirLrev, b);
        average(P.EDT, b);
        average(P.T10, b);
        average(P.T15, b);
        average(P.T20, b);
        average(P.T30, b);
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
