#include "support/LoaderFixture.h"

#include "runtime/KVLDemosys.h"
#include "runtime/ProgressBar.h"
#include "support/StdoutCapture.h"

#include <SDL/SDL.h>

void LoaderFixture::SetUp() {
    KVLDemosys::resetState();
    space.enter();
}

void LoaderFixture::TearDown() {
    space.leave();
    SDL_Quit();
    KVLDemosys::resetState();
}

std::string LoaderFixture::loadDataFiles(const std::string& script) {
    space.write(script);
    EXPECT_TRUE(space.openScreen()) << loader.getErrorMessage();
    ticksBefore = ticks();
    std::string log = logOf([this] { result = loader.loadDataFiles(); });
    ticksAfter = ticks();
    return log;
}

int LoaderFixture::ticks() const {
    return loader.getProgressBar() ? loader.getProgressBar()->getTickCount() : -1;
}
