#ifndef KVL_FILE_H
#define KVL_FILE_H

#include <fstream>
#include <string>
#include <vector>

// A whole file in memory. Opening for reading (mode 0) copies every byte into
// the buffer; all reads then work on that copy through a little-endian cursor
// or as one string. The write side buffers bytes with put() and sends them out
// with write() or writeAs().
//
// Modes: 0 input, 1 append, 2 and 3 truncate, anything else input without
// loading. All are binary.
class File {
public:
    File(std::string path, int mode);
    File(const char* path, int mode);
    ~File();

    File(const File&) = delete;
    File& operator=(const File&) = delete;

    bool openFile(const char* path);
    bool exists() const;
    std::string getFilename() const;
    unsigned int getFileSize() const;

    int readInt();
    float readFloat();
    unsigned char readChar();
    std::string readString(int length);
    std::string readString();

    std::vector<char> get() const;
    std::vector<unsigned char> getUnsigned() const;
    std::string getAsString() const;
    std::vector<std::string> getAsLines() const;
    std::vector<int> getAsInt() const;

    void put(std::string text);
    void put(int value);
    void put(float value);
    void put(unsigned char value);

    bool write();
    bool writeAs(const char* path);

private:
    unsigned char byteAt(unsigned int index) const;
    unsigned int readUInt32();
    void putUInt32(unsigned int value);

    std::string filename;
    std::vector<char> data;
    std::fstream* stream;
    int mode;
    unsigned int size;
    unsigned int position;
    bool fileExists;
};

#endif
