// musicgen: synthesises the default production's theme and encodes it to OGG Vorbis.
//
// Fixed tempo 120 BPM: one beat = 500 ms, one bar = 2 s, one section = 8 bars = 16 s.
// Beat n starts at n * 500 ms; scripts can place events on these times (mm:ss:mmm):
//  00:00:000  intro       pads only, no drums
//  00:16:000  build       kick on every beat and rolling bass; hats from 00:20,
//                         snare and noise riser from 00:24, snare roll from 00:30
//  00:32:000  main        full beat, bass, pads, arpeggio, lead melody
//  00:48:000  break       no kick: pads, bell melody, sub bass; hats, arpeggio
//                         and riser from 00:56, snare roll from 01:02
//  01:04:000  final main  full beat, lead doubled an octave up
//  01:20:000  outro       kick goes on; snare stops at 01:28, hats and bass at
//                         01:32, everything fades
//  01:36:000  last hit    one kick, crash and chord ringing out
//  01:40:000  end
// Crashes at 00:32, 00:48, 01:04, 01:20 and 01:36.
//
// Every noise source has a fixed seed and oggenc gets a fixed stream serial, so a run writes the
// same file every time.

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

extern char** environ;

namespace {

constexpr int kRate = 44100;
constexpr long kBeatSamples = kRate / 2; // 120 BPM
constexpr int kBeatsPerBar = 4;
constexpr int kBarsPerSection = 8;
constexpr int kLastHitBar = 6 * kBarsPerSection; // after the six sections
constexpr int kTotalBars = kLastHitBar + 2;      // the last hit rings out for two bars
constexpr long kTotalSamples = kTotalBars * kBeatsPerBar * kBeatSamples;
constexpr double kPi = 3.14159265358979323846;
// Vorbis overshoots sharp hits by up to 1.5 dB; this leaves the decoded peak near -1 dBFS.
constexpr double kPeakDb = -2.5;
constexpr const char* kQuality = "4";
constexpr const char* kSerial = "20120"; // oggenc picks a random one otherwise

enum Section { Intro, Build, Main, Break, Final, Outro, Ending };

Section sectionOfBar(int bar) {
    return static_cast<Section>(std::min(bar / kBarsPerSection, static_cast<int>(Ending)));
}

long sampleAtBeat(double beat) {
    return std::lround(beat * kBeatSamples);
}

long samplesOf(double seconds) {
    return std::lround(seconds * kRate);
}

double secondsAt(long sample) {
    return static_cast<double>(sample) / kRate;
}

double midiToHz(double note) {
    return 440.0 * std::pow(2.0, (note - 69.0) / 12.0);
}

double centsToRatio(double cents) {
    return std::pow(2.0, cents / 1200.0);
}

// Exponential glide from v0 at t0 to v1 at t1, held outside that span.
double expRamp(double t, double t0, double t1, double v0, double v1) {
    const double u = std::clamp((t - t0) / (t1 - t0), 0.0, 1.0);
    return v0 * std::pow(v1 / v0, u);
}

double linRamp(double t, double t0, double t1, double v0, double v1) {
    const double u = std::clamp((t - t0) / (t1 - t0), 0.0, 1.0);
    return v0 + (v1 - v0) * u;
}

// ---------------------------------------------------------------------------------------------
// Building blocks

class Random {
public:
    explicit Random(uint32_t seed) : state_(seed != 0 ? seed : 0x9E3779B9u) {}

    // Uniform in [-1, 1).
    double next() {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 17;
        state_ ^= state_ << 5;
        return state_ / 2147483648.0 - 1.0;
    }

private:
    uint32_t state_;
};

// Each hit gets its own seed from instrument and position, so the render order does not matter.
uint32_t seedFor(uint32_t instrument, long sample) {
    uint32_t x = instrument * 0x9E3779B1u ^ static_cast<uint32_t>(sample) * 0x85EBCA6Bu;
    x ^= x >> 16;
    x *= 0x7FEB352Du;
    x ^= x >> 15;
    x *= 0x846CA68Bu;
    x ^= x >> 16;
    return x;
}

struct Bus {
    std::vector<float> left;
    std::vector<float> right;

    Bus() : left(kTotalSamples, 0.0f), right(kTotalSamples, 0.0f) {}

    void add(long i, double l, double r) {
        if (i >= 0 && i < kTotalSamples) {
            left[i] += static_cast<float>(l);
            right[i] += static_cast<float>(r);
        }
    }

    void mixInto(Bus& target, double gain) const {
        for (long i = 0; i < kTotalSamples; ++i) {
            target.left[i] += static_cast<float>(left[i] * gain);
            target.right[i] += static_cast<float>(right[i] * gain);
        }
    }
};

// Equal-power pan, unity in the middle; pan runs from -1 (left) to 1 (right).
struct Pan {
    double left;
    double right;
};

Pan panOf(double pan) {
    const double angle = (pan + 1.0) * kPi / 4.0;
    return {std::cos(angle) * std::sqrt(2.0), std::sin(angle) * std::sqrt(2.0)};
}

// Band-limited step correction for the oscillators below.
double polyBlep(double t, double dt) {
    if (t < dt) {
        t /= dt;
        return t + t - t * t - 1.0;
    }
    if (t > 1.0 - dt) {
        t = (t - 1.0) / dt;
        return t * t + t + t + 1.0;
    }
    return 0.0;
}

class Oscillator {
public:
    explicit Oscillator(double phase = 0.0) : phase_(phase) {}

