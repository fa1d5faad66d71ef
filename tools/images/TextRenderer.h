#ifndef KVL_TOOLS_TEXTRENDERER_H
#define KVL_TOOLS_TEXTRENDERER_H

#include <cstdint>
#include <string>
#include <vector>

// Grey coverage of rendered text, 0 to 255, top row first.
struct TextMask {
    int width;
    int height;
    std::vector<uint8_t> coverage;

    TextMask(int width, int height);
    uint8_t at(int x, int y) const;
};

// Text set in a TrueType font of the system's font packages through FreeType,
// anti-aliased. The same font file and size give the same pixels on every run.
class TextRenderer {
public:
    // fontFile is a path, or a file name under the DejaVu fonts directory
    // (fonts-dejavu-core), e.g. "DejaVuSans-Bold.ttf".
    TextRenderer(const std::string& fontFile, int pixelSize);
    ~TextRenderer();
    TextRenderer(const TextRenderer&) = delete;
    TextRenderer& operator=(const TextRenderer&) = delete;

    bool isValid() const;
    std::string getErrorMessage() const;

    // Advance width of one line in pixels, kerning included.
    int measure(const std::string& text) const;
    // Distance from one baseline to the next, and from the top of a line to
    // its baseline.
    int lineHeight() const;
    int ascender() const;
    // Adds the line to the mask with its baseline at y and its pen starting
    // at x; where glyphs overlap the larger coverage wins. Pixels outside the
    // mask are dropped.
    void draw(TextMask& mask, int x, int baseline, const std::string& text) const;
    // The same, centred on column centreX.
    void drawCentred(TextMask& mask, int centreX, int baseline, const std::string& text) const;

private:
    void* library;
    void* face;
    std::string errorMessage;
};

#endif
