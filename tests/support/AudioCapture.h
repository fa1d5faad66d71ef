#ifndef KVL_AUDIOCAPTURE_H
#define KVL_AUDIOCAPTURE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Sends everything SDL plays into a file instead of a sound card, through
// SDL's disk audio driver, and reads it back for the music tests. The
// driver writes one mixed buffer, then sleeps for the given delay, so the
// file fills at a pace set by the delay and not by the wall clock; tests
// wait for the file to grow and judge its content, never its timing.
//
// Audio is 16-bit signed stereo at 44100 Hz throughout, the format in which
// the player opens the device; sample vectors are interleaved left, right.
class AudioCapture {
public:
    static constexpr int RATE = 44100;
    static constexpr int CHANNELS = 2;
    static constexpr size_t NONE = static_cast<size_t>(-1);

    // Sets the environment for the next opening of SDL's audio; the old
    // driver choice comes back when the object goes.
    AudioCapture(const std::string& file, int delayMilliseconds);
    ~AudioCapture();
    AudioCapture(const AudioCapture&) = delete;
    AudioCapture& operator=(const AudioCapture&) = delete;

    // Frames in the file so far (the writer may hold a little more).
    size_t framesWritten() const;
    // Polls until the file holds `frames` frames; false at the timeout.
    bool waitForFrames(size_t frames, int timeoutMilliseconds) const;
    std::vector<int16_t> samples() const;

    // Test music.
    static std::vector<int16_t> whiteNoise(double seconds, unsigned int seed, int amplitude);
    static std::vector<int16_t> tone(double seconds, double frequency, int amplitude);
    // Writes the samples as a WAV file and encodes it with oggenc.
    static bool writeOgg(const std::vector<int16_t>& samples, const std::string& wavPath,
                         const std::string& oggPath);
    // The whole file decoded by libvorbisfile; empty when it cannot be read.
    static std::vector<int16_t> decodeOgg(const std::string& path);

    // Analysis on frame indices of interleaved sample vectors.
    static size_t frames(const std::vector<int16_t>& samples);
    // First frame at or after `from` with a sample other than zero.
    static size_t firstSoundFrame(const std::vector<int16_t>& samples, size_t from);
    // True when every sample of the frames [from, to) is zero.
    static bool isSilent(const std::vector<int16_t>& samples, size_t from, size_t to);

    struct Match {
        size_t frame = NONE;
        // Mean absolute sample difference at the best place.
        double meanError = 0.0;
    };
    // Where in `reference` the `count` frames of `samples` that begin at
    // `at` fit best.
    static Match locate(const std::vector<int16_t>& samples, size_t at, size_t count,
                        const std::vector<int16_t>& reference);
    // Mean absolute difference of `count` frames of `samples` from `at` and
    // of `reference` from `referenceAt`.
    static double meanDifference(const std::vector<int16_t>& samples, size_t at, size_t count,
                                 const std::vector<int16_t>& reference, size_t referenceAt);

private:
    static void restore(const char* name, bool had, const std::string& value);

    std::string file;
    bool hadDriver;
    std::string oldDriver;
    bool hadFile;
    std::string oldFile;
    bool hadDelay;
    std::string oldDelay;
};

#endif
