#include "animation/AnimationParser.h"

#include "animation/Animation.h"
#include "animation/Keyframe.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

const std::string WORKED_EXAMPLE = "KVLANI1\n"
                                   "keyframes 5\n"
                                   "pos 0 0 10\n"
                                   "rot 0 0\n"
                                   "pos 5 1 5\n"
                                   "rot 10 45\n"
                                   "pos 10 2 0\n"
                                   "rot 10 90\n"
                                   "pos 5 1 -5\n"
                                   "rot 0 135\n"
                                   "pos 0 0 -10\n"
                                   "rot 0 180\n";

const std::string INVALID_HEADER_START = "Error while loading animation data\nFile : '";

struct Pose {
    float x, y, z, pitch, heading;
};

const std::vector<Pose> WORKED_POSES = {{0, 0, 10, 0, 0},
                                        {5, 1, 5, 10, 45},
                                        {10, 2, 0, 10, 90},
                                        {5, 1, -5, 0, 135},
                                        {0, 0, -10, 0, 180}};

void expectPose(const Pose& pose, const Keyframe* keyframe, int index) {
    ASSERT_NE(nullptr, keyframe) << "keyframe " << index;
    EXPECT_EQ(pose.x, keyframe->getPosition()[0]) << "keyframe " << index;
    EXPECT_EQ(pose.y, keyframe->getPosition()[1]) << "keyframe " << index;
    EXPECT_EQ(pose.z, keyframe->getPosition()[2]) << "keyframe " << index;
    EXPECT_EQ(pose.pitch, keyframe->getPitch()) << "keyframe " << index;
    EXPECT_EQ(pose.heading, keyframe->getHeading()) << "keyframe " << index;
}

void expectPoses(const std::vector<Pose>& poses, const Animation* animation) {
    ASSERT_NE(nullptr, animation);
    ASSERT_EQ(static_cast<int>(poses.size()), animation->countKeyFrames());
    for (size_t i = 0; i < poses.size(); i++) {
        expectPose(poses[i], animation->getKeyFrame(static_cast<int>(i)), static_cast<int>(i));
    }
}

// Writes the text as a file, parses it and keeps what came out.
class Parsed {
public:
    explicit Parsed(const std::string& text, const std::string& name = "path.ani")
        : parser(dir.file(name)) {
        dir.write(name, text);
        testing::internal::CaptureStdout();
        animation.reset(parser.parse());
        log = testing::internal::GetCapturedStdout();
    }

    TempDir dir;
    AnimationParser parser;
    std::unique_ptr<Animation> animation;
    std::string log;
};

} // namespace

TEST(AnimationParser, WorkedExampleGivesFiveKeyframesFieldByField) {
    Parsed parsed(WORKED_EXAMPLE);
    EXPECT_TRUE(parsed.parser.isValid());
    EXPECT_EQ("", parsed.parser.getErrorMessage());
    EXPECT_EQ("Frames = 5\n", parsed.log);
    expectPoses(WORKED_POSES, parsed.animation.get());
    EXPECT_EQ(Animation::LINEAR, parsed.animation->getInterpolationType());
}

TEST(AnimationParser, MissingFileIsRefusedWithItsName) {
    TempDir dir;
    std::string name = dir.file("nothing.ani");
    AnimationParser parser(name);
    testing::internal::CaptureStdout();
    Animation* animation = parser.parse();
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ(nullptr, animation);
    EXPECT_FALSE(parser.isValid());
    EXPECT_EQ("Error while loading animation data\nFile '" + name + "' not found!\n",
              parser.getErrorMessage());
}

TEST(AnimationParser, LoadFileAloneFillsNothingButTheMessageForAMissingFile) {
    TempDir dir;
    AnimationParser parser(dir.file("a.ani"));
    EXPECT_TRUE(parser.isValid());
    EXPECT_FALSE(parser.loadFile(dir.file("b.ani")));
    EXPECT_FALSE(parser.isValid());
    EXPECT_EQ("Error while loading animation data\nFile '" + dir.file("b.ani") + "' not found!\n",
              parser.getErrorMessage());
    dir.write("c.ani", WORKED_EXAMPLE);
    EXPECT_TRUE(parser.loadFile(dir.file("c.ani")));
}

