#ifndef KVL_IMAGE_H
#define KVL_IMAGE_H

#include <cstdio>
#include <string>

// The pixels of one PNG file in main memory, rows stored bottom row first,
// which is the order OpenGL expects of a texture with its origin in the lower
// left corner. Lives only for the length of one texture upload.
//
// A file that opens but does not decode still "exists": size, depth and the
// pixels hold whatever the decoder reached (zero where it reached nothing).
class Image {
public:
    explicit Image(std::string path);
    explicit Image(const char* path);
    ~Image();
    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;

    // 1 when the file opened, 0 when it did not. The integer is passed along
    // and never read.
    int Load(const char* path, int);
    int LoadPNG(FILE* file, int);

    bool exists() const;
    int getFileSize() const;
    int getWidth() const;
    int getHeight() const;
    int getBpp() const;
    int getPixelSize() const;
    unsigned char* getData() const;
    // The bytes of the picture as floats, byte / 256, built on the first call
    // and kept; later changes of the pixels are not seen.
    float* getFloatData();

private:
    int width;
    int height;
    int bpp;
    int pixelSize;
    bool fileExists;
    int fileSize;
    unsigned char* data;
    float* floatData;
    std::string filename;
    // Bytes in data; the float copy never reads past them.
    size_t dataSize;
};

#endif
