// imagegen: draws the default production's pictures and writes them as PNG files.
//
//   sysicon_pause.png  64 x 64 RGBA   the pause symbol: two white bars with a soft dark
//                                     outline on a transparent ground
//   kvllogo.png        256 x 128 RGBA "KVL" in a blocky 5 x 7 pixel font, a cyan to magenta
//                                     gradient with a near-white core and a faint halo on a
//                                     transparent ground, bright enough for a glow pass
//   grid.png           256 x 256 RGB  a neon grid of 8 x 8 cells that tiles seamlessly
//
// Every picture is computed, so a run writes the same files every time. Each file is read
// back through the player's own Image class before the tool reports it.

#include "graphics/Image.h"

#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

namespace {

struct Picture {
    int width;
    int height;
    int channels;                // 3 RGB, 4 RGBA
    std::vector<uint8_t> pixels; // top row first, as the file stores them
};

struct Colour {
    double r;
    double g;
    double b;
};

Colour mix(const Colour& a, const Colour& b, double t) {
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

uint8_t toByte(double value) {
    return static_cast<uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255.0));
}

void put(Picture& picture, int x, int y, const Colour& colour, double alpha) {
    uint8_t* pixel =
        &picture.pixels[(static_cast<size_t>(y) * picture.width + x) * picture.channels];
    pixel[0] = toByte(colour.r);
    pixel[1] = toByte(colour.g);
    pixel[2] = toByte(colour.b);
    if (picture.channels == 4) {
        pixel[3] = toByte(alpha);
    }
}

// ---------------------------------------------------------------- pause symbol

// Signed distance from (x, y) to a rectangle with rounded corners; negative inside.
double roundedBox(double x, double y, double left, double bottom, double right, double top,
                  double radius) {
    double cx = (left + right) / 2;
    double cy = (bottom + top) / 2;
    double hx = (right - left) / 2 - radius;
    double hy = (top - bottom) / 2 - radius;
    double qx = std::fabs(x - cx) - hx;
    double qy = std::fabs(y - cy) - hy;
    double outside = std::hypot(std::max(qx, 0.0), std::max(qy, 0.0));
    return outside + std::min(std::max(qx, qy), 0.0) - radius;
}

Picture pauseSymbol() {
    Picture picture{64, 64, 4, std::vector<uint8_t>(64 * 64 * 4, 0)};
    const double outline = 5.0;
    for (int y = 0; y < 64; y++) {
        for (int x = 0; x < 64; x++) {
            double px = x + 0.5;
            double py = y + 0.5;
            double d = std::min(roundedBox(px, py, 17, 13, 27, 51, 2.5),
                                roundedBox(px, py, 37, 13, 47, 51, 2.5));
            // Anti-aliased bar over a dark outline that fades out with the distance.
            double cover = std::clamp(0.5 - d, 0.0, 1.0);
            double shade = (d < outline) ? std::pow(1.0 - std::max(d, 0.0) / outline, 2.0) : 0.0;
            double alpha = std::max(cover, 0.8 * shade);
            Colour white{1, 1, 1};
            Colour dark{0.02, 0.02, 0.05};
            put(picture, x, y, mix(dark, white, cover), alpha);
        }
    }
    return picture;
}

// ---------------------------------------------------------------- logo

const char* const GLYPH_K[7] = {"X...X", "X..X.", "X.X..", "XX...", "X.X..", "X..X.", "X...X"};
const char* const GLYPH_V[7] = {"X...X", "X...X", "X...X", "X...X", "X...X", ".X.X.", "..X.."};
const char* const GLYPH_L[7] = {"X....", "X....", "X....", "X....", "X....", "X....", "XXXXX"};

