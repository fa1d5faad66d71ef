// imagegen: draws the default production's pictures and writes them as PNG
// files. Every picture is computed (text is set with FreeType in the DejaVu
// fonts), so a run writes the same files every time. Each file is read back
// through the player's own Image class before the tool reports it.
//
// The pictures are drawn in tools/images/, one file per scene.

#include "images/ScenePictures.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace {

std::vector<PictureTarget> allTargets() {
    std::vector<PictureTarget> all;
    for (auto list : {basePictures, logoScenePictures, transitionPictures, gridScenePictures,
                      sunScenePictures, titleScenePictures, cityScenePictures,
                      planetScenePictures, creditsScenePictures, endScenePictures}) {
        std::vector<PictureTarget> targets = list();
        all.insert(all.end(), targets.begin(), targets.end());
    }
    return all;
}

void printHelp(const std::vector<PictureTarget>& targets) {
    std::cout << "imagegen - draws the default production's pictures as PNG files\n"
                 "\n"
                 "Usage: imagegen <directory> [name]...\n"
                 "       imagegen --help\n"
                 "\n"
                 "Writes into <directory> (which must exist) the named pictures, or all of\n"
                 "them when none is named:\n";
    for (const PictureTarget& target : targets) {
        std::cout << "  " << target.name << "  " << target.file << "\n      "
                  << target.description << "\n";
    }
    std::cout << "Each file is read back through the player's decoder and checked pixel for\n"
                 "pixel. The output is the same on every run.\n"
                 "\n"
                 "Example (from the repository root, after building into build/):\n"
                 "  $ build/tools/imagegen resources/graphics pause\n"
                 "  imagegen: wrote resources/graphics/sysicon_pause.png (64x64, 32 bpp)\n"
                 "A script then loads it in its graphics block:\n"
                 "  graphics { sysicon_pause = sysicon_pause.png, GL_TEXTURE_2D; }\n";
}

} // namespace

int main(int argc, char** argv) {
    std::vector<PictureTarget> targets = allTargets();
    if (argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
        printHelp(targets);
        return 0;
    }
    if (argc < 2 || argv[1][0] == '-') {
        std::cerr << "Usage: imagegen <directory> [name]...   (imagegen --help for more)\n";
        return 2;
    }
    std::string directory = argv[1];
    if (!std::filesystem::is_directory(directory)) {
        std::cerr << "imagegen: no directory " << directory << "\n";
        return 1;
    }
    std::vector<std::string> names;
    for (int i = 2; i < argc; i++) {
        names.push_back(argv[i]);
    }
    for (const std::string& name : names) {
        bool known = std::any_of(targets.begin(), targets.end(),
                                 [&](const PictureTarget& target) { return name == target.name; });
        if (!known) {
            std::cerr << "imagegen: unknown picture '" << name << "' (see --help)\n";
            return 2;
        }
    }
    for (const PictureTarget& target : targets) {
        if (!names.empty() && std::find(names.begin(), names.end(), target.name) == names.end()) {
            continue;
        }
        std::string path = (std::filesystem::path(directory) / target.file).string();
        // Written under a temporary name first, so that a failure never leaves
        // a file behind that looks finished.
        std::string partial = path + ".part";
        Picture picture = target.draw();
        if (!savePng(partial, picture)) {
            std::remove(partial.c_str());
            std::cerr << "imagegen: cannot write " << path << "\n";
            return 1;
        }
        if (!verifyPng(partial, picture)) {
            std::remove(partial.c_str());
            std::cerr << "imagegen: " << path << " does not read back as drawn\n";
            return 1;
        }
        if (std::rename(partial.c_str(), path.c_str()) != 0) {
            std::remove(partial.c_str());
            std::cerr << "imagegen: cannot write " << path << "\n";
            return 1;
        }
        std::cout << "imagegen: wrote " << path << " (" << picture.width << "x" << picture.height
                  << ", " << picture.channels * 8 << " bpp)\n";
    }
    return 0;
}
