#ifndef KVL_PNGWRITER_H
#define KVL_PNGWRITER_H

#include <cstdint>
#include <string>
#include <vector>

// Encodes small PNG files for tests with libpng. Pixels are given the way
// the file stores them: top row first, rows packed without padding, samples
// of 16-bit pictures as numbers (written big-endian, as PNG wants).
class PngWriter {
public:
    struct Options {
        int colorType;   // PNG_COLOR_TYPE_*: 0 grey, 2 RGB, 3 palette, 4 grey+alpha, 6 RGBA
        int bitDepth;    // 1, 2, 4, 8 or 16 as the colour type allows
        bool interlaced; // Adam7
        std::vector<uint8_t> palette;      // RGB triples, for the palette type
        std::vector<uint8_t> transparency; // tRNS alpha per palette entry
    };

    // The bytes of a PNG file. `samples` holds one value per channel and
    // pixel, or per pixel index for a palette picture (packed by the writer
    // for depths below 8).
    static std::vector<uint8_t> encode(int width, int height, const Options& options,
                                       const std::vector<uint16_t>& samples);

    static std::vector<uint8_t> rgb(int width, int height, const std::vector<uint8_t>& pixels);
    static std::vector<uint8_t> rgba(int width, int height, const std::vector<uint8_t>& pixels);
    static std::vector<uint8_t> grey(int width, int height, const std::vector<uint8_t>& pixels);
    static std::vector<uint8_t> greyAlpha(int width, int height,
                                          const std::vector<uint8_t>& pixels);
    static std::vector<uint8_t> rgb16(int width, int height, const std::vector<uint16_t>& samples);
    static std::vector<uint8_t> rgba16(int width, int height, const std::vector<uint16_t>& samples);
    // One index per pixel into `palette` (RGB triples); `transparency` gives
    // an alpha to the first entries when it is not empty.
    static std::vector<uint8_t> palette(int width, int height, const std::vector<uint8_t>& palette,
                                        const std::vector<uint8_t>& indices, int bitDepth = 8,
                                        const std::vector<uint8_t>& transparency = {});

    // Writes bytes to a file; false when the file cannot be written.
    static bool save(const std::string& path, const std::vector<uint8_t>& bytes);
};

#endif