TEST(AnimationParser, DirectoryInPlaceOfTheFileCountsAsMissing) {
    TempDir dir;
    dir.write("folder.ani/inside", "x");
    AnimationParser parser(dir.file("folder.ani"));
    EXPECT_EQ(nullptr, parser.parse());
    EXPECT_FALSE(parser.isValid());
    EXPECT_EQ("Error while loading animation data\nFile '" + dir.file("folder.ani") +
                  "' not found!\n",
              parser.getErrorMessage());
}

TEST(AnimationParser, WrongFirstLineIsRefusedAsInvalidHeader) {
    Parsed parsed("KVLANI2\nkeyframes 1\npos 1 2 3\nrot 4 5\n");
    EXPECT_EQ(nullptr, parsed.animation);
    EXPECT_FALSE(parsed.parser.isValid());
    EXPECT_EQ(INVALID_HEADER_START + parsed.dir.file("path.ani") + "' have invalid header\n",
              parsed.parser.getErrorMessage());
    EXPECT_EQ("", parsed.log);
}

TEST(AnimationParser, EmptyFileHasAnInvalidHeader) {
    Parsed parsed("");
    EXPECT_EQ(nullptr, parsed.animation);
    EXPECT_FALSE(parsed.parser.isValid());
    EXPECT_EQ(INVALID_HEADER_START + parsed.dir.file("path.ani") + "' have invalid header\n",
              parsed.parser.getErrorMessage());
}

TEST(AnimationParser, HeaderIsOnlyTheFirstLineNotAWordOfIt) {
    Parsed parsed("KVLANI1 keyframes 1\npos 1 2 3\n");
    EXPECT_EQ(nullptr, parsed.animation);
    EXPECT_FALSE(parsed.parser.isValid());
}

TEST(AnimationParser, HeaderWithSurroundingBlanksIsAccepted) {
    Parsed parsed("  \tKVLANI1 \t \n" + WORKED_EXAMPLE.substr(8));
    EXPECT_TRUE(parsed.parser.isValid());
    expectPoses(WORKED_POSES, parsed.animation.get());
}

TEST(AnimationParser, CarriageReturnsAtLineEndsAreHarmless) {
    std::string text;
    for (char c : WORKED_EXAMPLE) {
        if (c == '\n') {
            text += '\r';
        }
        text += c;
    }
    Parsed parsed(text);
    EXPECT_TRUE(parsed.parser.isValid());
    EXPECT_EQ("Frames = 5\n", parsed.log);
    expectPoses(WORKED_POSES, parsed.animation.get());
}

TEST(AnimationParser, BlankLineBetweenKeyframesChangesNothing) {
    std::string text = "\nKVLANI1\n\nkeyframes 5\npos 0 0 10\nrot 0 0\n\n\npos 5 1 5\nrot 10 45\n"
                       "   \npos 10 2 0\nrot 10 90\npos 5 1 -5\n\nrot 0 135\npos 0 0 -10\n"
                       "rot 0 180\n\n";
    Parsed parsed(text);
    EXPECT_TRUE(parsed.parser.isValid());
    expectPoses(WORKED_POSES, parsed.animation.get());
}

TEST(AnimationParser, TwoBlanksBetweenFieldsDoNotMakeAnEmptyField) {
    Parsed parsed("KVLANI1\nkeyframes  2\npos  1   2  3\nrot 4  5\npos 6 7 8\nrot  9 10\n");
    EXPECT_EQ("Frames = 2\n", parsed.log);
    expectPoses({{1, 2, 3, 4, 5}, {6, 7, 8, 9, 10}}, parsed.animation.get());
}

