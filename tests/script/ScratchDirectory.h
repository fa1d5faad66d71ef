#ifndef KVL_SCRATCHDIRECTORY_H
#define KVL_SCRATCHDIRECTORY_H

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <unistd.h>

// A fresh temporary directory for one test, removed with everything in it
// when the test ends.
class ScratchDirectory {
public:
    ScratchDirectory() {
        std::string pattern = (baseDirectory() / "kvl_script_XXXXXX").string();
        std::vector<char> buffer(pattern.begin(), pattern.end());
        buffer.push_back('\0');
        if (mkdtemp(buffer.data()) != nullptr) {
            directory = buffer.data();
        }
    }

    ~ScratchDirectory() {
        std::error_code ignored;
        if (!directory.empty()) {
            std::filesystem::remove_all(directory, ignored);
        }
    }

    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    bool isReady() const { return !directory.empty(); }

    std::string pathOf(const std::string& name) const { return (directory / name).string(); }

    std::string createFile(const std::string& name, const std::string& contents) const {
        std::string path = pathOf(name);
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out.write(contents.data(), static_cast<std::streamsize>(contents.size()));
        return path;
    }

    static std::string contentsOf(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

private:
    // Memory-backed when there is one: some tests create thousands of files,
    // and creating files on the machine's disk is slow.
    static std::filesystem::path baseDirectory() {
        if (std::getenv("TMPDIR") == nullptr && access("/dev/shm", W_OK | X_OK) == 0) {
            return "/dev/shm";
        }
        return std::filesystem::temp_directory_path();
    }

    std::filesystem::path directory;
};

#endif
