#ifndef KVL_TOOLS_SCENEPICTURES_H
#define KVL_TOOLS_SCENEPICTURES_H

#include "images/Picture.h"

#include <vector>

// The pictures of the default production, one list per scene, each in a file
// of its own. imagegen writes them in this order.
std::vector<PictureTarget> basePictures();
std::vector<PictureTarget> logoScenePictures();
std::vector<PictureTarget> transitionPictures();
std::vector<PictureTarget> gridScenePictures();
std::vector<PictureTarget> sunScenePictures();
std::vector<PictureTarget> titleScenePictures();
std::vector<PictureTarget> cityScenePictures();
std::vector<PictureTarget> planetScenePictures();
std::vector<PictureTarget> creditsScenePictures();
std::vector<PictureTarget> endScenePictures();

#endif
