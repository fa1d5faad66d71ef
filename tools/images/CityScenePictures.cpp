#include "images/ScenePictures.h"

std::vector<PictureTarget> cityScenePictures() {
    return {};
}
