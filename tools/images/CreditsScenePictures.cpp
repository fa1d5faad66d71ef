#include "images/ScenePictures.h"

std::vector<PictureTarget> creditsScenePictures() {
    return {};
}