    double saw(double freq) {
        const double dt = freq / kRate;
        const double v = 2.0 * phase_ - 1.0 - polyBlep(phase_, dt);
        advance(dt);
        return v;
    }

    double pulse(double freq, double width) {
        const double dt = freq / kRate;
        // Minus the mean, so a narrow pulse adds no DC.
        double v = (phase_ < width ? 1.0 : -1.0) - (2.0 * width - 1.0);
        v += polyBlep(phase_, dt);
        v -= polyBlep(std::fmod(phase_ + 1.0 - width, 1.0), dt);
        advance(dt);
        return v;
    }

    double sine(double freq) {
        const double v = std::sin(2.0 * kPi * phase_);
        advance(freq / kRate);
        return v;
    }

private:
    void advance(double dt) {
        phase_ += dt;
        if (phase_ >= 1.0) {
            phase_ -= 1.0;
        }
    }

    double phase_;
};

// State-variable filter (trapezoidal), stable under per-sample cutoff changes.
class Filter {
public:
    struct Output {
        double low;
        double band;
        double high;
    };

    Output process(double x, double cutoff, double q) {
        cutoff = std::clamp(cutoff, 20.0, 0.45 * kRate);
        const double g = std::tan(kPi * cutoff / kRate);
        const double k = 1.0 / q;
        const double a1 = 1.0 / (1.0 + g * (g + k));
        const double a2 = g * a1;
        const double a3 = g * a2;
        const double v3 = x - ic2_;
        const double v1 = a1 * ic1_ + a2 * v3;
        const double v2 = ic2_ + a2 * ic1_ + a3 * v3;
        ic1_ = 2.0 * v1 - ic1_;
        ic2_ = 2.0 * v2 - ic2_;
        return {v2, v1, x - k * v1 - v2};
    }

private:
    double ic1_ = 0.0;
    double ic2_ = 0.0;
};

struct Envelope {
    double attack;
    double decay;
    double sustain;
    double release;

    // Level t seconds after note-on for a note held for gate seconds.
    double at(double t, double gate) const {
        if (t < 0.0) {
            return 0.0;
        }
        if (t < gate) {
            return held(t);
        }
        const double u = (t - gate) / release;
        if (u >= 1.0) {
            return 0.0;
        }
        return held(gate) * (1.0 - u) * (1.0 - u);
    }

