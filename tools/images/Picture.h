#ifndef KVL_TOOLS_PICTURE_H
#define KVL_TOOLS_PICTURE_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// A picture as imagegen draws it: 8-bit RGB or RGBA, top row first, as the
// PNG file stores it.
struct Picture {
    int width;
    int height;
    int channels; // 3 RGB, 4 RGBA
    std::vector<uint8_t> pixels;

    Picture(int width, int height, int channels);
    uint8_t* at(int x, int y);
    const uint8_t* at(int x, int y) const;
};

struct Colour {
    double r;
    double g;
    double b;
};

Colour mix(const Colour& a, const Colour& b, double t);
uint8_t toByte(double value);
// Writes one pixel; the alpha is ignored by an RGB picture.
void put(Picture& picture, int x, int y, const Colour& colour, double alpha);

// One file that imagegen can write: its name on the command line, its file
// name, a line for the help text and the drawing.
struct PictureTarget {
    std::string name;
    std::string file;
    std::string description;
    std::function<Picture()> draw;
};

// False when the file cannot be written.
bool savePng(const std::string& path, const Picture& picture);
// Reads the file back through the player's decoder and compares it with what
// was drawn.
bool verifyPng(const std::string& path, const Picture& picture);

#endif
