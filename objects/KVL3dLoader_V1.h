#ifndef KVL_KVL3DLOADER_V1_H
#define KVL_KVL3DLOADER_V1_H

#include <string>

class File;
class Material;
class O3d;
class O3dScene;

// Reader of the binary model format "{KVLB01}": a count and the material
// records, a count and the object records, all little-endian, without tags
// or lengths. Every object takes the scene's first material. The file is
// read from where its cursor stands, just behind the header.
class KVL3dLoader_V1 {
public:
    KVL3dLoader_V1();
    ~KVL3dLoader_V1();
    KVL3dLoader_V1(const KVL3dLoader_V1&) = delete;
    KVL3dLoader_V1& operator=(const KVL3dLoader_V1&) = delete;

    // The finished scene, which the caller owns.
    O3dScene* parse(File* file);
    O3d* parseObject();
    Material* parseMaterial();

    bool isValid() const;
    std::string getErrorMessage() const;
    // Writes every record to the log as it is read.
    void setTrace(bool value);

private:
    // Counts come from the file itself: a record is read only if it starts
    // inside the buffer, so a damaged count cannot make the loader loop or
    // allocate beyond the size of the file. A record cut short by the end
    // of the file reads zeros for its missing bytes.
    bool recordCanStart() const;
    int readInt();
    float readFloat();

    File* file;
    O3dScene* scene;
    std::string errorMessage;
    bool valid;
    bool trace;
    // Where the file's cursor stands, counted from the start of the file.
    unsigned long long position;
};

#endif
