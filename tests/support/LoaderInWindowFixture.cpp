#include "support/LoaderInWindowFixture.h"

#include "support/StdoutCapture.h"

void LoaderInWindowFixture::SetUp() {
    GLTestWindow::SetUp();
    space.enter();
    logOf([this] { loader.createDataPools(); });
}

void LoaderInWindowFixture::TearDown() {
    space.leave();
    GLTestWindow::TearDown();
}
