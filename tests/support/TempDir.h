#ifndef KVL_TEMPDIR_H
#define KVL_TEMPDIR_H

#include <string>

// A fresh directory under the system's temporary directory, removed with
// everything in it when the object goes.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return root; }
    std::string file(const std::string& relative) const;
    // Writes a file below the directory, making the folders on the way.
    void write(const std::string& relative, const std::string& content) const;
    std::string read(const std::string& relative) const;
    // Copies a file or a folder of the source tree (relative to the
    // repository root) to the same place below this directory.
    void copyFromSource(const std::string& relative) const;

private:
    std::string root;
};

#endif