Picture logo() {
    const int width = 256;
    const int height = 128;
    const int cell = 12;
    const char* const* glyphs[3] = {GLYPH_K, GLYPH_V, GLYPH_L};
    const int textWidth = (3 * 5 + 2) * cell;
    const int left = (width - textWidth) / 2;
    const int top = (height - 7 * cell) / 2;

    std::vector<uint8_t> mask(width * height, 0);
    for (int g = 0; g < 3; g++) {
        for (int row = 0; row < 7; row++) {
            for (int column = 0; column < 5; column++) {
                if (glyphs[g][row][column] != 'X') {
                    continue;
                }
                int x0 = left + (g * 6 + column) * cell;
                int y0 = top + row * cell;
                for (int y = y0; y < y0 + cell; y++) {
                    for (int x = x0; x < x0 + cell; x++) {
                        mask[y * width + x] = 1;
                    }
                }
            }
        }
    }
    // Distance to the nearest pixel of the other kind, up to a limit.
    const int reach = 12;
    auto distance = [&](int x, int y, uint8_t other) {
        double best = reach + 1;
        for (int dy = -reach; dy <= reach; dy++) {
            for (int dx = -reach; dx <= reach; dx++) {
                int sx = x + dx;
                int sy = y + dy;
                bool outsidePicture = sx < 0 || sy < 0 || sx >= width || sy >= height;
                uint8_t kind = outsidePicture ? 0 : mask[sy * width + sx];
                if (kind == other) {
                    best = std::min(best, std::hypot(dx, dy));
                }
            }
        }
        return best;
    };

    const Colour cyan{0.0, 0.85, 1.0};
    const Colour magenta{1.0, 0.2, 0.85};
    const Colour white{1, 1, 1};
    Picture picture{width, height, 4, std::vector<uint8_t>(width * height * 4, 0)};
    for (int y = 0; y < height; y++) {
        for (int x = 0; x < width; x++) {
            double across = std::clamp((x - left) / static_cast<double>(textWidth), 0.0, 1.0);
            double down = std::clamp((y - top) / (7.0 * cell), 0.0, 1.0);
            Colour base = mix(mix(cyan, magenta, across), white, 0.15 * (1.0 - down));
            if (mask[y * width + x] != 0) {
                // The stroke brightens towards its middle: the core stays near white.
                double core = std::clamp((distance(x, y, 0) - 2.0) / 4.0, 0.0, 1.0);
                put(picture, x, y, mix(base, white, 0.75 * core), 1.0);
            } else {
                double halo = distance(x, y, 1);
                double alpha = (halo <= reach) ? 0.55 * std::pow(1.0 - halo / reach, 2.0) : 0.0;
                put(picture, x, y, alpha > 0 ? base : Colour{0, 0, 0}, alpha);
            }
        }
    }
    return picture;
}

// ---------------------------------------------------------------- grid

// Distance from v to the nearest multiple of period, on a ring of length size.
double toLine(double v, double period) {
    double offset = std::fmod(v, period);
    return std::min(offset, period - offset);
}

Picture grid() {
    const int size = 256;
    const double major = 32.0;
    const double minor = 8.0;
    const Colour ground{0.03, 0.01, 0.09};
    const Colour cyan{0.1, 0.9, 1.0};
    const Colour magenta{1.0, 0.15, 0.8};
    Picture picture{size, size, 3, std::vector<uint8_t>(size * size * 3, 0)};
    for (int y = 0; y < size; y++) {
        for (int x = 0; x < size; x++) {
            double px = x + 0.5;
            double py = y + 0.5;
            double dx = toLine(px, major);
            double dy = toLine(py, major);
            // A line of about two pixels with a glow around it; faint lines between.
            auto neon = [](double d) { return std::exp(-d * d / 1.2) + 0.35 * std::exp(-d / 3.0); };
            double vertical = neon(dx) + 0.12 * std::exp(-toLine(px, minor) * 2.0);
            double horizontal = neon(dy) + 0.12 * std::exp(-toLine(py, minor) * 2.0);
            Colour c = ground;
            c.r += cyan.r * vertical + magenta.r * horizontal;
            c.g += cyan.g * vertical + magenta.g * horizontal;
            c.b += cyan.b * vertical + magenta.b * horizontal;
            // Where lines cross they burn white.
            double cross = std::min(vertical, horizontal);
            c = mix(c, Colour{1, 1, 1}, std::clamp(cross - 0.3, 0.0, 0.7));
            put(picture, x, y, c, 1.0);
        }
    }
    return picture;
}

// ---------------------------------------------------------------- files

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
    png_set_IHDR(png, info, picture->width, picture->height, 8,
                 picture->channels == 4 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 9);
    png_write_info(png, info);
    png_write_image(png, rows);
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

bool save(const std::string& path, const Picture& picture) {
    std::vector<png_bytep> rows(picture.height);
    for (int y = 0; y < picture.height; y++) {
        rows[y] = const_cast<png_bytep>(
            &picture.pixels[static_cast<size_t>(y) * picture.width * picture.channels]);
    }
    FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        return false;
    }
    bool written = writePng(file, &picture, rows.data());
    return (std::fclose(file) == 0) && written;
}

