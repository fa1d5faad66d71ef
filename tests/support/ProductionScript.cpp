#include "support/ProductionScript.h"

#include "support/TempDir.h"

namespace {

std::string block(const std::string& name, const std::string& body) {
    return body.empty() ? "" : name + " { " + body + " }\n";
}

std::string part(const std::string& text) {
    return text.empty() ? "" : text + "\n";
}

} // namespace

const std::string ProductionScript::PATH = "resources/scripts/demoscript.txt";

std::string ProductionScript::text() const {
    return header + "\n" + block("paths", paths) + block("system", system) +
           block("screen", screen) + block("sound", sound) + part(blocks) + part(effects) +
           (timeline.empty() ? "" : "timeline {\n" + timeline + "\n}\n");
}

void ProductionScript::writeTo(const TempDir& directory) const {
    directory.write(PATH, text());
}
