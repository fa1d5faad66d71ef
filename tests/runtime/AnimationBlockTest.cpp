#include "runtime/ResourceLoader.h"

#include "animation/Animation.h"
#include "animation/Keyframe.h"
#include "runtime/Data.h"
#include "runtime/DataAnimationPool.h"
#include "runtime/KVLDemosys.h"
#include "runtime/ProgressBar.h"
#include "support/LoaderFixture.h"
#include "support/LogLines.h"
#include "support/PlayerProcess.h"
#include "support/ProductionScript.h"
#include "support/StdoutCapture.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// The animation block read by the loader from a script in a directory of its
// own, the way the player reads it from its working directory.

namespace {

const std::string PATH_OF_THREE = "KVLANI1\nkeyframes 3\n"
                                  "pos 0 0 10\nrot 0 0\n"
                                  "pos 5 1 5\nrot 10 45\n"
                                  "pos 10 2 0\nrot 10 90\n";

const std::string PATH_OF_TWO = "KVLANI1\nkeyframes 2\npos 1 2 3\nrot 4 5\npos 6 7 8\nrot 9 10\n";

std::string script(const std::string& blocks, const std::string& misc = "resources/misc/") {
    ProductionScript production;
    production.paths =
        "definition = resources/definitions/; misc = " + misc + "; object = resources/objects/;";
    production.blocks = blocks;
    return production.text();
}

} // namespace

class AnimationBlock : public LoaderFixture {
protected:
    // Script, screen and the loader's data blocks; the lines of loadDataFiles
    // from the animation header on.
    std::vector<std::string> load(const std::string& text) {
        lastLog = loadDataFiles(text);
        std::vector<std::string> lines = splitLines(lastLog);
        int header = indexOf(lines, "[Loading Animation Data]");
        EXPECT_GE(header, 0);
        if (header < 0) {
            return {};
        }
        return std::vector<std::string>(lines.begin() + header, lines.end());
    }

    std::string lastLog;
};

TEST_F(AnimationBlock, ScriptWithoutAnAnimationBlockSaysNoAnimationDataAndLoadingGoesOn) {
    std::vector<std::string> lines = load(script(""));
    EXPECT_TRUE(result);
    EXPECT_TRUE(loader.isValid());
    EXPECT_EQ((std::vector<std::string>{"[Loading Animation Data]", "No animation data"}), lines);
    EXPECT_EQ(0, KVLDemosys::animationPool->size());
    EXPECT_EQ(ticksBefore, ticksAfter);
}

TEST_F(AnimationBlock, ScriptWithoutObjectsOrAnimationsPassesBothHeadersWithTheirNoLines) {
    load(script(""));
    EXPECT_TRUE(result);
    std::vector<std::string> lines = splitLines(lastLog);
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ((std::vector<std::string>{"[Loading 3D Objects]", "No objects",
                                        "[Loading Animation Data]", "No animation data"}),
              std::vector<std::string>(lines.end() - 4, lines.end()));
}

TEST_F(AnimationBlock, EachEntryLoadsFromTheMiscPathIntoThePoolUnderItsName) {
    directory.write("resources/misc/flight.ani", PATH_OF_THREE);
    directory.write("resources/misc/paths/short.ani", PATH_OF_TWO);
    std::vector<std::string> lines =
        load(script("animation { flight = flight.ani; hop = paths/short.ani; }\n"));
    EXPECT_TRUE(result) << loader.getErrorMessage();
    EXPECT_TRUE(loader.isValid());
    EXPECT_EQ(2, KVLDemosys::animationPool->size());
    Animation* flight = KVLDemosys::animationPool->getAnimation("flight");
    Animation* hop = KVLDemosys::animationPool->getAnimation("hop");
    ASSERT_NE(nullptr, flight);
    ASSERT_NE(nullptr, hop);
    EXPECT_EQ(3, flight->countKeyFrames());
    EXPECT_EQ(2, hop->countKeyFrames());
    EXPECT_EQ(45.0f, flight->getKeyFrame(1)->getHeading());
    EXPECT_EQ(8.0f, hop->getKeyFrame(1)->getPosition()[2]);
}

