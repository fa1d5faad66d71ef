#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

// Every picture, model, path, blob and piece of music the production ships
// is made by a tool, and the tools write the same bytes on every run: the
// assets remade into an empty directory are exactly the files of the
// repository, no more and no fewer.

namespace {

const char* const ASSET_FOLDERS[] = {"graphics", "objects", "misc", "music"};

std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::set<std::string> filesIn(const std::filesystem::path& folder) {
    std::set<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        if (entry.is_regular_file()) {
            names.insert(entry.path().filename().string());
        }
    }
    return names;
}

class ProductionAssets : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        remade = new TempDir();
        std::string command = "KVL_BUILD_DIR='" + std::string(KVL_BUILD_DIR) + "' '" +
                              std::string(KVL_SOURCE_DIR) + "/tools/make-assets.sh' '" +
                              remade->path() + "' > '" + remade->path() + "/log.txt' 2>&1";
        status = std::system(command.c_str());
    }
    static void TearDownTestSuite() {
        delete remade;
        remade = nullptr;
    }

    static void expectFolderRemadeExactly(const std::string& folder) {
        ASSERT_EQ(0, status) << contentsOf(std::filesystem::path(remade->path()) / "log.txt");
        std::filesystem::path shipped = std::filesystem::path(KVL_SOURCE_DIR) / "resources" / folder;
        std::filesystem::path made = std::filesystem::path(remade->path()) / folder;
        EXPECT_EQ(filesIn(shipped), filesIn(made)) << "in resources/" << folder;
        for (const std::string& name : filesIn(shipped)) {
            if (std::filesystem::exists(made / name)) {
                EXPECT_TRUE(contentsOf(shipped / name) == contentsOf(made / name))
                    << "resources/" << folder << "/" << name << " differs from what its tool makes";
            }
        }
    }

    static TempDir* remade;
    static int status;
};

TempDir* ProductionAssets::remade = nullptr;
int ProductionAssets::status = -1;

// One remake for all folders: each test runs in a process of its own, and the
// music alone takes seconds to make.
TEST_F(ProductionAssets, PicturesModelsPathsDataAndMusicAreRemadeByteForByte) {
    for (const char* folder : ASSET_FOLDERS) {
        expectFolderRemadeExactly(folder);
    }
}

} // namespace