TEST(AnimationParser, RotLineBeforeItsPosLineIsReadAsThePosition) {
    Parsed parsed("KVLANI1\nkeyframes 1\nrot 10 20\npos 1 2 3\n");
    EXPECT_TRUE(parsed.parser.isValid());
    // x 10, y 20, z from an empty token; the pos line gives pitch 1, heading 2.
    expectPoses({{10, 20, 0, 1, 2}}, parsed.animation.get());
}

TEST(AnimationParser, WordOnTheCountLineMayBeAnything) {
    Parsed parsed("KVLANI1\nframes 3\na 1 1 1\nb 1 2\nc 2 2 2\nd 3 4\ne 3 3 3\nf 5 6\n");
    EXPECT_EQ("Frames = 3\n", parsed.log);
    expectPoses({{1, 1, 1, 1, 2}, {2, 2, 2, 3, 4}, {3, 3, 3, 5, 6}}, parsed.animation.get());
}

TEST(AnimationParser, CountOfZeroOrBelowGivesAnAnimationWithoutKeyframes) {
    for (const std::string count : {"0", "-3"}) {
        Parsed parsed("KVLANI1\nkeyframes " + count + "\npos 1 2 3\nrot 4 5\n");
        EXPECT_TRUE(parsed.parser.isValid()) << count;
        ASSERT_NE(nullptr, parsed.animation) << count;
        EXPECT_EQ(0, parsed.animation->countKeyFrames()) << count;
        EXPECT_EQ("Frames = " + count + "\n", parsed.log);
    }
}

TEST(AnimationParser, FileEndingAfterTheHeaderGivesNoKeyframes) {
    Parsed parsed("KVLANI1\n");
    EXPECT_TRUE(parsed.parser.isValid());
    EXPECT_EQ("Frames = 0\n", parsed.log);
    ASSERT_NE(nullptr, parsed.animation);
    EXPECT_EQ(0, parsed.animation->countKeyFrames());
}

TEST(AnimationParser, MissingKeyframeLinesComeOutAsZeros) {
    Parsed parsed("KVLANI1\nkeyframes 3\npos 1 2 3\nrot 4 5\npos 6 7\n");
    EXPECT_TRUE(parsed.parser.isValid());
    expectPoses({{1, 2, 3, 4, 5}, {6, 7, 0, 0, 0}, {0, 0, 0, 0, 0}}, parsed.animation.get());
}

TEST(AnimationParser, BadNumbersReadAsZeroAndLeadingDigitsCount) {
    Parsed parsed("KVLANI1\nkeyframes x2\npos 1 2 3\nrot 4 5\n");
    EXPECT_EQ("Frames = 0\n", parsed.log);
    EXPECT_EQ(0, parsed.animation->countKeyFrames());
    Parsed numbers("KVLANI1\nkeyframes 1\npos abc 2.5xyz -\nrot 1e1 .5\n");
    expectPoses({{0, 2.5f, 0, 10, 0.5f}}, numbers.animation.get());
}

TEST(AnimationParser, ExtraLinesAfterTheLastKeyframeAreIgnored) {
    Parsed parsed(WORKED_EXAMPLE + "pos 99 99 99\nrot 99 99\n");
    expectPoses(WORKED_POSES, parsed.animation.get());
}

TEST(AnimationParser, HugeCountBeyondTheFileIsPaddedOnlyUpToTheLimit) {
    Parsed parsed("KVLANI1\nkeyframes 2000000000\npos 1 2 3\nrot 4 5\n");
    EXPECT_TRUE(parsed.parser.isValid());
    EXPECT_EQ("Frames = 2000000000\n", parsed.log);
    ASSERT_NE(nullptr, parsed.animation);
    EXPECT_EQ(AnimationParser::MAX_PADDED_KEYFRAMES, parsed.animation->countKeyFrames());
    expectPose({1, 2, 3, 4, 5}, parsed.animation->getKeyFrame(0), 0);
    expectPose({0, 0, 0, 0, 0},
               parsed.animation->getKeyFrame(AnimationParser::MAX_PADDED_KEYFRAMES - 1), -1);
}

