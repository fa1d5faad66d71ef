#include "support/TempDir.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kvltest-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("cannot create a temporary directory");
    }
    root = pattern;
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(root, ignored);
}

std::string TempDir::file(const std::string& relative) const { return root + "/" + relative; }

void TempDir::write(const std::string& relative, const std::string& content) const {
    std::filesystem::path target = file(relative);
    std::filesystem::create_directories(target.parent_path());
    std::ofstream out(target, std::ios::binary);
    out << content;
}

std::string TempDir::read(const std::string& relative) const {
    std::ifstream in(file(relative), std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

void TempDir::copyFromSource(const std::string& relative) const {
    std::filesystem::path from = std::filesystem::path(KVL_SOURCE_DIR) / relative;
    std::filesystem::path to = file(relative);
    std::filesystem::create_directories(to.parent_path());
    std::filesystem::copy(from, to,
                          std::filesystem::copy_options::recursive |
                              std::filesystem::copy_options::overwrite_existing);
}
