#include "images/Picture.h"

#include "graphics/Image.h"

#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

Picture::Picture(int width, int height, int channels)
    : width(width), height(height), channels(channels),
      pixels(static_cast<size_t>(width) * height * channels, 0) {}

uint8_t* Picture::at(int x, int y) {
    return &pixels[(static_cast<size_t>(y) * width + x) * channels];
}

const uint8_t* Picture::at(int x, int y) const {
    return &pixels[(static_cast<size_t>(y) * width + x) * channels];
}

Colour mix(const Colour& a, const Colour& b, double t) {
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

uint8_t toByte(double value) {
    return static_cast<uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255.0));
}

void put(Picture& picture, int x, int y, const Colour& colour, double alpha) {
    uint8_t* pixel = picture.at(x, y);
    pixel[0] = toByte(colour.r);
    pixel[1] = toByte(colour.g);
    pixel[2] = toByte(colour.b);
    if (picture.channels == 4) {
        pixel[3] = toByte(alpha);
    }
}

namespace {

// Kept apart from C++ objects: libpng leaves through longjmp on an error.
bool writePng(FILE* file, const Picture* picture, png_bytep* rows) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (png == nullptr || info == nullptr) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_init_io(png, file);
    int type = (picture->channels == 4) ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB;
    png_set_IHDR(png, info, picture->width, picture->height, 8, type, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 9);
    png_write_info(png, info);
    png_write_image(png, rows);
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

} // namespace

bool savePng(const std::string& path, const Picture& picture) {
    std::vector<png_bytep> rows(picture.height);
    for (int y = 0; y < picture.height; y++) {
        rows[y] = const_cast<png_bytep>(picture.at(0, y));
    }
    FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        return false;
    }
    bool written = writePng(file, &picture, rows.data());
    return (std::fclose(file) == 0) && written;
}

bool verifyPng(const std::string& path, const Picture& picture) {
    Image image(path);
    if (!image.exists() || image.getData() == nullptr || image.getWidth() != picture.width ||
        image.getHeight() != picture.height || image.getBpp() != picture.channels * 8) {
        return false;
    }
    size_t row = static_cast<size_t>(picture.width) * picture.channels;
    for (int y = 0; y < picture.height; y++) {
        // The player keeps the rows bottom first.
        const uint8_t* stored = image.getData() + (picture.height - 1 - y) * row;
        if (std::memcmp(stored, picture.at(0, y), row) != 0) {
            return false;
        }
    }
    return true;
}
