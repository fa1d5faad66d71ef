#include "script/File.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <utility>

File::File(std::string path, int mode)
    : filename(std::move(path)), stream(nullptr), mode(mode), size(0), position(0),
      fileExists(false) {
    fileExists = openFile(filename.c_str());
    if (!fileExists) {
        delete stream;
        stream = nullptr;
    }
}

File::File(const char* path, int mode) : File(std::string(path != nullptr ? path : ""), mode) {}

File::~File() {
    if (stream != nullptr && stream->is_open()) {
        stream->close();
    }
    delete stream;
}

static std::ios_base::openmode streamModeFor(int mode) {
    switch (mode) {
    case 1:
        return std::ios_base::out | std::ios_base::app | std::ios_base::binary;
    case 2:
    case 3:
        return std::ios_base::out | std::ios_base::trunc | std::ios_base::binary;
    default:
        return std::ios_base::in | std::ios_base::binary;
    }
}

bool File::openFile(const char* path) {
    delete stream;
    std::string name = path != nullptr ? path : "";
    stream = new std::fstream(name, streamModeFor(mode));
    // A directory opens for input on this platform but is no file: its length
    // from seeking is meaningless and nothing can be read from it.
    std::error_code ignored;
    if (stream->is_open() && std::filesystem::is_directory(name, ignored)) {
        stream->close();
    }
    if (!stream->is_open()) {
        data.clear();
        size = 0;
        return false;
    }
    if (mode != 0) {
        data.clear();
        size = 0;
        return true;
    }
    std::streampos start = stream->tellg();
    stream->seekg(0, std::ios_base::end);
    std::streampos end = stream->tellg();
    std::streamoff length = (start >= 0 && end >= start) ? end - start : 0;
    stream->seekg(0, std::ios_base::beg);
    data.assign(static_cast<size_t>(length), 0);
    for (size_t i = 0; i < data.size(); i++) {
        int c = stream->get();
        if (c == std::char_traits<char>::eof()) {
            break;
        }
        data[i] = static_cast<char>(c);
    }
    size = static_cast<unsigned int>(data.size());
    return true;
}

bool File::exists() const {
    return fileExists;
}

std::string File::getFilename() const {
    return filename;
}

unsigned int File::getFileSize() const {
    return static_cast<unsigned int>(data.size());
}

// Binary loaders take their counts from the file itself, so a damaged file can
// send the cursor past the end; bytes there read as zero.
unsigned char File::byteAt(unsigned int index) const {
    if (index >= data.size()) {
        return 0;
    }
    return static_cast<unsigned char>(data[index]);
}

unsigned int File::readUInt32() {
    unsigned int value = 0;
    for (unsigned int i = 0; i < 4; i++) {
        value |= static_cast<unsigned int>(byteAt(position + i)) << (8 * i);
    }
    position += 4;
    return value;
}

int File::readInt() {
    return static_cast<int>(readUInt32());
}

float File::readFloat() {
    unsigned int bits = readUInt32();
    float value;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}

unsigned char File::readChar() {
    unsigned char value = byteAt(position);
    position += 1;
    return value;
}

// Past the end of the buffer the string is cut short rather than padded, so a
// damaged length cannot make a huge allocation; the cursor moves the full
// length all the same.
std::string File::readString(int length) {
    if (length < 1) {
        return "";
    }
    std::string text;
    if (position < data.size()) {
        size_t available = data.size() - position;
        size_t count = std::min(available, static_cast<size_t>(length));
        text.assign(data.begin() + position, data.begin() + position + count);
    }
    position += static_cast<unsigned int>(length);
    return text;
}

// Unnamed entries of binary object files are called "Object".
std::string File::readString() {
    unsigned char c = readChar();
    if (c == 0) {
        return "Object";
    }
    std::string text;
    while (c != 0) {
        text += static_cast<char>(c);
        c = readChar();
    }
    return text;
}

std::vector<char> File::get() const {
    return data;
}

std::vector<unsigned char> File::getUnsigned() const {
    return std::vector<unsigned char>(data.begin(), data.end());
}

std::string File::getAsString() const {
    return std::string(data.begin(), data.end());
}

// CR LF and LF end a line; a CR on its own is text.
std::vector<std::string> File::getAsLines() const {
    std::vector<std::string> lines;
    std::string line;
    for (size_t i = 0; i < data.size(); i++) {
        char c = data[i];
        line += c;
        if (c == '\r' && i + 1 < data.size() && data[i + 1] == '\n') {
            line.pop_back();
            lines.push_back(line);
            line.clear();
            i++;
        } else if (c == '\n') {
            line.pop_back();
            lines.push_back(line);
            line.clear();
        }
    }
    lines.push_back(line);
    return lines;
}

// The window moves one byte per element and each byte is sign-extended before
// it is combined. Both are long-standing behaviour that callers may rely on.
std::vector<int> File::getAsInt() const {
    std::vector<int> values(data.size(), 0);
    if (data.size() < 4) {
        return values;
    }
    size_t count = data.size() / 4;
    for (size_t i = 0; i < count; i++) {
        unsigned int value = 0;
        for (size_t k = 0; k < 4; k++) {
            int extended = static_cast<signed char>(data[i + k]);
            value |= static_cast<unsigned int>(extended) << (8 * k);
        }
        values[i] = static_cast<int>(value);
    }
    return values;
}

void File::put(std::string text) {
    data.insert(data.end(), text.begin(), text.end());
}

void File::putUInt32(unsigned int value) {
    for (unsigned int i = 0; i < 4; i++) {
        data.push_back(static_cast<char>((value >> (8 * i)) & 0xff));
    }
}

void File::put(int value) {
    putUInt32(static_cast<unsigned int>(value));
}

void File::put(float value) {
    unsigned int bits;
    std::memcpy(&bits, &value, sizeof(bits));
    putUInt32(bits);
}

void File::put(unsigned char value) {
    data.push_back(static_cast<char>(value));
}

// True means the stream was open, not that the bytes arrived.
bool File::write() {
    if (stream == nullptr || !stream->is_open()) {
        return false;
    }
    size = static_cast<unsigned int>(data.size());
    std::vector<char> buffer(data);
    stream->write(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    stream->close();
    return true;
}

// Writes as many bytes as the last open or write() recorded, not the buffer's
// current length.
bool File::writeAs(const char* path) {
    filename = path != nullptr ? path : "";
    std::ofstream out(filename, std::ios_base::out | std::ios_base::binary);
    if (!out.is_open()) {
        return false;
    }
    size_t count = std::min(static_cast<size_t>(size), data.size());
    out.write(data.data(), static_cast<std::streamsize>(count));
    out.close();
    return true;
}