TEST_F(AnimationBlock, EntriesHaveNoLogLineOfTheirOwnBeyondTheParsersCount) {
    directory.write("resources/misc/flight.ani", PATH_OF_THREE);
    directory.write("resources/misc/short.ani", PATH_OF_TWO);
    std::vector<std::string> lines =
        load(script("animation { flight = flight.ani; hop = short.ani; }\n"));
    EXPECT_TRUE(result);
    EXPECT_EQ((std::vector<std::string>{"[Loading Animation Data]", "Frames = 3", "Frames = 2"}),
              lines);
}

TEST_F(AnimationBlock, EachAnimationFileGivesOneTickOfTheBar) {
    directory.write("resources/misc/flight.ani", PATH_OF_THREE);
    directory.write("resources/misc/short.ani", PATH_OF_TWO);
    load(script("animation { flight = flight.ani; hop = short.ani; again = flight.ani; }\n"));
    EXPECT_TRUE(result);
    EXPECT_EQ(3, ticksAfter - ticksBefore);
    EXPECT_EQ(3 + 4, loader.getProgressBar()->getMaxTicks());
}

TEST_F(AnimationBlock, FilesAreLookedUpUnderTheMiscPathOfTheScript) {
    directory.write("data/anims/flight.ani", PATH_OF_THREE);
    directory.write("resources/misc/flight.ani", PATH_OF_TWO);
    load(script("animation { flight = flight.ani; }\n", "data/anims/"));
    EXPECT_TRUE(result) << loader.getErrorMessage();
    ASSERT_NE(nullptr, KVLDemosys::animationPool->getAnimation("flight"));
    EXPECT_EQ(3, KVLDemosys::animationPool->getAnimation("flight")->countKeyFrames());
}

// Entries are read in the group's order of keys.
TEST_F(AnimationBlock, MissingFileStopsLoadingWithTheParsersMessageUnchanged) {
    directory.write("resources/misc/flight.ani", PATH_OF_THREE);
    std::vector<std::string> lines = load(
        script("animation { b_flight = flight.ani; c_lost = lost.ani; d_late = flight.ani; }\n"));
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("Error while loading animation data\nFile 'resources/misc/lost.ani' not found!\n",
              loader.getErrorMessage());
    EXPECT_EQ((std::vector<std::string>{"[Loading Animation Data]", "Frames = 3"}), lines);
    EXPECT_EQ(1, ticksAfter - ticksBefore);
    EXPECT_TRUE(KVLDemosys::animationPool->exist("b_flight"));
    EXPECT_FALSE(KVLDemosys::animationPool->exist("d_late"));
}

TEST_F(AnimationBlock, FileWithAWrongHeaderStopsLoadingWithTheParsersMessage) {
    directory.write("resources/misc/broken.ani", "KVLANI0\nkeyframes 1\npos 1 2 3\nrot 4 5\n");
    load(script("animation { broken = broken.ani; }\n"));
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("Error while loading animation data\nFile : 'resources/misc/broken.ani' have invalid "
              "header\n",
              loader.getErrorMessage());
    EXPECT_FALSE(KVLDemosys::animationPool->exist("broken"));
    EXPECT_EQ(ticksBefore, ticksAfter);
}

TEST_F(AnimationBlock, AnimationsLoadedBeforeAFailureStayInThePoolAndTheReport) {
    directory.write("resources/misc/flight.ani", PATH_OF_THREE);
    load(script("animation { flight = flight.ani; lost = lost.ani; }\n"));
    EXPECT_FALSE(result);
    ASSERT_TRUE(KVLDemosys::animationPool->exist("flight"));
    std::string report = logOf([this] { loader.print(); });
    EXPECT_NE(std::string::npos, report.find("AnimationPool {\n    flight = Animation { keyframes "
                                             "= 3 }\n}\n"))
        << report;
}

TEST_F(AnimationBlock, ProductionCameraPathLoadsThroughTheBlock) {
    directory.copyFromSource("resources/misc/camera.ani");
    load(script("animation { camera = camera.ani; }\n"));
    EXPECT_TRUE(result) << loader.getErrorMessage();
    ASSERT_NE(nullptr, KVLDemosys::animationPool->getAnimation("camera"));
    EXPECT_GT(KVLDemosys::animationPool->getAnimation("camera")->countKeyFrames(), 100);
}
