#ifndef KVL_TEXTURE_H
#define KVL_TEXTURE_H

#include <string>

class Texture {
public:
    Texture(std::string filename, unsigned int id);
    ~Texture();

    unsigned int getID() const;
    std::string getFilename() const;
    void setSize(int width, int height);
    void setBPP(int bpp);
    void setFileSize(int size);
    int getFileSize() const;
    int getMemorySize() const;
    std::string toString() const;

private:
    unsigned int id;
    std::string filename;
    int width;
    int height;
    int bpp;
    int fileSize;
    bool mipmapped;
};

#endif