    double length(double gate) const { return gate + release; }

private:
    double held(double t) const {
        if (t < attack) {
            return t / attack;
        }
        return sustain + (1.0 - sustain) * std::exp(-(t - attack) / decay);
    }
};

// Fades the last few milliseconds of a one-shot so a cut tail cannot click.
double tailFade(long i, long length) {
    const long fade = samplesOf(0.01);
    const long left = length - i;
    return left >= fade ? 1.0 : static_cast<double>(left) / fade;
}

// ---------------------------------------------------------------------------------------------
// Drums and effects

void renderKick(Bus& bus, long start, double gain) {
    Random random(seedFor(1, start));
    Oscillator body;
    const long length = samplesOf(0.9);
    for (long i = 0; i < length; ++i) {
        const double t = secondsAt(i);
        const double freq = 45.0 + 125.0 * std::exp(-t / 0.028);
        const double attack = std::min(1.0, t / 0.0008);
        const double v = body.sine(freq) * std::exp(-t / 0.2) * attack +
                         random.next() * 0.3 * std::exp(-t / 0.0025);
        const double out = std::tanh(1.8 * v) * gain * tailFade(i, length);
        bus.add(start + i, out, out);
    }
}

void renderSnare(Bus& bus, long start, double gain) {
    Random randomL(seedFor(2, start));
    Random randomR(seedFor(3, start));
    Filter filterL;
    Filter filterR;
    Oscillator tone1;
    Oscillator tone2;
    const long length = samplesOf(0.5);
    for (long i = 0; i < length; ++i) {
        const double t = secondsAt(i);
        const double drop = 1.0 + 0.3 * std::exp(-t / 0.01);
        const double tone =
            (tone1.sine(185.0 * drop) + 0.5 * tone2.sine(330.0 * drop)) * std::exp(-t / 0.05);
        const double noiseEnv = std::exp(-t / 0.11) * std::min(1.0, t / 0.001);
        const Filter::Output l = filterL.process(randomL.next(), 3200.0, 0.6);
        const Filter::Output r = filterR.process(randomR.next(), 3200.0, 0.6);
        const double fade = tailFade(i, length) * gain;
        bus.add(start + i, (0.6 * tone + (l.band + 0.4 * l.high) * noiseEnv) * fade,
                (0.6 * tone + (r.band + 0.4 * r.high) * noiseEnv) * fade);
    }
}

void renderHat(Bus& bus, long start, double gain, double decay, double pan) {
    Random random(seedFor(4, start));
    Filter filter;
    const Pan p = panOf(pan);
    const long length = samplesOf(decay * 7.0);
    for (long i = 0; i < length; ++i) {
        const double t = secondsAt(i);
        const double v = filter.process(random.next(), 7500.0, 0.7).high * std::exp(-t / decay) *
                         std::min(1.0, t / 0.0005);
        const double out = v * gain * tailFade(i, length);
        bus.add(start + i, out * p.left, out * p.right);
    }
}

void renderCrash(Bus& bus, long start, double gain) {
    Random randomL(seedFor(5, start));
    Random randomR(seedFor(6, start));
    Filter filterL;
    Filter filterR;
    const long length = samplesOf(4.0);
    for (long i = 0; i < length; ++i) {
        const double t = secondsAt(i);
        const double env = std::exp(-t / 1.1) * std::min(1.0, t / 0.002) * gain;
        const double fade = tailFade(i, length);
        const Filter::Output l = filterL.process(randomL.next(), 6000.0, 0.5);
        const Filter::Output r = filterR.process(randomR.next(), 6000.0, 0.5);
        bus.add(start + i, (l.high + 0.5 * l.band) * env * fade,
                (r.high + 0.5 * r.band) * env * fade);
    }
}

// Band-passed noise sweeping up into the next section.
void renderRiser(Bus& bus, long start, long length, double gain) {
    Random randomL(seedFor(7, start));
    Random randomR(seedFor(8, start));
    Filter filterL;
    Filter filterR;
    for (long i = 0; i < length; ++i) {
        const double u = static_cast<double>(i) / length;
        const double cutoff = 300.0 * std::pow(9000.0 / 300.0, u);
        const double env = u * u * gain * tailFade(i, length);
        bus.add(start + i, filterL.process(randomL.next(), cutoff, 2.5).band * env,
                filterR.process(randomR.next(), cutoff, 2.5).band * env);
    }
}

// ---------------------------------------------------------------------------------------------
// Pitched voices

struct Chord {
    int bassRoot;
    std::array<int, 3> pad;
};

// Am F C G Am F Dm E, one chord a bar.
const std::array<Chord, 8> kProgression = {{
    {33, {57, 60, 64}},
    {29, {57, 60, 65}},
    {36, {55, 60, 64}},
    {31, {55, 59, 62}},
    {33, {57, 60, 64}},
    {29, {57, 60, 65}},
    {38, {57, 62, 65}},
    {40, {56, 59, 64}},
}};

const Chord& chordOfBar(int bar) {
    return kProgression[bar % kProgression.size()];
}

struct MelodyNote {
    double beat;
    int note;
    double length;
};

// Eight bars over the progression above.
const std::vector<MelodyNote> kMelody = {
    {0.0, 76, 1.5},  {1.5, 74, 0.5},  {2.0, 72, 1.0},  {3.0, 69, 1.0},  {4.0, 72, 1.0},
    {5.0, 69, 0.5},  {5.5, 72, 0.5},  {6.0, 77, 1.5},  {7.5, 76, 0.5},  {8.0, 76, 1.5},
    {9.5, 79, 0.5},  {10.0, 76, 1.0}, {11.0, 72, 1.0}, {12.0, 74, 2.0}, {14.0, 71, 1.0},
    {15.0, 67, 1.0}, {16.0, 69, 0.5}, {16.5, 72, 0.5}, {17.0, 76, 1.0}, {18.0, 81, 1.5},
    {19.5, 79, 0.5}, {20.0, 77, 1.5}, {21.5, 76, 0.5}, {22.0, 72, 1.0}, {23.0, 69, 1.0},
    {24.0, 74, 1.0}, {25.0, 77, 1.0}, {26.0, 81, 1.0}, {27.0, 77, 1.0}, {28.0, 76, 2.0},
    {30.0, 68, 1.0}, {31.0, 71, 1.0},
};

double padCutoff(double t) {
    if (t < 16.0) {
        return expRamp(t, 0.0, 16.0, 500.0, 2200.0);
    }
    if (t < 48.0) {
        return 2200.0;
    }
    if (t < 56.0) {
        return expRamp(t, 48.0, 50.0, 2200.0, 1300.0);
    }
    if (t < 64.0) {
        return expRamp(t, 56.0, 64.0, 1300.0, 2200.0);
    }
    if (t < 80.0) {
        return 2200.0;
    }
    return expRamp(t, 80.0, 96.0, 2200.0, 450.0);
}

double bassCutoff(double t) {
    if (t < 32.0) {
        return expRamp(t, 16.0, 32.0, 220.0, 1100.0);
    }
    if (t < 80.0) {
        return 1100.0;
    }
    return expRamp(t, 80.0, 92.0, 1100.0, 180.0);
}

double arpCutoff(double t) {
    if (t < 32.0) {
        return expRamp(t, 16.0, 32.0, 400.0, 3000.0);
    }
    if (t < 48.0) {
        return 3000.0;
    }
    if (t < 64.0) {
        return expRamp(t, 56.0, 64.0, 300.0, 3000.0);
    }
    if (t < 80.0) {
        return 3000.0;
    }
    return expRamp(t, 80.0, 96.0, 3000.0, 400.0);
}

// Three detuned saws a channel through a slow-moving low-pass.
void renderPadNote(Bus& bus, long start, double gate, double release, int note, double gain) {
    const Envelope env{0.6, 1.5, 0.8, release};
    const double freq = midiToHz(note);
    const std::array<double, 3> cents = {-9.0, 0.0, 9.0};
    Random phases(seedFor(10 + note, start));
    std::array<Oscillator, 6> osc;
    for (Oscillator& o : osc) {
        o = Oscillator((phases.next() + 1.0) * 0.5);
    }
    Filter filterL;
    Filter filterR;
    const long length = samplesOf(env.length(gate));
    for (long i = 0; i < length; ++i) {
        const double t = secondsAt(i);
        const double abs = secondsAt(start + i);
        const double cutoff = padCutoff(abs) * (1.0 + 0.15 * std::sin(2.0 * kPi * 0.25 * abs));
        const double l = osc[0].saw(freq * centsToRatio(cents[0])) +
                         0.6 * osc[1].saw(freq * centsToRatio(cents[1])) +
                         0.8 * osc[2].saw(freq * centsToRatio(cents[2] * 0.5));
        const double r = osc[3].saw(freq * centsToRatio(cents[2])) +
                         0.6 * osc[4].saw(freq * centsToRatio(cents[1] + 2.0)) +
                         0.8 * osc[5].saw(freq * centsToRatio(cents[0] * 0.5));
        const double level = env.at(t, gate) * gain;
        bus.add(start + i, filterL.process(l, cutoff, 0.7).low * level,
                filterR.process(r, cutoff, 0.7).low * level);
    }
}

// Two saws and a sub sine, plucked open by a short filter envelope.
void renderBassNote(Bus& bus, long start, double gate, int note, double gain) {
    const Envelope env{0.002, 0.1, 0.7, 0.02};
    const double freq = midiToHz(note);
    Oscillator saw1;
    Oscillator saw2(0.37);
    Oscillator sub;
    Filter filter;
    const long length = samplesOf(env.length(gate));
    for (long i = 0; i < length; ++i) {
        const double t = secondsAt(i);
        const double cutoff = bassCutoff(secondsAt(start + i)) * (1.0 + 3.0 * std::exp(-t / 0.06));
        const double raw = saw1.saw(freq * centsToRatio(-6.0)) + saw2.saw(freq * centsToRatio(6.0));
        const double v = filter.process(raw, cutoff, 1.2).low + 0.8 * sub.sine(freq);
        const double out = std::tanh(1.2 * v) * env.at(t, gate) * gain;
        bus.add(start + i, out, out);
    }
}

void renderSubNote(Bus& bus, long start, double gate, double release, int note, double gain) {
    const Envelope env{0.05, 1.0, 1.0, release};
    const double freq = midiToHz(note);
    Oscillator sub;
    const long length = samplesOf(env.length(gate));
    for (long i = 0; i < length; ++i) {
        const double out = sub.sine(freq) * env.at(secondsAt(i), gate) * gain;
        bus.add(start + i, out, out);
    }
}

void renderArpNote(Bus& bus, long start, int note, double gain, double pan) {
    const Envelope env{0.002, 0.09, 0.0, 0.05};
    const double freq = midiToHz(note);
    const double gate = 0.12;
    const Pan p = panOf(pan);
    Oscillator osc;
    Filter filter;
    const long length = samplesOf(env.length(gate));
    for (long i = 0; i < length; ++i) {
        const double t = secondsAt(i);
        const double cutoff = arpCutoff(secondsAt(start + i)) * (0.5 + 1.5 * std::exp(-t / 0.04));
        const double width = 0.5 - 0.3 * std::exp(-t / 0.08);
        const double out =
            filter.process(osc.pulse(freq, width), cutoff, 1.5).low * env.at(t, gate) * gain;
        bus.add(start + i, out * p.left, out * p.right);
    }
}

// Two detuned saws and a square with delayed vibrato.
void renderLeadNote(Bus& bus, long start, double gate, int note, double gain) {
    const Envelope env{0.008, 0.3, 0.7, 0.2};
    const double freq = midiToHz(note);
    Oscillator saw1;
    Oscillator saw2(0.21);
    Oscillator square(0.63);
    Filter filter;
    const long length = samplesOf(env.length(gate));
    for (long i = 0; i < length; ++i) {
        const double t = secondsAt(i);
        const double depth = 0.15 * std::clamp((t - 0.25) / 0.3, 0.0, 1.0);
        const double f = freq * std::pow(2.0, depth * std::sin(2.0 * kPi * 5.5 * t) / 12.0);
        const double raw = saw1.saw(f * centsToRatio(-10.0)) + saw2.saw(f * centsToRatio(10.0)) +
                           0.5 * square.pulse(f * 0.5, 0.5);
        const double cutoff = 2500.0 * (1.0 + 1.5 * std::exp(-t / 0.15));
        const double out = filter.process(raw, cutoff, 1.5).low * env.at(t, gate) * gain;
        bus.add(start + i, out, out);
    }
}

// Two-operator FM bell.
void renderBellNote(Bus& bus, long start, int note, double gain, double pan) {
    const double freq = midiToHz(note);
    const Pan p = panOf(pan);
    Oscillator modulator;
    const long length = samplesOf(3.0);
    double phase = 0.0;
    for (long i = 0; i < length; ++i) {
        const double t = secondsAt(i);
        const double index = 2.5 * std::exp(-t / 0.4);
        const double v = std::sin(2.0 * kPi * phase + index * modulator.sine(freq * 2.0));
        phase += freq / kRate;
        phase -= std::floor(phase);
        const double env = std::exp(-t / 0.9) * std::min(1.0, t / 0.003) * tailFade(i, length);
        const double out = v * env * gain;
        bus.add(start + i, out * p.left, out * p.right);
    }
}

// ---------------------------------------------------------------------------------------------
// Arrangement

bool kickInBar(int bar) {
    const Section s = sectionOfBar(bar);
    return s == Build || s == Main || s == Final || s == Outro;
}

bool fullBeatInBar(int bar) {
    const Section s = sectionOfBar(bar);
    return s == Main || s == Final || (s == Outro && bar < 44);
}

std::vector<long> kickSamples() {
    std::vector<long> kicks;
    for (int bar = 0; bar < kTotalBars; ++bar) {
        if (!kickInBar(bar)) {
            continue;
        }
        for (int beat = 0; beat < kBeatsPerBar; ++beat) {
            kicks.push_back(sampleAtBeat(bar * kBeatsPerBar + beat));
        }
    }
    kicks.push_back(sampleAtBeat(kLastHitBar * kBeatsPerBar));
    return kicks;
}

// How far the kick pushes the other parts down: 0 none, 1 fully.
std::vector<float> duckingCurve(const std::vector<long>& kicks) {
    std::vector<float> duck(kTotalSamples, 0.0f);
    const long length = samplesOf(0.35);
    for (long kick : kicks) {
        for (long i = 0; i < length && kick + i < kTotalSamples; ++i) {
            const double t = secondsAt(i);
            const double shape = t < 0.004 ? t / 0.004 : std::exp(-(t - 0.004) / 0.1);
            duck[kick + i] = std::max(duck[kick + i], static_cast<float>(shape));
        }
    }
    return duck;
}

void applyDucking(Bus& bus, const std::vector<float>& duck, double depth) {
    for (long i = 0; i < kTotalSamples; ++i) {
        const float g = static_cast<float>(1.0 - depth * duck[i]);
        bus.left[i] *= g;
        bus.right[i] *= g;
    }
}

void renderSnareRoll(Bus& bus, int bar) {
    for (int step = 0; step < 16; ++step) {
        if (step < 8 && step % 2 == 1) {
            continue;
        }
        const double gain = 0.25 + 0.6 * step / 15.0;
        renderSnare(bus, sampleAtBeat(bar * kBeatsPerBar + step * 0.25), gain);
    }
}

void renderHatsOfBar(Bus& bus, int bar, bool sixteenths, double gain) {
    const std::array<double, 4> accents = {0.55, 0.35, 1.0, 0.45};
    for (int step = 0; step < 16; ++step) {
        const double beat = bar * kBeatsPerBar + step * 0.25;
        if (step % 4 == 2) {
            renderHat(bus, sampleAtBeat(beat), 0.5 * gain, sixteenths ? 0.11 : 0.035, -0.25);
        } else if (sixteenths) {
            renderHat(bus, sampleAtBeat(beat), 0.4 * accents[step % 4] * gain, 0.03, 0.35);
        }
    }
}

void renderDrums(Bus& bus, const std::vector<long>& kicks) {
    for (long kick : kicks) {
        renderKick(bus, kick, 0.6);
    }
    for (int bar = 0; bar < kLastHitBar; ++bar) {
        const Section s = sectionOfBar(bar);
        const bool roll = bar == 15 || bar == 31;
        if (roll) {
            renderSnareRoll(bus, bar);
        } else if (fullBeatInBar(bar) || (s == Build && bar >= 12)) {
            renderSnare(bus, sampleAtBeat(bar * kBeatsPerBar + 1), 0.55);
            renderSnare(bus, sampleAtBeat(bar * kBeatsPerBar + 3), 0.55);
        }
        if (fullBeatInBar(bar) || (s == Outro && bar < 46)) {
            renderHatsOfBar(bus, bar, true, 1.0);
        } else if (s == Build && bar >= 12) {
            renderHatsOfBar(bus, bar, true, 0.8);
        } else if (s == Build && bar >= 10) {
            renderHatsOfBar(bus, bar, false, 0.8);
        } else if (s == Break && bar >= 28) {
            renderHatsOfBar(bus, bar, true, linRamp(bar, 28.0, 31.0, 0.3, 0.7));
        }
    }
}

void renderEffects(Bus& bus) {
    for (int bar : {16, 24, 32, 40, 48}) {
        renderCrash(bus, sampleAtBeat(bar * kBeatsPerBar), 0.35);
    }
    for (int bar : {12, 28}) {
        const long start = sampleAtBeat(bar * kBeatsPerBar);
        renderRiser(bus, start, sampleAtBeat((bar + 4) * kBeatsPerBar) - start, 0.5);
    }
}

void renderBass(Bus& bus) {
    const double sixteenth = secondsAt(kBeatSamples) / 4.0;
    for (int bar = 0; bar < kLastHitBar; ++bar) {
        const Section s = sectionOfBar(bar);
        const int root = chordOfBar(bar).bassRoot;
        if (s == Break) {
            renderSubNote(bus, sampleAtBeat(bar * kBeatsPerBar), 1.9, 0.3, root + 12, 0.22);
            continue;
        }
        if (s == Intro || (s == Outro && bar >= 46)) {
            continue;
        }
        // Off-beat roll: the kick owns the first sixteenth of each beat.
        for (int beat = 0; beat < kBeatsPerBar; ++beat) {
            for (int step = 1; step < 4; ++step) {
                const double at = bar * kBeatsPerBar + beat + step * 0.25;
                const int note = step == 2 ? root + 12 : root;
                renderBassNote(bus, sampleAtBeat(at), sixteenth * 0.7, note, 0.42);
            }
        }
    }
    renderSubNote(bus, sampleAtBeat(kLastHitBar * kBeatsPerBar), 0.5, 3.0, 45, 0.5);
}

// The intro has nothing else, the break little else.
double padGainOfSection(Section s) {
    if (s == Intro) {
        return 0.16;
    }
    return s == Break ? 0.14 : 0.12;
}

void renderPads(Bus& bus) {
    for (int bar = 0; bar < kLastHitBar; ++bar) {
        const double gain = padGainOfSection(sectionOfBar(bar));
        for (int note : chordOfBar(bar).pad) {
            renderPadNote(bus, sampleAtBeat(bar * kBeatsPerBar), 2.0, 1.0, note, gain);
        }
    }
    for (int note : {45, 57, 60, 64}) {
        renderPadNote(bus, sampleAtBeat(kLastHitBar * kBeatsPerBar), 0.6, 3.2, note, 0.14);
    }
}

bool arpInBar(int bar) {
    const Section s = sectionOfBar(bar);
    return s == Build || s == Main || s == Final || s == Outro || (s == Break && bar >= 28);
}

void renderArp(Bus& bus) {
    const std::array<int, 6> order = {0, 1, 2, 3, 2, 1};
    for (int bar = 0; bar < kLastHitBar; ++bar) {
        if (!arpInBar(bar)) {
            continue;
        }
        const Chord& chord = chordOfBar(bar);
        const std::array<int, 4> tones = {chord.pad[0], chord.pad[1], chord.pad[2],
                                          chord.pad[0] + 12};
        const double fade = linRamp(bar, 40.0, 47.0, 1.0, 0.3);
        for (int step = 0; step < 16; ++step) {
            const int note = tones[order[step % order.size()]];
            const double pan = step % 2 == 0 ? -0.4 : 0.4;
            const double accent = step % 4 == 0 ? 1.0 : 0.75;
            renderArpNote(bus, sampleAtBeat(bar * kBeatsPerBar + step * 0.25), note,
                          0.2 * accent * fade, pan);
        }
    }
}

void renderMelody(Bus& bus, int firstBar, int transpose, double gain) {
    for (const MelodyNote& n : kMelody) {
        const double beat = firstBar * kBeatsPerBar + n.beat;
        const double gate = secondsAt(kBeatSamples) * n.length * 0.9;
        renderLeadNote(bus, sampleAtBeat(beat), gate, n.note + transpose, gain);
    }
}

void renderLead(Bus& bus) {
    renderMelody(bus, 16, 0, 0.15);
    renderMelody(bus, 32, 0, 0.15);
    renderMelody(bus, 32, 12, 0.055);
}

void renderBells(Bus& bus) {
    bool right = false;
    for (const MelodyNote& n : kMelody) {
        renderBellNote(bus, sampleAtBeat(24 * kBeatsPerBar + n.beat), n.note, 0.2,
                       right ? 0.3 : -0.3);
        right = !right;
    }
}

// ---------------------------------------------------------------------------------------------
// Effects and master

// Mono in, echoes alternating between the sides, each repeat a little darker.
void addPingPongDelay(Bus& bus, long delay, double feedback, double wet) {
    std::vector<float> lineL(delay, 0.0f);
    std::vector<float> lineR(delay, 0.0f);
    double toneL = 0.0;
    double toneR = 0.0;
    for (long i = 0; i < kTotalSamples; ++i) {
        const long k = i % delay;
        const double echoL = lineL[k];
        const double echoR = lineR[k];
        toneL += 0.5 * (echoL - toneL);
        toneR += 0.5 * (echoR - toneR);
        const double in = 0.5 * (bus.left[i] + bus.right[i]);
        lineL[k] = static_cast<float>(in + toneR * feedback);
        lineR[k] = static_cast<float>(toneL * feedback);
        bus.left[i] += static_cast<float>(echoL * wet);
        bus.right[i] += static_cast<float>(echoR * wet);
    }
}

class CombFilter {
public:
    explicit CombFilter(long length) : buffer_(length, 0.0f) {}

