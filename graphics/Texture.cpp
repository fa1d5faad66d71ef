#include "graphics/Texture.h"

#include "graphics/ScreenQuad.h"
#include "script/KVLUtils.h"

#include <GL/glew.h>

#include <cstdint>
#include <iostream>

Texture::Texture(std::string filename, unsigned int id)
    : id(id), filename(std::move(filename)), width(0), height(0), bpp(32), fileSize(0),
      type(GL_TEXTURE_2D), interpolation(GL_LINEAR), mipmapped(false) {}

Texture::Texture(int width, int height)
    : id(0), width(width), height(height), bpp(32), fileSize(0), type(GL_TEXTURE_2D),
      interpolation(GL_LINEAR), mipmapped(false) {
    glGenTextures(1, &id);
    glBindTexture(type, id);
    glTexParameterf(type, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameterf(type, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(type, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(type, GL_TEXTURE_WRAP_T, GL_REPEAT);
    glTexImage2D(type, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glBindTexture(type, 0);
}

Texture::~Texture() {
    std::cout << "Texture::ID(" << id << ") - deleted from graphics mem." << std::endl;
    glDeleteTextures(1, &id);
}

unsigned int Texture::getID() const {
    return id;
}

void Texture::setType(unsigned int type) {
    this->type = type;
}

unsigned int Texture::getType() const {
    return type;
}

void Texture::isMipmapped(bool mipmapped) {
    this->mipmapped = mipmapped;
}

bool Texture::isMipmapped() const {
    return mipmapped;
}

void Texture::setSize(int width, int height) {
    this->width = width;
    this->height = height;
}

int Texture::getWidth() const {
    return width;
}

int Texture::getHeight() const {
    return height;
}

void Texture::setBPP(int bpp) {
    this->bpp = bpp;
}

int Texture::getBPP() const {
    return bpp;
}

void Texture::setFileSize(int size) {
    fileSize = size;
}

int Texture::getFileSize() const {
    return fileSize;
}

void Texture::setInterpolation(unsigned int interpolation) {
    this->interpolation = interpolation;
}

void Texture::setFilename(std::string filename) {
    this->filename = std::move(filename);
}

std::string Texture::getFilename() const {
    return filename;
}

// 32-bit arithmetic that wraps on enormous sizes instead of overflowing.
int Texture::getMemorySize() const {
    uint32_t bits =
        static_cast<uint32_t>(width) * static_cast<uint32_t>(height) * static_cast<uint32_t>(bpp);
    return static_cast<int32_t>(bits) / 8;
}

void Texture::bind() {
    glEnable(type);
    glBindTexture(type, id);
    glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    if (mipmapped) {
        glTexParameteri(type, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
        glTexParameteri(type, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    } else {
        glTexParameteri(type, GL_TEXTURE_MIN_FILTER, static_cast<GLint>(interpolation));
        glTexParameteri(type, GL_TEXTURE_MAG_FILTER, static_cast<GLint>(interpolation));
    }
}

// The texture stays bound.
void Texture::release() {
    glDisable(type);
}

// Depth test, blending and colour are left as they are.
void Texture::drawQuadFS() {
    ScreenQuad::pushIdentities();
    bind();
    ScreenQuad::draw();
    glDisable(type);
    ScreenQuad::popIdentities();
}

// The alpha test stays enabled after the call, and the depth test ends
// enabled whatever it was before.
void Texture::drawQuadBlendFS(unsigned int src, unsigned int dst) {
    ScreenQuad::pushIdentities();
    glEnable(GL_BLEND);
    glBlendFunc(src, dst);
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_GREATER, 0);
    bind();
    glDisable(GL_DEPTH_TEST);
    ScreenQuad::draw();
    ScreenQuad::popIdentities();
    glEnable(GL_DEPTH_TEST);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_BLEND);
}

// The quote after the id is unbalanced; the report has always read so.
std::string Texture::toString() const {
    std::string text = "Texture {file='" + filename + "',id=" + KVLUtils::uint2string(id) +
                       "',size='" + KVLUtils::int2string(width) + "," +
                       KVLUtils::int2string(height) + "',bpp='" + KVLUtils::int2string(bpp) + "'";
    if (mipmapped) {
        text += " mipmapped ";
    }
    return text + "}\n";
}
