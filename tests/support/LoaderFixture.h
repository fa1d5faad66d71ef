#ifndef KVL_LOADERFIXTURE_H
#define KVL_LOADERFIXTURE_H

#include "support/LoaderWorkspace.h"

#include <gtest/gtest.h>

#include <string>

// A test of the loader in a workspace of its own, where the loader opens the
// window itself; the player's statics and SDL are reset around each test.
class LoaderFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Writes the script, runs the steps up to the screen and then the data
    // blocks; their log comes back, their result in `result` and the ticks of
    // the progress bar before and after them in `ticksBefore`, `ticksAfter`.
    std::string loadDataFiles(const std::string& script);

    LoaderWorkspace space;
    TempDir& directory = space.directory;
    ResourceLoader& loader = space.loader;
    bool result = false;
    int ticksBefore = 0;
    int ticksAfter = 0;

private:
    int ticks() const;
};

#endif
