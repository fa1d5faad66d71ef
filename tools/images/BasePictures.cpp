// The pictures the player itself and the production's frame use: the pause
// symbol, the glowing logo and the neon grid.

#include "images/ScenePictures.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace {

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
    Picture picture(64, 64, 4);
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
    Picture picture(width, height, 4);
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
    Picture picture(size, size, 3);
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

} // namespace

std::vector<PictureTarget> basePictures() {
    return {
        {"pause", "sysicon_pause.png",
         "64x64 RGBA: two white bars with a soft dark outline; the pause symbol", pauseSymbol},
        {"logo", "kvllogo.png",
         "256x128 RGBA: \"KVL\" in a blocky pixel font, cyan to magenta, on transparency",
         logo},
        {"grid", "grid.png", "256x256 RGB: a seamless neon grid of 8x8 cells", grid},
    };
}
