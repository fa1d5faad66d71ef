#include "images/ScenePictures.h"

std::vector<PictureTarget> planetScenePictures() {
    return {};
}
