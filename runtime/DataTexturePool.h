#ifndef KVL_DATATEXTUREPOOL_H
#define KVL_DATATEXTUREPOOL_H

#include "runtime/DataPool.h"

#include <map>
#include <string>
#include <vector>

class Texture;

// Textures by alias, and for each file the alias it was loaded under last.
// size() counts the adds.
class DataTexturePool : public DataPool {
public:
    DataTexturePool();
    ~DataTexturePool() override;
    DataTexturePool(const DataTexturePool&) = delete;
    DataTexturePool& operator=(const DataTexturePool&) = delete;

    // Both forms replace a texture stored under the alias without deleting it.
    void addTexture(const std::string& alias, const std::string& filename, unsigned int target);
    void addTexture(const std::string& alias, Texture* texture);
    Texture* getTexture(const std::string& alias) const;
    bool exist(const std::string& alias) const;
    bool isFileInPool(const std::string& filename) const;
    // Both enter the names they are asked for, as map indexing does; callers
    // ask only for names that are there.
    unsigned int getTextureIDbyAlias(const std::string& alias);
    unsigned int getTextureIDbyFilename(const std::string& filename);
    std::vector<unsigned int> getTexVector() const;
    std::map<std::string, std::string> getFilemap() const;
    unsigned int getTextureTotalFilesize() const;
    unsigned int getTextureTotalMemsize() const;
    int size() const override;
    std::string toString() const override;

private:
    std::map<std::string, Texture*> textures;
    std::map<std::string, std::string> files;
    int numTextures;
};

#endif