TEST(AnimationParser, FileWithMoreKeyframesThanThePaddingLimitIsReadWhole) {
    const int count = AnimationParser::MAX_PADDED_KEYFRAMES + 3;
    std::string text = "KVLANI1\nkeyframes " + std::to_string(count) + "\n";
    for (int i = 0; i < count; i++) {
        text += "pos " + std::to_string(i % 1000) + " 0 0\nrot 0 " + std::to_string(i % 360) + "\n";
    }
    Parsed parsed(text);
    ASSERT_NE(nullptr, parsed.animation);
    ASSERT_EQ(count, parsed.animation->countKeyFrames());
    expectPose(
        {static_cast<float>((count - 1) % 1000), 0, 0, 0, static_cast<float>((count - 1) % 360)},
        parsed.animation->getKeyFrame(count - 1), count - 1);
}

TEST(AnimationParser, EachParseGivesANewAnimationToTheCaller) {
    TempDir dir;
    dir.write("a.ani", WORKED_EXAMPLE);
    AnimationParser parser(dir.file("a.ani"));
    testing::internal::CaptureStdout();
    std::unique_ptr<Animation> first(parser.parse());
    std::unique_ptr<Animation> second(parser.parse());
    testing::internal::GetCapturedStdout();
    ASSERT_NE(nullptr, first);
    ASSERT_NE(nullptr, second);
    EXPECT_NE(first.get(), second.get());
    expectPoses(WORKED_POSES, second.get());
}

TEST(AnimationParser, PrintedAnimationParsesBackToTheSameKeyframes) {
    Parsed original(WORKED_EXAMPLE);
    ASSERT_NE(nullptr, original.animation);
    original.animation->addKeyframe(new Keyframe());
    Vector<float, 3> odd;
    odd[0] = -0.125f;
    odd[1] = 1234.5f;
    odd[2] = 3.14159f;
    original.animation->addKeyframe(new Keyframe(odd, -89.75f, 359.5f));

    testing::internal::CaptureStdout();
    original.animation->print();
    std::string printed = testing::internal::GetCapturedStdout();
    Parsed again(printed);
    EXPECT_TRUE(again.parser.isValid());
    ASSERT_NE(nullptr, again.animation);
    ASSERT_EQ(original.animation->countKeyFrames(), again.animation->countKeyFrames());
    for (int i = 0; i < original.animation->countKeyFrames(); i++) {
        const Keyframe* a = original.animation->getKeyFrame(i);
        const Keyframe* b = again.animation->getKeyFrame(i);
        expectPose({a->getPosition()[0], a->getPosition()[1], a->getPosition()[2], a->getPitch(),
                    a->getHeading()},
                   b, i);
    }
    EXPECT_EQ("Frames = 7\n", again.log);
}

