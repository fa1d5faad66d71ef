#ifndef KVL_TEXTURE_H
#define KVL_TEXTURE_H

#include <string>

// An OpenGL texture object and the facts about it. The texture owns its GL
// name and deletes it when it goes, so it must be built and destroyed while
// the GL context is current. It knows nothing of files: pictures come in
// through KVLDemosys::loadTexture, render targets through Texture(int, int).
class Texture {
public:
    // Wraps a GL name that exists already; the caller sets the size next.
    Texture(std::string filename, unsigned int id);
    // An empty RGBA render target of the given size.
    Texture(int width, int height);
    ~Texture();
    Texture(const Texture&) = delete;
    Texture& operator=(const Texture&) = delete;

    unsigned int getID() const;
    void setType(unsigned int type);
    unsigned int getType() const;
    void isMipmapped(bool mipmapped);
    bool isMipmapped() const;
    void setSize(int width, int height);
    int getWidth() const;
    int getHeight() const;
    void setBPP(int bpp);
    int getBPP() const;
    void setFileSize(int size);
    int getFileSize() const;
    // Takes effect at the next bind.
    void setInterpolation(unsigned int interpolation);
    void setFilename(std::string filename);
    std::string getFilename() const;
    // The base level only, also for a mipmapped texture.
    int getMemorySize() const;

    // Filters and the environment are set again on every bind, so no caller
    // has to keep track of them.
    void bind();
    void release();
    void drawQuadFS();
    void drawQuadBlendFS(unsigned int src, unsigned int dst);
    std::string toString() const;

private:
    unsigned int id;
    std::string filename;
    int width;
    int height;
    int bpp;
    int fileSize;
    unsigned int type;
    unsigned int interpolation;
    bool mipmapped;
};

#endif
