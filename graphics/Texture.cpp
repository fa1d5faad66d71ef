#include "graphics/Texture.h"

#include "script/KVLUtils.h"

#include <GL/gl.h>

#include <iostream>

Texture::Texture(std::string filename, unsigned int id)
    : id(id), filename(std::move(filename)), width(0), height(0), bpp(32), fileSize(0),
      mipmapped(false) {}

Texture::~Texture() {
    std::cout << "Texture::ID(" << id << ") - deleted from graphics mem." << std::endl;
    glDeleteTextures(1, &id);
}

unsigned int Texture::getID() const {
    return id;
}

std::string Texture::getFilename() const {
    return filename;
}

void Texture::setSize(int width, int height) {
    this->width = width;
    this->height = height;
}

void Texture::setBPP(int bpp) {
    this->bpp = bpp;
}

void Texture::setFileSize(int size) {
    fileSize = size;
}

int Texture::getFileSize() const {
    return fileSize;
}

int Texture::getMemorySize() const {
    return width * height * bpp / 8;
}

std::string Texture::toString() const {
    std::string text = "Texture {file='" + filename + "',id=" + KVLUtils::uint2string(id) +
                       "',size='" + KVLUtils::int2string(width) + "," +
                       KVLUtils::int2string(height) + "',bpp='" + KVLUtils::int2string(bpp) + "'";
    if (mipmapped) {
        text += " mipmapped ";
    }
    return text + "}\n";
}
