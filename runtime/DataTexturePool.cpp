#include "runtime/DataTexturePool.h"

#include "graphics/Texture.h"
#include "script/KVLUtils.h"

#include <iostream>

namespace {

std::string sizeLine(const std::string& label, unsigned int bytes) {
    float megabytes = static_cast<float>(bytes * 0.0009765625 * 0.0009765625);
    return "    " + label + " : " + KVLUtils::float2string(megabytes) + " mb - " +
           KVLUtils::uint2string(bytes) + " bytes\n";
}

} // namespace

DataTexturePool::DataTexturePool() : numTextures(0) {}

DataTexturePool::~DataTexturePool() {
    std::cout << "[Dispose texturePool]" << std::endl;
    for (auto& entry : textures) {
        std::cout << " -> delete texture '" << entry.first << "'" << std::endl;
        delete entry.second;
    }
}

// The third argument lands in the texture's id, as the loader has always
// passed it.
void DataTexturePool::addTexture(const std::string& alias, const std::string& filename,
                                 unsigned int target) {
    numTextures++;
    textures[alias] = new Texture(filename, target);
    files[filename] = alias;
}

void DataTexturePool::addTexture(const std::string& alias, Texture* texture) {
    numTextures++;
    textures[alias] = texture;
    if (texture != nullptr) {
        files[texture->getFilename()] = alias;
    }
}

Texture* DataTexturePool::getTexture(const std::string& alias) const {
    auto entry = textures.find(alias);
    if (entry == textures.end()) {
        return nullptr;
    }
    return entry->second;
}

bool DataTexturePool::exist(const std::string& alias) const {
    return textures.find(alias) != textures.end();
}

bool DataTexturePool::isFileInPool(const std::string& filename) const {
    return files.find(filename) != files.end();
}

unsigned int DataTexturePool::getTextureIDbyAlias(const std::string& alias) {
    Texture* texture = textures[alias];
    return (texture != nullptr) ? texture->getID() : 0;
}

unsigned int DataTexturePool::getTextureIDbyFilename(const std::string& filename) {
    return getTextureIDbyAlias(files[filename]);
}

std::vector<unsigned int> DataTexturePool::getTexVector() const {
    std::vector<unsigned int> ids;
    for (const auto& entry : textures) {
        if (entry.second != nullptr) {
            ids.push_back(entry.second->getID());
        }
    }
    return ids;
}

std::map<std::string, std::string> DataTexturePool::getFilemap() const {
    return files;
}

unsigned int DataTexturePool::getTextureTotalFilesize() const {
    unsigned int total = 0;
    for (const auto& entry : textures) {
        if (entry.second != nullptr) {
            total += static_cast<unsigned int>(entry.second->getFileSize());
        }
    }
    return total;
}

unsigned int DataTexturePool::getTextureTotalMemsize() const {
    unsigned int total = 0;
    for (const auto& entry : textures) {
        if (entry.second != nullptr) {
            total += static_cast<unsigned int>(entry.second->getMemorySize());
        }
    }
    return total;
}

int DataTexturePool::size() const {
    return numTextures;
}

std::string DataTexturePool::toString() const {
    std::string text = "DataTexturePool {\n";
    text += sizeLine("total memory size", getTextureTotalMemsize());
    text += sizeLine("total file size", getTextureTotalFilesize());
    text += "    numTextures = " + KVLUtils::int2string(numTextures) + "\n";
    for (const auto& entry : textures) {
        text += "    " + entry.first + " = ";
        if (entry.second != nullptr) {
            text += entry.second->toString();
        }
    }
    return text + "}\n";
}
