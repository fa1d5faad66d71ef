#include "images/ScenePictures.h"

std::vector<PictureTarget> gridScenePictures() {
    return {};
}
