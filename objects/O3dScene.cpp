#include "objects/O3dScene.h"

#include <iostream>

O3dScene::O3dScene() {}

O3dScene::~O3dScene() {
    std::cout << " -> delete 0 root object(s) (with children)" << std::endl;
    std::cout << " -> delete 0 material(s)" << std::endl;
}

std::string O3dScene::toString() const {
    return "O3dScene{ objects in scene = 0  polygons = 0  vertices = 0 }\n";
}
