#include "runtime/KVLDemosys.h"
#include "runtime/ResourceLoader.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"
#include "support/AudioCapture.h"
#include "support/TempDir.h"
#include "timeline/Timeline.h"

#include <SDL/SDL.h>
#include <SDL/SDL_mixer.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

// How often the audio device is open; 0 when it is closed.
int timesAudioOpened() {
    int frequency = 0;
    Uint16 format = 0;
    int channels = 0;
    return Mix_QuerySpec(&frequency, &format, &channels);
}

} // namespace

// The music is heard through SDL's disk audio driver: whatever SDL would
// send to a sound card lands in a file of the test's own directory, so the
// tests judge the samples the player really produced. The driver writes a
// buffer of 1024 frames (23 ms of music), then sleeps for DELAY ms, so a
// second of music is written in under half a second and the tests wait only
// for the file to grow.
//
// While no music plays, SDL goes on writing buffers, filled with silence:
// zero samples. That is what lets a test see where a pause begins and ends.
class KVLDemosysSound : public ::testing::Test {
protected:
    static constexpr int DELAY = 10;
    static constexpr size_t BUFFER = 1024;
    // Frames counted in the file lag what was mixed by the buffer on its way
    // to the file, at most; four buffers leave a wide margin.
    static constexpr size_t LAG = 4 * BUFFER;
    static constexpr int TIMEOUT = 10000;
    // Positions in the music are exact to the frame. The tolerance of 2 ms
    // (88 frames) covers only that the first frames at a position may happen
    // to be zero in the noise, and so be taken for silence.
    static constexpr size_t TOLERANCE = 2 * AudioCapture::RATE / 1000;

    void SetUp() override {
        KVLDemosys::resetState();
        KVLDemosys::timeline = &timeline;
        capture = std::make_unique<AudioCapture>(dir.file("speaker.raw"), DELAY);
    }

    // Frees what a test left open, so that the next test in the same process
    // opens SDL's audio afresh, with its own output file.
    void TearDown() override {
        if (KVLDemosys::sound != nullptr) {
            Mix_HaltMusic();
            Mix_FreeMusic(KVLDemosys::sound);
        }
        if (KVLDemosys::soundsystem) {
            Mix_CloseAudio();
        }
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
        KVLDemosys::resetState();
        capture.reset();
    }

    // White noise from a fixed seed: every block of it fits the music at
    // exactly one place, so a written block tells the position it came from.
    std::string noiseMusic(double seconds) {
        std::string path = dir.file("noise.ogg");
        EXPECT_TRUE(AudioCapture::writeOgg(AudioCapture::whiteNoise(seconds, 1977, 8000),
                                           dir.file("noise.wav"), path));
        return path;
    }

    std::string toneMusic(double seconds) {
        std::string path = dir.file("tone.ogg");
        EXPECT_TRUE(AudioCapture::writeOgg(AudioCapture::tone(seconds, 440.0, 8000),
                                           dir.file("tone.wav"), path));
        return path;
    }

    static bool init(const std::string& path) {
        std::vector<char> name(path.begin(), path.end());
        name.push_back('\0');
        return KVLDemosys::soundInit(name.data());
    }

