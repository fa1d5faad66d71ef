#ifndef KVL_KVL3DPARSER_H
#define KVL_KVL3DPARSER_H

#include <string>
#include <vector>

class File;
class Material;
class O3d;
class O3dScene;
class Texture;

// Reader of the text model format "{KVLC01}": blocks "Material" and
// "Object" in braces, statements "key = value;" inside them. Materials are
// numbered in file order, and an object can only use materials that stand
// above it. Textures are loaded after the last block, through the texture
// pool, so a picture used by several materials is loaded once.
class KVL3dParser {
public:
    KVL3dParser();
    ~KVL3dParser();
    KVL3dParser(const KVL3dParser&) = delete;
    KVL3dParser& operator=(const KVL3dParser&) = delete;

    // The finished scene, which the caller owns, also when the parser is
    // left invalid by a texture that did not load.
    O3dScene* parse(File* file);
    void parseObject(std::string body);
    void parseMaterial(std::string body);
    // Null when the picture does not load; the parser is then invalid.
    Texture* loadTexture(std::string name);

    bool isValid() const;
    std::string getErrorMessage() const;

    // What has been read so far, before parse() hands it to the scene.
    std::vector<Material*> getMaterials() const;
    std::vector<O3d*> getObjects() const;
    std::vector<std::string> getTexture1Names() const;
    std::vector<std::string> getTexture2Names() const;
    std::vector<std::string> getTextureNames() const;

private:
    std::vector<Material*> materials;
    std::vector<O3d*> objects;
    O3dScene* scene;
    std::vector<std::string> texture1Names;
    std::vector<std::string> texture2Names;
    std::vector<std::string> textureNames;
    std::string filename;
    bool valid;
    std::string errorMessage;
};

#endif
