#include "images/ScenePictures.h"

std::vector<PictureTarget> sunScenePictures() {
    return {};
}
