#include "images/ScenePictures.h"

std::vector<PictureTarget> titleScenePictures() {
    return {};
}
