#ifndef KVL_LOADERWORKSPACE_H
#define KVL_LOADERWORKSPACE_H

#include "runtime/ResourceLoader.h"
#include "support/TempDir.h"

#include <filesystem>
#include <string>

// The working directory of one loader test: a directory of its own with the
// production's definition files, and the loader on the script in it. The
// loader reads its files by relative paths, as the player does from its
// working directory, so the test runs inside the directory.
class LoaderWorkspace {
public:
    LoaderWorkspace();
    LoaderWorkspace(const LoaderWorkspace&) = delete;
    LoaderWorkspace& operator=(const LoaderWorkspace&) = delete;

    // Makes the directory the working directory.
    void enter();
    // Disposes of the loader, unless dispose() did, and goes back to the
    // directory of before.
    void leave();
    // Writes the script.
    void write(const std::string& text) const;
    // The log of the loader's disposal.
    std::string dispose();
    // The loader's steps before its data blocks: pools, script, screen and
    // GLEW, their log dropped. False when one of them fails.
    bool openScreen();

    TempDir directory;
    ResourceLoader loader;
    bool disposed = false;

private:
    std::filesystem::path previous;
};

#endif
