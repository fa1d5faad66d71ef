#ifndef KVL_LOADERINWINDOWFIXTURE_H
#define KVL_LOADERINWINDOWFIXTURE_H

#include "support/GLTestWindow.h"
#include "support/LoaderWorkspace.h"

// A test of the loader in a workspace of its own, inside the test window
// rather than one the loader opens; the loader's pools are made up front.
class LoaderInWindowFixture : public GLTestWindow {
protected:
    void SetUp() override;
    void TearDown() override;

    LoaderWorkspace space;
    TempDir& directory = space.directory;
    ResourceLoader& loader = space.loader;
};

#endif