    double process(double in, double feedback, double damp) {
        const double out = buffer_[pos_];
        store_ = out * (1.0 - damp) + store_ * damp;
        buffer_[pos_] = static_cast<float>(in + store_ * feedback);
        pos_ = (pos_ + 1) % buffer_.size();
        return out;
    }

private:
    std::vector<float> buffer_;
    size_t pos_ = 0;
    double store_ = 0.0;
};

class AllpassFilter {
public:
    explicit AllpassFilter(long length) : buffer_(length, 0.0f) {}

    double process(double in) {
        const double delayed = buffer_[pos_];
        buffer_[pos_] = static_cast<float>(in + delayed * 0.5);
        pos_ = (pos_ + 1) % buffer_.size();
        return delayed - in;
    }

private:
    std::vector<float> buffer_;
    size_t pos_ = 0;
};

// Parallel combs into series allpasses, slightly different lengths per side for width.
void applyReverb(Bus& bus) {
    const std::array<long, 8> combs = {1116, 1188, 1277, 1356, 1422, 1491, 1557, 1617};
    const std::array<long, 4> allpasses = {556, 441, 341, 225};
    const long spread = 23;
    std::vector<CombFilter> combL;
    std::vector<CombFilter> combR;
    for (long c : combs) {
        combL.emplace_back(c);
        combR.emplace_back(c + spread);
    }
    std::vector<AllpassFilter> allL;
    std::vector<AllpassFilter> allR;
    for (long a : allpasses) {
        allL.emplace_back(a);
        allR.emplace_back(a + spread);
    }
    for (long i = 0; i < kTotalSamples; ++i) {
        const double in = 0.015 * (bus.left[i] + bus.right[i]);
        double l = 0.0;
        double r = 0.0;
        for (size_t c = 0; c < combL.size(); ++c) {
            l += combL[c].process(in, 0.86, 0.3);
            r += combR[c].process(in, 0.86, 0.3);
        }
        for (size_t a = 0; a < allL.size(); ++a) {
            l = allL[a].process(l);
            r = allR[a].process(r);
        }
        bus.left[i] = static_cast<float>(l);
        bus.right[i] = static_cast<float>(r);
    }
}

// Full level up to the outro, down 9 dB across it, then silence by the very end.
double masterGain(long sample) {
    const double t = secondsAt(sample);
    const double end = secondsAt(kTotalSamples);
    const double db = linRamp(t, 80.0, 96.0, 0.0, -9.0);
    return std::pow(10.0, db / 20.0) * linRamp(t, end - 0.5, end, 1.0, 0.0);
}

double peakOf(const Bus& bus) {
    double peak = 0.0;
    for (long i = 0; i < kTotalSamples; ++i) {
        peak = std::max({peak, std::fabs(double(bus.left[i])), std::fabs(double(bus.right[i]))});
    }
    return peak;
}

void scale(Bus& bus, double gain) {
    for (long i = 0; i < kTotalSamples; ++i) {
        bus.left[i] = static_cast<float>(bus.left[i] * gain);
        bus.right[i] = static_cast<float>(bus.right[i] * gain);
    }
}

// Look-ahead peak limiter: the gain is down before a peak arrives and recovers slowly after.
void limit(Bus& bus, double threshold) {
    const long lookahead = samplesOf(0.005);
    const double release = 1.0 - std::exp(-1.0 / (0.08 * kRate));
    std::vector<double> need(kTotalSamples);
    for (long i = 0; i < kTotalSamples; ++i) {
        const double peak = std::max(std::fabs(bus.left[i]), std::fabs(bus.right[i]));
        need[i] = peak > threshold ? threshold / peak : 1.0;
    }
    // Sliding minimum over the next `lookahead` samples, then release, then a box average
    // as long as the look-ahead so the gain never steps.
    std::deque<long> window;
    std::vector<double> gain(kTotalSamples);
    double held = 1.0;
    for (long i = kTotalSamples - 1; i >= 0; --i) {
        while (!window.empty() && need[window.back()] >= need[i]) {
            window.pop_back();
        }
        window.push_back(i);
        while (window.front() > i + lookahead) {
            window.pop_front();
        }
        gain[i] = need[window.front()];
    }
    for (long i = 0; i < kTotalSamples; ++i) {
        held = std::min(gain[i], held + (1.0 - held) * release);
        gain[i] = held;
    }
    double sum = 0.0;
    std::vector<double> smooth(kTotalSamples);
    for (long i = 0; i < kTotalSamples; ++i) {
        sum += gain[i] - (i >= lookahead ? gain[i - lookahead] : 1.0);
        smooth[i] = (sum + lookahead) / lookahead;
    }
    for (long i = 0; i < kTotalSamples; ++i) {
        bus.left[i] = static_cast<float>(bus.left[i] * smooth[i]);
        bus.right[i] = static_cast<float>(bus.right[i] * smooth[i]);
    }
}

Bus renderSong() {
    const std::vector<long> kicks = kickSamples();
    const std::vector<float> duck = duckingCurve(kicks);
    Bus mix;
    Bus send;
    {
        Bus drums;
        renderDrums(drums, kicks);
        drums.mixInto(mix, 1.0);
        drums.mixInto(send, 0.08);
    }
    {
        Bus bass;
        renderBass(bass);
        applyDucking(bass, duck, 0.75);
        bass.mixInto(mix, 1.0);
    }
    {
        Bus pads;
        renderPads(pads);
        applyDucking(pads, duck, 0.5);
        pads.mixInto(mix, 1.0);
        pads.mixInto(send, 0.35);
    }
    {
        Bus arp;
        renderArp(arp);
        addPingPongDelay(arp, sampleAtBeat(0.75), 0.45, 0.5);
        applyDucking(arp, duck, 0.35);
        arp.mixInto(mix, 1.0);
        arp.mixInto(send, 0.2);
    }
    {
        Bus lead;
        renderLead(lead);
        addPingPongDelay(lead, sampleAtBeat(0.75), 0.35, 0.35);
        applyDucking(lead, duck, 0.2);
        lead.mixInto(mix, 1.0);
        lead.mixInto(send, 0.25);
    }
    {
        Bus bells;
        renderBells(bells);
        addPingPongDelay(bells, sampleAtBeat(0.75), 0.4, 0.4);
        bells.mixInto(mix, 1.0);
        bells.mixInto(send, 0.5);
    }
    {
        Bus effects;
        renderEffects(effects);
        effects.mixInto(mix, 1.0);
        effects.mixInto(send, 0.15);
    }
    applyReverb(send);
    applyDucking(send, duck, 0.4);
    send.mixInto(mix, 1.0);
    for (long i = 0; i < kTotalSamples; ++i) {
        const float g = static_cast<float>(masterGain(i));
        mix.left[i] *= g;
        mix.right[i] *= g;
    }
    return mix;
}

void removeDc(Bus& bus) {
    const double pole = std::exp(-2.0 * kPi * 15.0 / kRate);
    double inL = 0.0;
    double inR = 0.0;
    double outL = 0.0;
    double outR = 0.0;
    for (long i = 0; i < kTotalSamples; ++i) {
        outL = bus.left[i] - inL + pole * outL;
        outR = bus.right[i] - inR + pole * outR;
        inL = bus.left[i];
        inR = bus.right[i];
        bus.left[i] = static_cast<float>(outL);
        bus.right[i] = static_cast<float>(outR);
    }
}

// Limits the loudest peaks by a few dB, then brings the peak to kPeakDb.
void master(Bus& mix) {
    removeDc(mix);
    const double peak = peakOf(mix);
    if (peak <= 0.0) {
        return;
    }
    scale(mix, 1.0 / peak);
    limit(mix, 0.6);
    scale(mix, std::pow(10.0, kPeakDb / 20.0) / peakOf(mix));
}

// ---------------------------------------------------------------------------------------------
// Output

void putLe(std::string& out, uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
    }
}

