#ifndef KVL_OBJECTPARSER_H
#define KVL_OBJECTPARSER_H

#include <string>

class File;
class O3dScene;

// Front end of the model readers: opens a model file, tells the text and the
// binary format apart by the first eight bytes and hands the file to the
// reader of that format. The caller owns the scene that parse() returns.
class ObjectParser {
public:
    explicit ObjectParser(std::string filename);
    ~ObjectParser();
    ObjectParser(const ObjectParser&) = delete;
    ObjectParser& operator=(const ObjectParser&) = delete;

    // Null when the file is missing, of an unknown kind, or could not be read.
    O3dScene* parse();
    bool isValid() const;
    std::string getErrorMessage() const;
    // "KVL_ASCII_01", "KVL_BINARY_01" or empty.
    std::string getFiletype() const;

private:
    O3dScene* parseText();
    O3dScene* parseBinary();

    std::string filename;
    std::string filetype;
    File* file;
    std::string errorMessage;
    bool valid;
};

#endif
