// The speech transmission index.
#include "results/speechindex.h"

#include "base/arithmetic.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "platform/platform.h"
#include "results/parameterfile.h"
#include "results/parameterset.h"
#include "room/roommodel.h"
#include "shell/sessionstate.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orv {

namespace {

constexpr int maleindex = weightedband, femaleindex = linearband; // the columns that the two indices take
constexpr double range = 15;                                      // dB on both sides
constexpr double perfect = 0.9, none = 0.01; // what modulations of 1 and above, 0 and below become;
                                             // the upper is 0.9 and not 1 on purpose
constexpr std::size_t index(int i) {
    return static_cast<std::size_t>(i);
}

// What noise divides a modulation by, 1 + 10^(-S/10), for both talkers of a band.
struct noisedivisors {
    double male = 1, female = 1;
};

noisedivisors divisorsof(std::int32_t receiver, int band) {
    const sessionstate& s = SessionState;
    const std::size_t k = index(band - firstspeechband);
    double difference = wide(ParameterSet.Leq(receiver, band)) - wide(s.noiseLevel[k]);
    if (s.forceVoiceSplFlag != 0) difference += wide(s.voiceCorrection[k]);
    if (s.equalizeSpectrumFlag != 0) difference += wide(s.maleVoiceSpectrum[k]);
    // From the male to the female talker, whether or not the spectrum is asked for; meant.
    const double female = difference - wide(s.maleVoiceSpectrum[k]) + wide(s.femaleVoiceSpectrum[k]);
    return {1 + power(10, -difference / 10), 1 + power(10, -female / 10)};
}

// The apparent signal-to-noise ratio of a modulation below 1, dB within +-15. Ratios that are certainly
// beyond the range save their logarithm.
double apparentratio(double modulation) {
    constexpr double above = 31.63, below = 0.0316; // 10^1.5 and its inverse lie just within
    const double ratio = modulation / (1 - modulation);
    if (ratio > above) return range;
    if (ratio > 0 && ratio < below) return -range;
    return std::clamp(10 * (ratio > 0 ? std::log10(ratio) : decimallog(ratio)), -range, range);
}

// The sums of apparent ratios over the modulation frequencies of a band.
struct ratiosums {
    double male = 0, female = 0;
};

ratiosums sumratios(std::int32_t receiver, int band) {
    sessionstate& s = SessionState;
    const bool noise = s.backgroundNoiseFlag != 0, spectrum = s.equalizeSpectrumFlag != 0;
    const noisedivisors divisors = noise ? divisorsof(receiver, band) : noisedivisors{};
    ratiosums sums;
    for (int i = 1; i <= modulationcount; ++i) {
        auto m = wide(ParameterSet.modulationTransfer(receiver, i, band - firstspeechband));
        if (m >= 1) m = perfect;
        if (m <= 0) m = none;
        if (noise) {
            s.femaleModulation = m / divisors.female;
            m /= divisors.male;
        }
        sums.male += apparentratio(m);
        // Without noise the female modulation is that of the last evaluation, and without the spectrum the
        // female sum is empty, which makes an index of exactly 0.5; both meant.
        if (spectrum && s.femaleModulation == 0)
            throw runtimeerror{
                errorkind::domain,
                "The female speech index cannot be computed: the voice spectrum is on, background "
                "noise is off, and no computation with noise has been made."};
        if (spectrum) sums.female += apparentratio(s.femaleModulation);
    }
    return sums;
}

double transmissionindex(double sum) {
    return (sum / modulationcount + range) / (2 * range);
}

// All indices of a receiver; the stored ones are added to `sums`, the room's row.
void computereceiver(std::int32_t receiver, std::array<double, bandcount + 1>& sums) {
    const sessionstate& s = SessionState;
    double male = 0, female = 0, malebelow = 0, femalebelow = 0;
    for (int band = firstspeechband; band < firstspeechband + speechbands; ++band) {
        const std::size_t k = index(band - firstspeechband);
        const ratiosums ratios = sumratios(receiver, band);
        float& stored = ParameterSet.STI(receiver, band);
        stored = single(transmissionindex(ratios.male));
        const auto maleband = wide(stored);
        const double femaleband = transmissionindex(ratios.female);
        sums[index(band)] += maleband;
        male += wide(s.maleAlpha[k]) * maleband;
        female += wide(s.femaleAlpha[k]) * femaleband;
        if (band > firstspeechband) {
            male -= wide(s.maleBeta[k - 1]) * squareroot(maleband * malebelow);
            female -= wide(s.femaleBeta[k - 1]) * squareroot(femaleband * femalebelow);
        }
        malebelow = maleband;
        femalebelow = femaleband;
    }
    ParameterSet.STI(receiver, maleindex) = single(male);
    ParameterSet.STI(receiver, femaleindex) = single(female);
    // The room's row has no mean of the female index; meant.
    sums[maleindex] += wide(ParameterSet.STI(receiver, maleindex));
}

// The menus stay live during a computation; whoever asks for another one before the end is refused.
bool running = false;

void computeall() {
    platform::statustext(1, "Computing the STI values ...");
    const std::int32_t N = RoomModel.receiverCount;
    std::array<double, bandcount + 1> sums{};
    for (std::int32_t receiver = 1; receiver <= N; ++receiver) {
        platform::statustext(2, numbertext(std::trunc(static_cast<double>(receiver) / N * 100)) + "%");
        platform::yield();
        computereceiver(receiver, sums);
    }
    for (int band = firstspeechband; N > 0 && band <= bandcount; ++band)
        ParameterSet.STI(0, band) = single(sums[index(band)] / N);
}

} // namespace

bool speechindexruns() {
    return running;
}

void computesti() {
    if (running) return platform::beep();
    running = true;
    const struct release {
        ~release() { running = false; }
    } atend;
    platform::statustext(1, "Specify the STI computing options");
    platform::showwindow("STI Options", true);
    platform::pointer(platform::shape::wait);
    for (int band = firstspeechband; band <= bandcount; ++band) ParameterSet.STI(0, band) = 0;
    if (SessionState.parameterSource != 0) computeall();
    if (SessionState.parameterName == "STI") SessionState.gridReady = SessionState.contourReady = 0;
    platform::yield();
    platform::pointer(platform::shape::normal);
    platform::statustext(1, "");
    platform::statustext(2, "");
}

void STIopt() {
    if (running) return platform::beep();
    computesti();
    if (SessionState.parameterSource > 0 && isparameterfile(SessionState.resultFileName)) return;
    if (platform::messagebox("Warning",
                             "STI values could have been changed - Do You want to update the compressed "
                             "parameter file?",
                             platform::buttons::okcancel, platform::icon::exclamation,
                             platform::answer::ok) == platform::answer::ok)
        saveparameters(SessionState.resultFileName);
}

} // namespace orv
