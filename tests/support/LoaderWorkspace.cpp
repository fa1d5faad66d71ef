#include "support/LoaderWorkspace.h"

#include "support/ProductionScript.h"
#include "support/StdoutCapture.h"

#include <GL/glew.h>

LoaderWorkspace::LoaderWorkspace() : directory(), loader(ProductionScript::PATH), previous() {}

void LoaderWorkspace::enter() {
    previous = std::filesystem::current_path();
    directory.copyFromSource("resources/definitions");
    std::filesystem::current_path(directory.path());
}

void LoaderWorkspace::leave() {
    if (!disposed) {
        logOf([this] { loader.dispose(); });
    }
    std::filesystem::current_path(previous);
}

void LoaderWorkspace::write(const std::string& text) const {
    directory.write(ProductionScript::PATH, text);
}

std::string LoaderWorkspace::dispose() {
    disposed = true;
    return logOf([this] { loader.dispose(); });
}

bool LoaderWorkspace::openScreen() {
    bool ready = false;
    logOf([&] {
        ready = loader.createDataPools() && loader.parseConfig() && loader.initScreen() &&
                glewInit() == GLEW_OK;
    });
    return ready;
}