// Reads the file back as the player will and compares it with what was drawn.
bool verify(const std::string& path, const Picture& picture) {
    Image image(path);
    if (!image.exists() || image.getData() == nullptr || image.getWidth() != picture.width ||
        image.getHeight() != picture.height || image.getBpp() != picture.channels * 8) {
        return false;
    }
    size_t row = static_cast<size_t>(picture.width) * picture.channels;
    for (int y = 0; y < picture.height; y++) {
        // The player keeps the rows bottom first.
        const uint8_t* stored = image.getData() + (picture.height - 1 - y) * row;
        if (std::memcmp(stored, &picture.pixels[y * row], row) != 0) {
            return false;
        }
    }
    return true;
}

struct Target {
    const char* name;
    const char* file;
    std::function<Picture()> draw;
};

const std::vector<Target>& targets() {
    static const std::vector<Target> all = {
        {"pause", "sysicon_pause.png", pauseSymbol},
        {"logo", "kvllogo.png", logo},
        {"grid", "grid.png", grid},
    };
    return all;
}

void printHelp() {
    std::cout << "imagegen - draws the default production's pictures as PNG files\n"
                 "\n"
                 "Usage: imagegen <directory> [pause|logo|grid]...\n"
                 "       imagegen --help\n"
                 "\n"
                 "Writes into <directory> (which must exist) the named pictures, or all three\n"
                 "when none is named:\n"
                 "  pause  sysicon_pause.png  64x64 RGBA: two white bars with a soft dark\n"
                 "                            outline; the player's pause symbol\n"
                 "  logo   kvllogo.png        256x128 RGBA: \"KVL\" in a blocky pixel font, cyan\n"
                 "                            to magenta with a bright core, on transparency\n"
                 "  grid   grid.png           256x256 RGB: a seamless neon grid of 8x8 cells\n"
                 "Each file is read back through the player's decoder and checked pixel for\n"
                 "pixel. The output is the same on every run.\n"
                 "\n"
                 "Example (from the repository root, after building into build/):\n"
                 "  $ build/tools/imagegen resources/graphics\n"
                 "  imagegen: wrote resources/graphics/sysicon_pause.png (64x64, 32 bpp)\n"
                 "  imagegen: wrote resources/graphics/kvllogo.png (256x128, 32 bpp)\n"
                 "  imagegen: wrote resources/graphics/grid.png (256x256, 24 bpp)\n"
                 "A script then loads them in its graphics block:\n"
                 "  graphics { sysicon_pause = sysicon_pause.png; logo = kvllogo.png; }\n";
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
        printHelp();
        return 0;
    }
    if (argc < 2 || argv[1][0] == '-') {
        std::cerr << "Usage: imagegen <directory> [pause|logo|grid]...   (imagegen --help for "
                     "more)\n";
        return 2;
    }
    std::string directory = argv[1];
    if (!std::filesystem::is_directory(directory)) {
        std::cerr << "imagegen: no directory " << directory << "\n";
        return 1;
    }
    std::vector<std::string> names;
    for (int i = 2; i < argc; i++) {
        names.push_back(argv[i]);
    }
    for (const std::string& name : names) {
        bool known = std::any_of(targets().begin(), targets().end(),
                                 [&](const Target& target) { return name == target.name; });
        if (!known) {
            std::cerr << "imagegen: unknown picture '" << name << "' (pause, logo or grid)\n";
            return 2;
        }
    }
    for (const Target& target : targets()) {
        if (!names.empty() && std::find(names.begin(), names.end(), target.name) == names.end()) {
            continue;
        }
        std::string path = (std::filesystem::path(directory) / target.file).string();
        Picture picture = target.draw();
        if (!save(path, picture)) {
            std::cerr << "imagegen: cannot write " << path << "\n";
            return 1;
        }
        if (!verify(path, picture)) {
            std::cerr << "imagegen: " << path << " does not read back as drawn\n";
            return 1;
        }
        std::cout << "imagegen: wrote " << path << " (" << picture.width << "x" << picture.height
                  << ", " << picture.channels * 8 << " bpp)\n";
    }
    return 0;
}
