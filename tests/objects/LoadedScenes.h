#ifndef KVL_LOADEDSCENES_H
#define KVL_LOADEDSCENES_H

#include "objects/O3dScene.h"
#include "objects/ObjectParser.h"
#include "support/StdoutCapture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// The scenes a test read, freed by clear() or at the latest with the object;
// the log of their deletion is kept out of the test's output.
class LoadedScenes {
public:
    LoadedScenes() = default;
    ~LoadedScenes() { clear(); }
    LoadedScenes(const LoadedScenes&) = delete;
    LoadedScenes& operator=(const LoadedScenes&) = delete;

    // The scene, which may be null, is freed with the others.
    O3dScene* keep(O3dScene* scene) {
        if (scene != nullptr) {
            scenes.push_back(scene);
        }
        return scene;
    }

    // A model file read the way the player reads it, through the front end;
    // its log goes to `log` when one is given. The reader must stay valid.
    O3dScene* read(const std::string& path, std::string* log = nullptr) {
        O3dScene* scene = nullptr;
        bool valid = false;
        std::string message;
        std::string text = logOf([&] {
            ObjectParser parser(path);
            scene = parser.parse();
            valid = parser.isValid();
            message = parser.getErrorMessage();
        });
        EXPECT_TRUE(valid) << message;
        if (log != nullptr) {
            *log = text;
        }
        return keep(scene);
    }

    void clear() {
        for (O3dScene* scene : scenes) {
            logOf([scene] { delete scene; });
        }
        scenes.clear();
    }

private:
    std::vector<O3dScene*> scenes;
};

#endif
