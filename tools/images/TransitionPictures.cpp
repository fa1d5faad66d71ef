#include "images/ScenePictures.h"

std::vector<PictureTarget> transitionPictures() {
    return {};
}
