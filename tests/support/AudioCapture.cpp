#include "support/AudioCapture.h"

#include <vorbis/vorbisfile.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <random>
#include <thread>

namespace {

const char* DRIVER = "SDL_AUDIODRIVER";
const char* FILE_NAME = "SDL_DISKAUDIOFILE";
const char* DELAY = "SDL_DISKAUDIODELAY";
const size_t BYTES_PER_FRAME = AudioCapture::CHANNELS * sizeof(int16_t);

bool remember(const char* name, std::string& value) {
    const char* current = std::getenv(name);
    if (current == nullptr) {
        return false;
    }
    value = current;
    return true;
}

void putLe(std::string& out, uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
    }
}

int16_t clampSample(double value) {
    return static_cast<int16_t>(std::lround(std::fmax(-32768.0, std::fmin(32767.0, value))));
}

} // namespace

AudioCapture::AudioCapture(const std::string& file, int delayMilliseconds) : file(file) {
    hadDriver = remember(DRIVER, oldDriver);
    hadFile = remember(FILE_NAME, oldFile);
    hadDelay = remember(DELAY, oldDelay);
    setenv(DRIVER, "disk", 1);
    setenv(FILE_NAME, file.c_str(), 1);
    setenv(DELAY, std::to_string(delayMilliseconds).c_str(), 1);
}

AudioCapture::~AudioCapture() {
    restore(DRIVER, hadDriver, oldDriver);
    restore(FILE_NAME, hadFile, oldFile);
    restore(DELAY, hadDelay, oldDelay);
}

void AudioCapture::restore(const char* name, bool had, const std::string& value) {
    if (had) {
        setenv(name, value.c_str(), 1);
    } else {
        unsetenv(name);
    }
}

size_t AudioCapture::framesWritten() const {
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    if (error) {
        return 0;
    }
    return static_cast<size_t>(size) / BYTES_PER_FRAME;
}

bool AudioCapture::waitForFrames(size_t frames, int timeoutMilliseconds) const {
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMilliseconds);
    while (framesWritten() < frames) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

std::vector<int16_t> AudioCapture::samples() const {
    std::ifstream in(file, std::ios::binary);
    std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const size_t count = bytes.size() / BYTES_PER_FRAME * CHANNELS;
    std::vector<int16_t> result(count);
    for (size_t i = 0; i < count; ++i) {
        const auto low = static_cast<unsigned char>(bytes[2 * i]);
        const auto high = static_cast<unsigned char>(bytes[2 * i + 1]);
        result[i] = static_cast<int16_t>(static_cast<uint16_t>(low | (high << 8)));
    }
    return result;
}

std::vector<int16_t> AudioCapture::whiteNoise(double seconds, unsigned int seed, int amplitude) {
    // mt19937 gives the same numbers everywhere; the distribution objects
    // of the standard library do not, so the scaling is done here.
    std::mt19937 random(seed);
    const size_t count = static_cast<size_t>(seconds * RATE) * CHANNELS;
    std::vector<int16_t> result(count);
    for (auto& sample : result) {
        const double unit = static_cast<double>(random()) / 4294967295.0;
        sample = clampSample((2.0 * unit - 1.0) * amplitude);
    }
    return result;
}

std::vector<int16_t> AudioCapture::tone(double seconds, double frequency, int amplitude) {
    const size_t count = static_cast<size_t>(seconds * RATE);
    std::vector<int16_t> result;
    result.reserve(count * CHANNELS);
    for (size_t i = 0; i < count; ++i) {
        const double value = amplitude * std::sin(2.0 * M_PI * frequency * i / RATE);
        for (int c = 0; c < CHANNELS; ++c) {
            result.push_back(clampSample(value));
        }
    }
    return result;
}

