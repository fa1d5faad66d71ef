#include "support/PngWriter.h"

#include <png.h>

#include <fstream>

namespace {

void appendBytes(png_structp png, png_bytep bytes, png_size_t length) {
    auto* out = static_cast<std::vector<uint8_t>*>(png_get_io_ptr(png));
    out->insert(out->end(), bytes, bytes + length);
}

void noFlush(png_structp) {}

int channelsOf(int colorType) {
    switch (colorType) {
    case PNG_COLOR_TYPE_RGB:
        return 3;
    case PNG_COLOR_TYPE_RGB_ALPHA:
        return 4;
    case PNG_COLOR_TYPE_GRAY_ALPHA:
        return 2;
    default:
        return 1;
    }
}

std::vector<uint16_t> widen(const std::vector<uint8_t>& bytes) {
    return std::vector<uint16_t>(bytes.begin(), bytes.end());
}

// Kept apart from the C++ objects of encode(): libpng leaves through longjmp
// on an error, which must not skip any destructor.
bool writePng(std::vector<uint8_t>* file, int width, int height, const PngWriter::Options& options,
              png_bytep* rows, png_colorp colours, int colourCount, png_bytep alphas,
              int alphaCount) {
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
    png_set_write_fn(png, file, appendBytes, noFlush);
    png_set_IHDR(png, info, width, height, options.bitDepth, options.colorType,
                 options.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (options.colorType == PNG_COLOR_TYPE_PALETTE) {
        png_set_PLTE(png, info, colours, colourCount);
        if (alphaCount > 0) {
            png_set_tRNS(png, info, alphas, alphaCount, nullptr);
        }
    }
    png_write_info(png, info);
    if (options.bitDepth < 8) {
        png_set_packing(png);
    }
    if (options.interlaced) {
        png_set_interlace_handling(png);
    }
    png_write_image(png, rows);
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

} // namespace

std::vector<uint8_t> PngWriter::encode(int width, int height, const Options& options,
                                       const std::vector<uint16_t>& samples) {
    std::vector<uint8_t> file;
    int channels = channelsOf(options.colorType);
    int bytesPerSample = (options.bitDepth == 16) ? 2 : 1;
    size_t rowLength = static_cast<size_t>(width) * channels * bytesPerSample;
    // One byte per sample below 8 bits: png_set_packing packs them.
    std::vector<uint8_t> pixels(rowLength * height, 0);
    for (size_t i = 0; i < samples.size() && i * bytesPerSample < pixels.size(); i++) {
        if (bytesPerSample == 2) {
            pixels[2 * i] = static_cast<uint8_t>(samples[i] >> 8);
            pixels[2 * i + 1] = static_cast<uint8_t>(samples[i] & 0xff);
        } else {
            pixels[i] = static_cast<uint8_t>(samples[i]);
        }
    }
    std::vector<png_bytep> rows(height);
    for (int y = 0; y < height; y++) {
        rows[y] = pixels.data() + rowLength * y;
    }
    std::vector<png_color> colours(options.palette.size() / 3);
    for (size_t i = 0; i < colours.size(); i++) {
        colours[i] = {options.palette[3 * i], options.palette[3 * i + 1],
                      options.palette[3 * i + 2]};
    }
    std::vector<png_byte> alphas(options.transparency.begin(), options.transparency.end());

    if (!writePng(&file, width, height, options, rows.data(), colours.data(),
                  static_cast<int>(colours.size()), alphas.data(),
                  static_cast<int>(alphas.size()))) {
        file.clear();
    }
    return file;
}

std::vector<uint8_t> PngWriter::rgb(int width, int height, const std::vector<uint8_t>& pixels) {
    return encode(width, height, {PNG_COLOR_TYPE_RGB, 8, false, {}, {}}, widen(pixels));
}

std::vector<uint8_t> PngWriter::rgba(int width, int height, const std::vector<uint8_t>& pixels) {
    return encode(width, height, {PNG_COLOR_TYPE_RGB_ALPHA, 8, false, {}, {}}, widen(pixels));
}

std::vector<uint8_t> PngWriter::grey(int width, int height, const std::vector<uint8_t>& pixels) {
    return encode(width, height, {PNG_COLOR_TYPE_GRAY, 8, false, {}, {}}, widen(pixels));
}

std::vector<uint8_t> PngWriter::greyAlpha(int width, int height,
                                          const std::vector<uint8_t>& pixels) {
    return encode(width, height, {PNG_COLOR_TYPE_GRAY_ALPHA, 8, false, {}, {}}, widen(pixels));
}

std::vector<uint8_t> PngWriter::rgb16(int width, int height, const std::vector<uint16_t>& samples) {
    return encode(width, height, {PNG_COLOR_TYPE_RGB, 16, false, {}, {}}, samples);
}

std::vector<uint8_t> PngWriter::rgba16(int width, int height,
                                       const std::vector<uint16_t>& samples) {
    return encode(width, height, {PNG_COLOR_TYPE_RGB_ALPHA, 16, false, {}, {}}, samples);
}

std::vector<uint8_t> PngWriter::palette(int width, int height, const std::vector<uint8_t>& palette,
                                        const std::vector<uint8_t>& indices, int bitDepth,
                                        const std::vector<uint8_t>& transparency) {
    return encode(width, height, {PNG_COLOR_TYPE_PALETTE, bitDepth, false, palette, transparency},
                  widen(indices));
}

bool PngWriter::save(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(out);
}
