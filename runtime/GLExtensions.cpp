#include "runtime/GLExtensions.h"

#include "script/StringTokenizer.h"

#include <GL/glew.h>

GLExtensions::GLExtensions() {
    const GLubyte* names = glGetString(GL_EXTENSIONS);
    if (names == nullptr) {
        return;
    }
    StringTokenizer tokens(reinterpret_cast<const char*>(names), " ");
    while (tokens.hasMoreTokens()) {
        extensions[tokens.getNext()] = true;
    }
}

bool GLExtensions::isSupported(std::string name) const {
    return extensions.find(name) != extensions.end();
}

void GLExtensions::addToChecklist(std::string name) { checklist.push_back(name); }

bool GLExtensions::isSupported() {
    bool result = true;
    for (const std::string& name : checklist) {
        if (!isSupported(name)) {
            missing.push_back(name);
            result = false;
        }
    }
    return result;
}

std::string GLExtensions::getErrorMessage() const {
    std::string text = "Error: Your OpenGL implementation is missing the following extensions :\n";
    for (const std::string& name : missing) {
        text += " - " + name + "\n";
    }
    return text;
}

std::string GLExtensions::toString() const {
    std::string text;
    for (const auto& entry : extensions) {
        text += entry.first + " ";
    }
    return text + "\n";
}