bool writeWav(const std::string& path, const Bus& mix) {
    const uint32_t dataBytes = static_cast<uint32_t>(kTotalSamples * 4);
    std::string out;
    out.reserve(44 + dataBytes);
    out += "RIFF";
    putLe(out, 36 + dataBytes, 4);
    out += "WAVEfmt ";
    putLe(out, 16, 4);
    putLe(out, 1, 2); // PCM
    putLe(out, 2, 2);
    putLe(out, kRate, 4);
    putLe(out, kRate * 4, 4);
    putLe(out, 4, 2);
    putLe(out, 16, 2);
    out += "data";
    putLe(out, dataBytes, 4);
    for (long i = 0; i < kTotalSamples; ++i) {
        for (float v : {mix.left[i], mix.right[i]}) {
            const long s = std::lround(std::clamp(static_cast<double>(v), -1.0, 1.0) * 32767.0);
            putLe(out, static_cast<uint32_t>(static_cast<int16_t>(s)), 2);
        }
    }
    std::ofstream file(path, std::ios::binary);
    file.write(out.data(), static_cast<std::streamsize>(out.size()));
    return static_cast<bool>(file);
}

// Runs oggenc without a shell, so no path needs quoting.
bool encodeOgg(const std::string& wavPath, const std::string& oggPath) {
    std::vector<std::string> args = {"oggenc",    "-Q", "-q",  kQuality, "-s",    kSerial, "-t",
                                     "KVL theme", "-a", "kvl", "-o",     oggPath, wavPath};
    std::vector<char*> argv;
    for (std::string& a : args) {
        argv.push_back(a.data());
    }
    argv.push_back(nullptr);
    pid_t pid = 0;
    if (posix_spawnp(&pid, "oggenc", nullptr, nullptr, argv.data(), environ) != 0) {
        std::cerr << "musicgen: cannot run oggenc (package vorbis-tools)\n";
        return false;
    }
    int status = 0;
    if (waitpid(pid, &status, 0) != pid || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::cerr << "musicgen: oggenc failed\n";
        return false;
    }
    return true;
}