    static bool waitForMusicEnd() {
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(TIMEOUT);
        while (Mix_PlayingMusic() != 0) {
            if (std::chrono::steady_clock::now() > end) {
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return true;
    }

    // Where in the piece the first music written at or after `from` came
    // from; 256 frames (6 ms) of the noise fit at one place of it only.
    static AudioCapture::Match firstMusicAfter(const std::vector<int16_t>& written, size_t from,
                                               const std::vector<int16_t>& music) {
        const size_t first = AudioCapture::firstSoundFrame(written, from);
        if (first == AudioCapture::NONE) {
            return AudioCapture::Match();
        }
        return AudioCapture::locate(written, first, 256, music);
    }

    static size_t framesAt(unsigned int milliseconds) {
        return static_cast<size_t>(milliseconds) * AudioCapture::RATE / 1000;
    }

    TempDir dir;
    Timeline timeline;
    std::unique_ptr<AudioCapture> capture;
};

// ---------------------------------------------------------------- loading

TEST_F(KVLDemosysSound, MissingMusicFileFailsToLoadWithItsMessageAndLogLine) {
    testing::internal::CaptureStdout();
    bool loaded = init(dir.file("absent.ogg"));
    std::string log = testing::internal::GetCapturedStdout();
    EXPECT_FALSE(loaded);
    EXPECT_EQ("Failed to load soundfile!", KVLDemosys::getMessage());
    EXPECT_EQ("KVLDemosys::soundInit()\n", log);
    EXPECT_FALSE(KVLDemosys::music);
    EXPECT_EQ(nullptr, KVLDemosys::sound);
}

TEST_F(KVLDemosysSound, MissingMusicFileStopsTheLoadNamingTheFile) {
    Parameters parameters;
    auto* paths = new ParameterGroup("paths");
    paths->addParameter("sound", dir.path() + "/music/");
    parameters.addGroup("paths", paths);
    auto* sound = new ParameterGroup("sound");
    sound->addParameter("play", "1");
    sound->addParameter("file", "absent.ogg");
    parameters.addGroup("sound", sound);
    KVLDemosys::parameters = &parameters;
    ResourceLoader loader("demoscript.txt");

    testing::internal::CaptureStdout();
    bool loaded = loader.loadSound();
    testing::internal::GetCapturedStdout();

    EXPECT_FALSE(loaded);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("Failed to load sound!\nFile : '" + dir.path() + "/music/absent.ogg'",
              loader.getErrorMessage());
    KVLDemosys::parameters = nullptr;
}

// ---------------------------------------------------------------- starting

TEST_F(KVLDemosysSound, SoundPlayFromTheBeginningStartsTheMusicAndReportsSuccess) {
    const std::string path = noiseMusic(2.0);
    const std::vector<int16_t> music = AudioCapture::decodeOgg(path);
    ASSERT_TRUE(init(path)) << KVLDemosys::getMessage();
    const size_t started = capture->framesWritten();
    EXPECT_TRUE(KVLDemosys::soundPlay());
    EXPECT_EQ(1, Mix_PlayingMusic());
    EXPECT_EQ(0, KVLDemosys::soundchannel);
    ASSERT_TRUE(capture->waitForFrames(started + LAG + 4 * BUFFER, TIMEOUT));
    const AudioCapture::Match match = firstMusicAfter(capture->samples(), 0, music);
    EXPECT_LE(match.frame, TOLERANCE);
    EXPECT_LT(match.meanError, 2.0);
}

TEST_F(KVLDemosysSound, SoundPlayAtZeroStartsTheMusicButReportsFailure) {
    const std::string path = noiseMusic(2.0);
    const std::vector<int16_t> music = AudioCapture::decodeOgg(path);
    ASSERT_TRUE(init(path)) << KVLDemosys::getMessage();
    const size_t started = capture->framesWritten();
    EXPECT_FALSE(KVLDemosys::soundPlay(0));
    EXPECT_EQ(1, Mix_PlayingMusic());
    EXPECT_EQ(0, KVLDemosys::soundchannel);
    // The false result is no failure: no failure text is left.
    EXPECT_EQ("", KVLDemosys::getMessage());
    ASSERT_TRUE(capture->waitForFrames(started + LAG + 4 * BUFFER, TIMEOUT));
    const AudioCapture::Match match = firstMusicAfter(capture->samples(), 0, music);
    EXPECT_LE(match.frame, TOLERANCE);
    EXPECT_LT(match.meanError, 2.0);
}

TEST_F(KVLDemosysSound, SoundPlayWithoutMusicFailsWithMessage) {
    EXPECT_FALSE(KVLDemosys::soundPlay());
    EXPECT_EQ("Failed to play sound!", KVLDemosys::getMessage());
    KVLDemosys::message.clear();
    EXPECT_FALSE(KVLDemosys::soundPlay(1000));
    EXPECT_EQ("Failed to play sound!", KVLDemosys::getMessage());
}

// ---------------------------------------------------------------- pause and resume

TEST_F(KVLDemosysSound, PauseWithMusicSwitchedOffFailsToStopButTheClockStops) {
    KVLDemosys::startTime = 1000;
    KVLDemosys::updateTime(1600);
    EXPECT_FALSE(KVLDemosys::stopTimer());
    EXPECT_EQ("Failed to stop playing sound!", KVLDemosys::getMessage());
    EXPECT_TRUE(KVLDemosys::pause);
    KVLDemosys::updateTime(2000);
    KVLDemosys::updateTime(5000);
    EXPECT_EQ(600u, KVLDemosys::getMillisecondsElapsed());

    // The run goes on: resume fails to start music and the clock runs on.
    EXPECT_FALSE(KVLDemosys::startTimer());
    EXPECT_EQ("Failed to play sound!", KVLDemosys::getMessage());
    EXPECT_FALSE(KVLDemosys::pause);
    KVLDemosys::updateTime(5100);
    EXPECT_EQ(700u, KVLDemosys::getMillisecondsElapsed());
}

TEST_F(KVLDemosysSound, PauseAfterTheMusicHasEndedFailsTheHandleTestButTheClockStops) {
    ASSERT_TRUE(init(toneMusic(0.3))) << KVLDemosys::getMessage();
    ASSERT_TRUE(KVLDemosys::soundPlay());
    ASSERT_TRUE(waitForMusicEnd());
    EXPECT_EQ(0, KVLDemosys::soundchannel);

    KVLDemosys::startTime = 1000;
    KVLDemosys::updateTime(1400);
    EXPECT_FALSE(KVLDemosys::stopTimer());
    EXPECT_EQ("Failed to stop playing sound!", KVLDemosys::getMessage());
    EXPECT_EQ(-1, KVLDemosys::soundchannel);
    EXPECT_TRUE(KVLDemosys::pause);
    KVLDemosys::updateTime(3000);
    EXPECT_EQ(400u, KVLDemosys::getMillisecondsElapsed());
}

TEST_F(KVLDemosysSound, ResumeAfterTheMusicHasEndedPlacesItBehindItsEndAndStaysSilent) {
    const std::string path = noiseMusic(0.3);
    const std::vector<int16_t> music = AudioCapture::decodeOgg(path);
    ASSERT_TRUE(init(path)) << KVLDemosys::getMessage();
    ASSERT_TRUE(KVLDemosys::soundPlay());
    ASSERT_TRUE(waitForMusicEnd());
    const size_t ended = capture->framesWritten() + LAG;

    KVLDemosys::startTime = 1000;
    KVLDemosys::updateTime(3000);
    EXPECT_FALSE(KVLDemosys::stopTimer());
    KVLDemosys::updateTime(4000);
    ASSERT_EQ(2000u, KVLDemosys::getMillisecondsElapsed());
    ASSERT_TRUE(capture->waitForFrames(ended + BUFFER, TIMEOUT));
    const size_t resumed = capture->framesWritten();
    EXPECT_FALSE(KVLDemosys::startTimer());
    ASSERT_TRUE(capture->waitForFrames(resumed + LAG + 32 * BUFFER, TIMEOUT));

    // Two seconds lie behind the end of a piece of 0.3 s: nothing of it
    // may sound again, neither its beginning nor any other part.
    std::vector<int16_t> written = capture->samples();
    const size_t again = AudioCapture::firstSoundFrame(written, ended);
    EXPECT_EQ(AudioCapture::NONE, again)
        << "the resume at frame " << resumed << " wrote the music from its frame "
        << firstMusicAfter(written, ended, music).frame << " at frame " << again;
}

// ---------------------------------------------------------------- shutting down

TEST_F(KVLDemosysSound, ShutdownAfterStoppingTheMusicReleasesItAndReportsFalse) {
    ASSERT_TRUE(init(toneMusic(8.0))) << KVLDemosys::getMessage();
    ASSERT_TRUE(KVLDemosys::soundPlay());
    EXPECT_FALSE(KVLDemosys::soundShutdown());
    EXPECT_EQ("", KVLDemosys::getMessage());
    EXPECT_EQ(0, Mix_PlayingMusic());
    EXPECT_EQ(nullptr, KVLDemosys::sound);
    EXPECT_FALSE(KVLDemosys::soundsystem);
    EXPECT_EQ(0, timesAudioOpened()) << "the device is still open";
}

TEST_F(KVLDemosysSound, ShutdownWithNothingPlayingReportsTrueAndKeepsTheMusic) {
    ASSERT_TRUE(init(toneMusic(0.3))) << KVLDemosys::getMessage();
    EXPECT_TRUE(KVLDemosys::soundShutdown());
    EXPECT_EQ("Failed to shut down FMOD!", KVLDemosys::getMessage());
    EXPECT_NE(nullptr, KVLDemosys::sound);
    EXPECT_TRUE(KVLDemosys::soundsystem);
    EXPECT_EQ(1, timesAudioOpened()) << "the device was closed";
}

TEST_F(KVLDemosysSound, ShutDownReleasesTheMusicWhenMusicIsOn) {
    ASSERT_TRUE(init(toneMusic(8.0))) << KVLDemosys::getMessage();
    ASSERT_TRUE(KVLDemosys::soundPlay());
    ASSERT_TRUE(KVLDemosys::music);
    KVLDemosys::shutDown();
    EXPECT_EQ(nullptr, KVLDemosys::sound);
    EXPECT_FALSE(KVLDemosys::soundsystem);
}

TEST_F(KVLDemosysSound, ShutDownLeavesTheMusicAloneWhenMusicIsOff) {
    ASSERT_TRUE(init(toneMusic(8.0))) << KVLDemosys::getMessage();
    ASSERT_TRUE(KVLDemosys::soundPlay());
    KVLDemosys::music = false;
    KVLDemosys::shutDown();
    EXPECT_NE(nullptr, KVLDemosys::sound);
    EXPECT_TRUE(KVLDemosys::soundsystem);
    EXPECT_EQ("", KVLDemosys::getMessage());
}

// ---------------------------------------------------------------- what is heard

TEST_F(KVLDemosysSound, PlayingMusicWritesItsSamplesFromTheBeginning) {
    const std::string path = noiseMusic(4.0);
    const std::vector<int16_t> music = AudioCapture::decodeOgg(path);
    ASSERT_GT(AudioCapture::frames(music), framesAt(3000));
    ASSERT_TRUE(init(path)) << KVLDemosys::getMessage();
    const size_t started = capture->framesWritten();
    ASSERT_TRUE(KVLDemosys::soundPlay());
    ASSERT_TRUE(capture->waitForFrames(started + LAG + 16 * BUFFER, TIMEOUT));

    std::vector<int16_t> written = capture->samples();
    const size_t first = AudioCapture::firstSoundFrame(written, 0);
    ASSERT_NE(AudioCapture::NONE, first) << "nothing but silence was written";
    const AudioCapture::Match match = firstMusicAfter(written, 0, music);
    EXPECT_LE(match.frame, TOLERANCE) << "the music began at its frame " << match.frame;
    EXPECT_LT(match.meanError, 2.0);
    EXPECT_LT(AudioCapture::meanDifference(written, first, 8 * BUFFER, music, match.frame), 2.0)
        << "the music does not run on from its beginning";
}

TEST_F(KVLDemosysSound, PausedMusicWritesOnlySilence) {
    ASSERT_TRUE(init(noiseMusic(4.0))) << KVLDemosys::getMessage();
    const size_t started = capture->framesWritten();
    ASSERT_TRUE(KVLDemosys::soundPlay());
    ASSERT_TRUE(capture->waitForFrames(started + LAG + 8 * BUFFER, TIMEOUT));
    KVLDemosys::updateTime(500);
    ASSERT_TRUE(KVLDemosys::stopTimer()) << "the music was over before the pause";
    const size_t paused = capture->framesWritten() + LAG;
    ASSERT_TRUE(capture->waitForFrames(paused + 32 * BUFFER, TIMEOUT));

    std::vector<int16_t> written = capture->samples();
    ASSERT_NE(AudioCapture::NONE, AudioCapture::firstSoundFrame(written, 0));
    EXPECT_LT(AudioCapture::firstSoundFrame(written, 0), paused);
    EXPECT_TRUE(AudioCapture::isSilent(written, paused, AudioCapture::frames(written)))
        << "music written at frame " << AudioCapture::firstSoundFrame(written, paused);
}

TEST_F(KVLDemosysSound, ResumedMusicContinuesFromTheClockPosition) {
    const std::string path = noiseMusic(4.0);
    const std::vector<int16_t> music = AudioCapture::decodeOgg(path);
    ASSERT_GT(AudioCapture::frames(music), framesAt(3000));
    ASSERT_TRUE(init(path)) << KVLDemosys::getMessage();

    // The run: music started, then the clock; frames fed by hand.
    const size_t started = capture->framesWritten();
    ASSERT_TRUE(KVLDemosys::soundPlay());
    KVLDemosys::startTime = 1000;
    KVLDemosys::updateTime(1000);
    ASSERT_TRUE(capture->waitForFrames(started + LAG + 8 * BUFFER, TIMEOUT));

    // Paused at 1.5 s on the clock, which need not be where the music is.
    KVLDemosys::updateTime(2500);
    ASSERT_TRUE(KVLDemosys::stopTimer()) << "the music was over before the pause";
    const size_t paused = capture->framesWritten() + LAG;
    KVLDemosys::updateTime(2600);
    KVLDemosys::updateTime(7000);
    ASSERT_EQ(1500u, KVLDemosys::getMillisecondsElapsed());
    ASSERT_TRUE(capture->waitForFrames(paused + 16 * BUFFER, TIMEOUT));
    const size_t resumed = capture->framesWritten();
    KVLDemosys::startTimer();
    ASSERT_TRUE(capture->waitForFrames(resumed + LAG + 16 * BUFFER, TIMEOUT));

    std::vector<int16_t> written = capture->samples();
    ASSERT_TRUE(AudioCapture::isSilent(written, paused, resumed));
    const size_t first = AudioCapture::firstSoundFrame(written, paused);
    ASSERT_NE(AudioCapture::NONE, first) << "nothing was written after the resume";
    const AudioCapture::Match match = firstMusicAfter(written, paused, music);
    ASSERT_NE(AudioCapture::NONE, match.frame);
    EXPECT_LT(match.meanError, 2.0);
    const size_t expected = framesAt(1500);
    EXPECT_GE(match.frame + TOLERANCE, expected)
        << "the first music after the resume came from frame " << match.frame;
    EXPECT_LE(match.frame, expected + TOLERANCE)
        << "the first music after the resume came from frame " << match.frame;
    EXPECT_LT(AudioCapture::meanDifference(written, first, 8 * BUFFER, music, match.frame), 2.0)
        << "the music does not run on from the clock position";
}
