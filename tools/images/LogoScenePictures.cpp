#include "images/ScenePictures.h"

std::vector<PictureTarget> logoScenePictures() {
    return {};
}