bool AudioCapture::writeOgg(const std::vector<int16_t>& samples, const std::string& wavPath,
                            const std::string& oggPath) {
    const uint32_t dataBytes = static_cast<uint32_t>(samples.size() * sizeof(int16_t));
    std::string wav = "RIFF";
    putLe(wav, 36 + dataBytes, 4);
    wav += "WAVEfmt ";
    putLe(wav, 16, 4);
    putLe(wav, 1, 2);
    putLe(wav, CHANNELS, 2);
    putLe(wav, RATE, 4);
    putLe(wav, RATE * BYTES_PER_FRAME, 4);
    putLe(wav, BYTES_PER_FRAME, 2);
    putLe(wav, 16, 2);
    wav += "data";
    putLe(wav, dataBytes, 4);
    for (int16_t sample : samples) {
        putLe(wav, static_cast<uint16_t>(sample), 2);
    }
    {
        std::ofstream out(wavPath, std::ios::binary);
        out << wav;
        if (!out) {
            return false;
        }
    }
    const std::string command = "oggenc -Q -q 6 -o '" + oggPath + "' '" + wavPath + "'";
    return std::system(command.c_str()) == 0 && std::filesystem::exists(oggPath);
}

std::vector<int16_t> AudioCapture::decodeOgg(const std::string& path) {
    std::vector<int16_t> result;
    OggVorbis_File vorbis;
    if (ov_fopen(path.c_str(), &vorbis) != 0) {
        return result;
    }
    const vorbis_info* info = ov_info(&vorbis, -1);
    if (info == nullptr || info->channels != CHANNELS || info->rate != RATE) {
        ov_clear(&vorbis);
        return result;
    }
    char buffer[4096];
    int section = 0;
    long got = 0;
    // Little endian, 16 bit, signed: the device format of the player.
    while ((got = ov_read(&vorbis, buffer, sizeof(buffer), 0, 2, 1, &section)) > 0) {
        for (long i = 0; i + 1 < got; i += 2) {
            const auto low = static_cast<unsigned char>(buffer[i]);
            const auto high = static_cast<unsigned char>(buffer[i + 1]);
            result.push_back(static_cast<int16_t>(static_cast<uint16_t>(low | (high << 8))));
        }
    }
    ov_clear(&vorbis);
    return result;
}

size_t AudioCapture::frames(const std::vector<int16_t>& samples) {
    return samples.size() / CHANNELS;
}

size_t AudioCapture::firstSoundFrame(const std::vector<int16_t>& samples, size_t from) {
    for (size_t i = from * CHANNELS; i < samples.size(); ++i) {
        if (samples[i] != 0) {
            return i / CHANNELS;
        }
    }
    return NONE;
}

bool AudioCapture::isSilent(const std::vector<int16_t>& samples, size_t from, size_t to) {
    for (size_t i = from * CHANNELS; i < to * CHANNELS && i < samples.size(); ++i) {
        if (samples[i] != 0) {
            return false;
        }
    }
    return true;
}

AudioCapture::Match AudioCapture::locate(const std::vector<int16_t>& samples, size_t at,
                                         size_t count, const std::vector<int16_t>& reference) {
    Match best;
    if ((at + count) * CHANNELS > samples.size() || count * CHANNELS > reference.size()) {
        return best;
    }
    const int16_t* block = samples.data() + at * CHANNELS;
    const size_t length = count * CHANNELS;
    int64_t bestSum = std::numeric_limits<int64_t>::max();
    // Sum of absolute differences, given up as soon as it exceeds the best
    // so far: on noise a wrong place loses after a handful of samples.
    for (size_t frame = 0; frame + count <= frames(reference); ++frame) {
        const int16_t* candidate = reference.data() + frame * CHANNELS;
        int64_t sum = 0;
        for (size_t i = 0; i < length && sum < bestSum; ++i) {
            sum += std::abs(static_cast<int>(block[i]) - static_cast<int>(candidate[i]));
        }
        if (sum < bestSum) {
            bestSum = sum;
            best.frame = frame;
        }
    }
    best.meanError = static_cast<double>(bestSum) / static_cast<double>(length);
    return best;
}

double AudioCapture::meanDifference(const std::vector<int16_t>& samples, size_t at, size_t count,
                                    const std::vector<int16_t>& reference, size_t referenceAt) {
    if ((at + count) * CHANNELS > samples.size() ||
        (referenceAt + count) * CHANNELS > reference.size() || count == 0) {
        return std::numeric_limits<double>::infinity();
    }
    int64_t sum = 0;
    for (size_t i = 0; i < count * CHANNELS; ++i) {
        sum += std::abs(static_cast<int>(samples[at * CHANNELS + i]) -
                        static_cast<int>(reference[referenceAt * CHANNELS + i]));
    }
    return static_cast<double>(sum) / static_cast<double>(count * CHANNELS);
}