void printHelp() {
    std::cout
        << "musicgen - synthesises the default production's theme music as OGG Vorbis\n"
           "\n"
           "Usage: musicgen <output.ogg>\n"
           "       musicgen --help\n"
           "\n"
           "Renders 100 s of stereo 44100 Hz music, writes it as a 16-bit WAV to a\n"
           "temporary file and encodes that with 'oggenc -q 4' (package vorbis-tools).\n"
           "The WAV peaks at -2.5 dBFS, so the decoded Vorbis peaks stay near -1 dBFS.\n"
           "An output name ending in .wav gets the unencoded 16-bit WAV instead.\n"
           "The output is the same on every run.\n"
           "\n"
           "Tempo is fixed at 120 BPM: beat n starts at n * 500 ms, a bar is 2 s,\n"
           "a section is 8 bars = 16 s. Sections (mm:ss:mmm):\n"
           "  00:00:000  intro       pads only, no drums\n"
           "  00:16:000  build       kick on every beat and rolling bass; hats from 00:20,\n"
           "                         snare and noise riser from 00:24, snare roll from 00:30\n"
           "  00:32:000  main        full beat, bass, pads, arpeggio, lead melody\n"
           "  00:48:000  break       no kick: pads, bell melody, sub bass; hats, arpeggio\n"
           "                         and riser from 00:56, snare roll from 01:02\n"
           "  01:04:000  final main  full beat, lead doubled an octave up\n"
           "  01:20:000  outro       kick goes on; snare stops at 01:28, hats and bass at\n"
           "                         01:32, everything fades\n"
           "  01:36:000  last hit    one kick, crash and chord ringing out\n"
           "  01:40:000  end\n"
           "Crashes at 00:32, 00:48, 01:04, 01:20 and 01:36.\n"
           "\n"
           "Example (from the repository root, after building into build/):\n"
           "  $ build/tools/musicgen resources/music/kvltheme.ogg\n"
           "  musicgen: wrote resources/music/kvltheme.ogg (100.000 s, 120 BPM, 2 channels, 44100 "
           "Hz)\n";
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
        printHelp();
        return 0;
    }
    if (argc != 2 || argv[1][0] == '-') {
        std::cerr << "Usage: musicgen <output.ogg>   (musicgen --help for more)\n";
        return 2;
    }
    const std::string outPath = argv[1];
    const bool wavOnly = outPath.size() >= 4 && outPath.compare(outPath.size() - 4, 4, ".wav") == 0;
    const std::string wavPath =
        wavOnly ? outPath
                : (std::filesystem::temp_directory_path() /
                   ("musicgen-" + std::to_string(static_cast<long>(getpid())) + ".wav"))
                      .string();

    Bus mix = renderSong();
    master(mix);
    if (!writeWav(wavPath, mix)) {
        std::cerr << "musicgen: cannot write " << wavPath << "\n";
        return 1;
    }
    if (!wavOnly) {
        const bool encoded = encodeOgg(wavPath, outPath);
        std::error_code ignored;
        std::filesystem::remove(wavPath, ignored);
        if (!encoded) {
            return 1;
        }
    }
    std::printf("musicgen: wrote %s (%.3f s, 120 BPM, 2 channels, %d Hz)\n", outPath.c_str(),
                secondsAt(kTotalSamples), kRate);
    return 0;
}
