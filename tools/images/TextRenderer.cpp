#include "images/TextRenderer.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>

namespace {

const char* const FONT_DIRECTORY = "/usr/share/fonts/truetype/dejavu/";

std::string resolve(const std::string& fontFile) {
    if (fontFile.find('/') != std::string::npos) {
        return fontFile;
    }
    return FONT_DIRECTORY + fontFile;
}

// Code points of a UTF-8 string; a broken sequence counts as '?'.
std::vector<unsigned long> codePoints(const std::string& text) {
    std::vector<unsigned long> result;
    for (size_t i = 0; i < text.size();) {
        unsigned char lead = static_cast<unsigned char>(text[i]);
        int extra = -1;
        if (lead < 0x80) {
            extra = 0;
        } else if ((lead >> 5) == 6) {
            extra = 1;
        } else if ((lead >> 4) == 14) {
            extra = 2;
        } else if ((lead >> 3) == 30) {
            extra = 3;
        }
        if (extra < 0 || i + extra >= text.size()) {
            result.push_back('?');
            i++;
            continue;
        }
        unsigned long code = (extra == 0) ? lead : (lead & (0x3F >> extra));
        for (int k = 1; k <= extra; k++) {
            code = (code << 6) | (static_cast<unsigned char>(text[i + k]) & 0x3F);
        }
        result.push_back(code);
        i += extra + 1;
    }
    return result;
}

} // namespace

TextMask::TextMask(int width, int height)
    : width(width), height(height), coverage(static_cast<size_t>(width) * height, 0) {}

uint8_t TextMask::at(int x, int y) const {
    return coverage[static_cast<size_t>(y) * width + x];
}

TextRenderer::TextRenderer(const std::string& fontFile, int pixelSize)
    : library(nullptr), face(nullptr) {
    FT_Library ftLibrary = nullptr;
    if (FT_Init_FreeType(&ftLibrary) != 0) {
        errorMessage = "cannot start FreeType";
        return;
    }
    library = ftLibrary;
    std::string path = resolve(fontFile);
    FT_Face ftFace = nullptr;
    if (FT_New_Face(ftLibrary, path.c_str(), 0, &ftFace) != 0) {
        errorMessage = "cannot open the font " + path + " (Debian package fonts-dejavu-core)";
        return;
    }
    face = ftFace;
    FT_Set_Pixel_Sizes(ftFace, 0, static_cast<FT_UInt>(pixelSize));
}

TextRenderer::~TextRenderer() {
    if (face != nullptr) {
        FT_Done_Face(static_cast<FT_Face>(face));
    }
    if (library != nullptr) {
        FT_Done_FreeType(static_cast<FT_Library>(library));
    }
}

bool TextRenderer::isValid() const {
    return face != nullptr;
}

std::string TextRenderer::getErrorMessage() const {
    return errorMessage;
}

int TextRenderer::lineHeight() const {
    if (face == nullptr) {
        return 0;
    }
    return static_cast<int>(static_cast<FT_Face>(face)->size->metrics.height >> 6);
}

int TextRenderer::ascender() const {
    if (face == nullptr) {
        return 0;
    }
    return static_cast<int>(static_cast<FT_Face>(face)->size->metrics.ascender >> 6);
}

int TextRenderer::measure(const std::string& text) const {
    if (face == nullptr) {
        return 0;
    }
    FT_Face ftFace = static_cast<FT_Face>(face);
    long pen = 0;
    FT_UInt previous = 0;
    for (unsigned long code : codePoints(text)) {
        FT_UInt glyph = FT_Get_Char_Index(ftFace, code);
        if (previous != 0 && glyph != 0 && FT_HAS_KERNING(ftFace)) {
            FT_Vector kerning;
            FT_Get_Kerning(ftFace, previous, glyph, FT_KERNING_DEFAULT, &kerning);
            pen += kerning.x;
        }
        if (FT_Load_Glyph(ftFace, glyph, FT_LOAD_DEFAULT) == 0) {
            pen += ftFace->glyph->advance.x;
        }
        previous = glyph;
    }
    return static_cast<int>((pen + 63) >> 6);
}

void TextRenderer::draw(TextMask& mask, int x, int baseline, const std::string& text) const {
    if (face == nullptr) {
        return;
    }
    FT_Face ftFace = static_cast<FT_Face>(face);
    long pen = static_cast<long>(x) << 6;
    FT_UInt previous = 0;
    for (unsigned long code : codePoints(text)) {
        FT_UInt glyph = FT_Get_Char_Index(ftFace, code);
        if (previous != 0 && glyph != 0 && FT_HAS_KERNING(ftFace)) {
            FT_Vector kerning;
            FT_Get_Kerning(ftFace, previous, glyph, FT_KERNING_DEFAULT, &kerning);
            pen += kerning.x;
        }
        previous = glyph;
        if (FT_Load_Glyph(ftFace, glyph, FT_LOAD_RENDER) != 0) {
            continue;
        }
        FT_GlyphSlot slot = ftFace->glyph;
        const FT_Bitmap& bitmap = slot->bitmap;
        int left = static_cast<int>(pen >> 6) + slot->bitmap_left;
        int top = baseline - slot->bitmap_top;
        for (unsigned int row = 0; row < bitmap.rows; row++) {
            int y = top + static_cast<int>(row);
            if (y < 0 || y >= mask.height) {
                continue;
            }
            for (unsigned int column = 0; column < bitmap.width; column++) {
                int px = left + static_cast<int>(column);
                if (px < 0 || px >= mask.width) {
                    continue;
                }
                uint8_t value = bitmap.buffer[row * bitmap.pitch + column];
                uint8_t& cell = mask.coverage[static_cast<size_t>(y) * mask.width + px];
                cell = std::max(cell, value);
            }
        }
        pen += slot->advance.x;
    }
}

void TextRenderer::drawCentred(TextMask& mask, int centreX, int baseline,
                               const std::string& text) const {
    draw(mask, centreX - measure(text) / 2, baseline, text);
}