// Damaged versions of the worked example: every truncation, every single bit
// flip, and random multi-byte damage. Each parse either refuses the header or
// gives an animation, and never reads outside a buffer.
TEST(AnimationParser, TruncatedAndBitFlippedFilesNeverCrashTheParser) {
    std::vector<std::string> damaged;
    for (size_t length = 0; length <= WORKED_EXAMPLE.size(); length++) {
        damaged.push_back(WORKED_EXAMPLE.substr(0, length));
    }
    for (size_t i = 0; i < WORKED_EXAMPLE.size(); i++) {
        for (int bit = 0; bit < 8; bit++) {
            std::string text = WORKED_EXAMPLE;
            text[i] = static_cast<char>(text[i] ^ (1 << bit));
            damaged.push_back(text);
        }
    }
    std::srand(4711);
    for (int n = 0; n < 2000; n++) {
        std::string text = WORKED_EXAMPLE;
        int flips = 1 + std::rand() % 6;
        for (int f = 0; f < flips; f++) {
            size_t at = static_cast<size_t>(std::rand()) % text.size();
            text[at] = static_cast<char>(std::rand() % 256);
        }
        text.resize(static_cast<size_t>(std::rand()) % (text.size() + 1));
        damaged.push_back(text);
    }
    ASSERT_GT(damaged.size(), 3000u);

    TempDir dir;
    std::string name = dir.file("damaged.ani");
    int refused = 0;
    int parsed = 0;
    testing::internal::CaptureStdout();
    for (const std::string& text : damaged) {
        dir.write("damaged.ani", text);
        AnimationParser parser(name);
        std::unique_ptr<Animation> animation(parser.parse());
        if (animation == nullptr) {
            refused++;
            EXPECT_FALSE(parser.isValid());
            EXPECT_EQ(INVALID_HEADER_START + name + "' have invalid header\n",
                      parser.getErrorMessage());
        } else {
            parsed++;
            EXPECT_TRUE(parser.isValid());
            EXPECT_LE(animation->countKeyFrames(), AnimationParser::MAX_PADDED_KEYFRAMES);
            for (int i = 0; i < animation->countKeyFrames(); i++) {
                ASSERT_NE(nullptr, animation->getKeyFrame(i));
            }
            animation->next(0.3);
            animation->setInterpolationType(Animation::CATMULL_ROM);
            animation->next(0.7);
        }
    }
    testing::internal::GetCapturedStdout();
    EXPECT_GT(refused, 0);
    EXPECT_GT(parsed, 0);
}

// The production's camera path: a closed flight around the object at the
// origin, 6 to 10 units out, changing height, with small steps between
// keyframes and the camera aimed at the centre all the way.
TEST(AnimationParser, ProductionCameraPathIsASmoothFlightAroundTheOrigin) {
    AnimationParser parser(std::string(KVL_SOURCE_DIR) + "/resources/misc/camera.ani");
    testing::internal::CaptureStdout();
    std::unique_ptr<Animation> path(parser.parse());
    testing::internal::GetCapturedStdout();
    ASSERT_TRUE(parser.isValid()) << parser.getErrorMessage();
    ASSERT_NE(nullptr, path);
    ASSERT_GE(path->countKeyFrames(), 100);
    const double pi = 3.141592653589793;
    float lowest = 1e9f;
    float highest = -1e9f;
    for (int i = 0; i < path->countKeyFrames(); i++) {
        const Keyframe* k = path->getKeyFrame(i);
        Vector<float, 3> p = k->getPosition();
        float around = std::sqrt(p[0] * p[0] + p[2] * p[2]);
        EXPECT_GE(around, 6.0f) << "keyframe " << i;
        EXPECT_LE(around, 10.0f) << "keyframe " << i;
        lowest = std::min(lowest, p[1]);
        highest = std::max(highest, p[1]);
        // The camera looks along (sin h cos p, -sin p, -cos p cos h).
        double a = k->getPitch() * pi / 180.0;
        double b = k->getHeading() * pi / 180.0;
        double view[3] = {std::sin(b) * std::cos(a), -std::sin(a), -std::cos(a) * std::cos(b)};
        double length = std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]);
        double towardsCentre = -(view[0] * p[0] + view[1] * p[1] + view[2] * p[2]) / length;
        EXPECT_GT(towardsCentre, 0.99) << "keyframe " << i;
        if (i > 0) {
            const Keyframe* before = path->getKeyFrame(i - 1);
            Vector<float, 3> step = p - before->getPosition();
            EXPECT_LT(step.length(), 0.5f) << "keyframe " << i;
            EXPECT_LT(std::fabs(k->getHeading() - before->getHeading()), 5.0f) << "keyframe " << i;
            EXPECT_LT(std::fabs(k->getPitch() - before->getPitch()), 5.0f) << "keyframe " << i;
        }
    }
    EXPECT_GT(highest - lowest, 1.0f);
    const Keyframe* first = path->getKeyFrame(0);
    const Keyframe* last = path->getKeyFrame(path->countKeyFrames() - 1);
    EXPECT_LT((last->getPosition() - first->getPosition()).length(), 0.5f);
}
