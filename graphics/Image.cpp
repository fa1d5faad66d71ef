#include "graphics/Image.h"

#include <png.h>
#include <sys/stat.h>

#include <cstring>
#include <iostream>

namespace {

// Deflate cannot pack more than 1032 bytes into one; a header that promises
// more pixels than the file could hold at that rate belongs to a damaged
// file, and its block is not allocated.
const size_t MAX_DEFLATE_RATIO = 1032;

} // namespace

Image::Image(std::string path)
    : width(0), height(0), bpp(0), pixelSize(0), fileExists(false), fileSize(0), data(nullptr),
      floatData(nullptr), dataSize(0) {
    fileExists = (Load(path.c_str(), 1) == 1);
    filename = path;
}

Image::Image(const char* path) : Image(std::string(path != nullptr ? path : "")) {}

Image::~Image() {
    delete[] data;
    delete[] floatData;
}

int Image::Load(const char* path, int mode) {
    FILE* file = std::fopen(path, "rb");
    if (file == nullptr) {
        return 0;
    }
    // A directory opens for reading on this system, but it is no file.
    struct stat status;
    if (fstat(fileno(file), &status) == 0 && S_ISDIR(status.st_mode)) {
        std::fclose(file);
        return 0;
    }
    long start = std::ftell(file);
    std::fseek(file, 0, SEEK_END);
    fileSize = static_cast<int>(std::ftell(file) - start);
    std::rewind(file);
    LoadPNG(file, mode);
    // The decoder leaves the file open on every path, so it is closed here once.
    std::fclose(file);
    return 1;
}

// libpng leaves through longjmp on every decoding error, back into the
// setjmp branch below, so nothing between the two may need a destructor:
// the row buffer is a plain pointer, freed by hand on both ways out.
int Image::LoadPNG(FILE* file, int) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    if (png == nullptr) {
        std::cout << "LibPNG: Failed to create read structure for " << filename << std::endl;
    }
    png_infop info = png_create_info_struct(png);
    if (info == nullptr) {
        std::cout << "LibPNG: Failed to create info structure for " << filename << std::endl;
    }
    png_infop endInfo = png_create_info_struct(png);
    if (endInfo == nullptr) {
        std::cout << "LibPNG: Failed to create end info structure for " << filename << std::endl;
    }
    // Without the read and the info record there is nothing to decode with.
    if (png == nullptr || info == nullptr) {
        png_destroy_read_struct(&png, &info, &endInfo);
        return 0;
    }

    unsigned char* volatile rowBuffer = nullptr;
    if (setjmp(png_jmpbuf(png))) {
        delete[] rowBuffer;
        png_destroy_read_struct(&png, &info, &endInfo);
        return 0;
    }

    png_init_io(png, file);
    png_set_sig_bytes(png, 0);
    png_read_info(png, info);
    png_uint_32 pngWidth = 0;
    png_uint_32 pngHeight = 0;
    int bitDepth = 0;
    int colorType = 0;
    int interlace = 0;
    png_get_IHDR(png, info, &pngWidth, &pngHeight, &bitDepth, &colorType, &interlace, nullptr,
                 nullptr);
    width = static_cast<int>(pngWidth);
    height = static_cast<int>(pngHeight);
    // The pixel depth of the file, before any transform.
    bpp = png_get_channels(png, info) * bitDepth;
    pixelSize = bpp >> 3;

    bool transformed = false;
    if (colorType == PNG_COLOR_TYPE_PALETTE) {
        png_set_palette_to_rgb(png);
        transformed = true;
    }
    if (bitDepth == 16) {
        png_set_strip_16(png);
        transformed = true;
    }
    // Row length of the file as stored, before the transforms. For every
    // depth of whole bytes, row * height is width * height * (bpp / 8); for
    // the packed depths below 8 bits it is the block their rows need.
    size_t row = png_get_rowbytes(png, info);
    size_t total = row * pngHeight;
    if ((row + 1) * pngHeight > MAX_DEFLATE_RATIO * static_cast<size_t>(fileSize) + 1024) {
        png_destroy_read_struct(&png, &info, &endInfo);
        return 0;
    }
    delete[] data;
    delete[] floatData;
    floatData = nullptr;
    data = new unsigned char[total]();
    dataSize = total;

    // A palette row grows up to fourfold in decoding and a 16-bit row shrinks
    // to half: both are decoded into a buffer wide enough for any pixel
    // format, and the stored row length of the file is kept from it, so the
    // block is never overrun. Such pictures are never shown anyway.
    if (transformed) {
        rowBuffer = new unsigned char[static_cast<size_t>(pngWidth) * 8 + 8]();
    }
    for (long long r = static_cast<long long>(pngHeight) - 1; r >= 0; r--) {
        unsigned char* target = data + static_cast<size_t>(r) * row;
        if (rowBuffer == nullptr) {
            png_read_row(png, target, nullptr);
        } else {
            png_read_row(png, rowBuffer, nullptr);
            std::memcpy(target, rowBuffer, row);
        }
    }
    png_read_end(png, info);
    delete[] rowBuffer;
    rowBuffer = nullptr;
    png_destroy_read_struct(&png, &info, &endInfo);
    return 1;
}

bool Image::exists() const {
    return fileExists;
}

int Image::getFileSize() const {
    return fileSize;
}

int Image::getWidth() const {
    return width;
}

int Image::getHeight() const {
    return height;
}

int Image::getBpp() const {
    return bpp;
}

int Image::getPixelSize() const {
    return pixelSize;
}

unsigned char* Image::getData() const {
    return data;
}

float* Image::getFloatData() {
    if (floatData != nullptr) {
        return floatData;
    }
    size_t count =
        static_cast<size_t>(width) * static_cast<size_t>(height) * static_cast<size_t>(pixelSize);
    // A picture whose pixels were never allocated has no bytes to convert.
    if (count > dataSize) {
        count = dataSize;
    }
    floatData = new float[count];
    for (size_t i = 0; i < count; i++) {
        floatData[i] = static_cast<float>(data[i] * 0.00390625);
    }
    return floatData;
}
