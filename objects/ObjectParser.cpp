#include "objects/ObjectParser.h"

#include "objects/KVL3dLoader_V1.h"
#include "objects/KVL3dParser.h"
#include "objects/O3dScene.h"
#include "script/File.h"

#include <iostream>
#include <sstream>
#include <utility>

namespace {

// A scene left behind by a failed parse goes without the lines its
// destructor would add to the log.
void deleteQuietly(O3dScene* scene) {
    std::ostringstream sink;
    std::streambuf* previous = std::cout.rdbuf(sink.rdbuf());
    delete scene;
    std::cout.rdbuf(previous);
}

} // namespace

ObjectParser::ObjectParser(std::string filename)
    : filename(std::move(filename)), filetype(), file(nullptr),
      errorMessage("ObjectParser : unknown"), valid(true) {
    std::cout << "ObjectParser::ObjectParser()" << std::endl;
    file = new File(this->filename, 0);
    bool found = file->exists();
    if (!found) {
        errorMessage = "ObjectParser: '" + this->filename + "' not found!";
        std::cout << errorMessage << std::endl;
        valid = false;
    }
    // A missing file has no bytes to read: its header is empty.
    std::string header = found ? file->readString(8) : "";
    std::cout << "Header = '" << header << "'" << std::endl;
    if (header == "{KVLC01}") {
        filetype = "KVL_ASCII_01";
    } else if (header == "{KVLB01}") {
        filetype = "KVL_BINARY_01";
    } else if (found) {
        // A missing file keeps its own message.
        valid = false;
        errorMessage = "Unsupported format\nObject file : '" + this->filename + "'\n" +
                       "Unknown header : " + this->filename + "\n";
        std::cout << errorMessage << std::endl;
    }
    std::cout << "Filetype = " << filetype << std::endl;
    std::cout << "ObjectParser::ObjectParser() - END" << std::endl;
}

ObjectParser::~ObjectParser() {
    delete file;
}

O3dScene* ObjectParser::parse() {
    if (filetype == "KVL_ASCII_01") {
        return parseText();
    }
    if (filetype == "KVL_BINARY_01") {
        return parseBinary();
    }
    std::cout << "ObjectParser::parse() - NULL" << std::endl;
    return nullptr;
}

O3dScene* ObjectParser::parseText() {
    if (!valid) {
        return nullptr;
    }
    std::cout << "ObjectParser::parseKVL()" << std::endl;
    KVL3dParser parser;
    O3dScene* scene = parser.parse(file);
    if (parser.isValid()) {
        std::cout << "ObjectParser::parseKVL_01() returning " << scene << std::endl;
        return scene;
    }
    errorMessage = parser.getErrorMessage();
    std::cout << "Error" << std::endl;
    valid = false;
    deleteQuietly(scene);
    return nullptr;
}

O3dScene* ObjectParser::parseBinary() {
    if (!valid) {
        return nullptr;
    }
    std::cout << "ObjectParser::loadKVL()" << std::endl;
    KVL3dLoader_V1 loader;
    O3dScene* scene = loader.parse(file);
    if (loader.isValid()) {
        std::cout << "ObjectParser::loadKVL_01() returning " << scene << std::endl;
        return scene;
    }
    errorMessage = loader.getErrorMessage();
    std::cout << "Error" << std::endl;
    valid = false;
    deleteQuietly(scene);
    return nullptr;
}

bool ObjectParser::isValid() const {
    return valid;
}

std::string ObjectParser::getErrorMessage() const {
    return errorMessage;
}

std::string ObjectParser::getFiletype() const {
    return filetype;
}
