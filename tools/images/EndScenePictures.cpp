#include "images/ScenePictures.h"

std::vector<PictureTarget> endScenePictures() {
    return {};
}
