#include "animation/AnimationParser.h"

#include "animation/Animation.h"
#include "animation/Keyframe.h"
#include "script/File.h"
#include "script/KVLUtils.h"
#include "script/StringTokenizer.h"
#include "script/StringUtils.h"

#include <algorithm>
#include <iostream>

namespace {

// The fields of a line after its first word.
class LineFields {
public:
    explicit LineFields(const std::string& line) : fields(line, " ") { fields.getNext(); }
    float nextFloat() { return KVLUtils::string2Float(fields.getNext()); }
    int nextInt() { return KVLUtils::string2Int(fields.getNext()); }

private:
    StringTokenizer fields;
};

} // namespace

AnimationParser::AnimationParser(std::string filename)
    : animation(nullptr), filename(std::move(filename)), valid(true) {}

AnimationParser::~AnimationParser() {}

Animation* AnimationParser::parse() {
    if (!loadFile(filename)) {
        return nullptr;
    }
    StringTokenizer fileLines(contents, "\n");
    std::string header = StringUtils::trim(fileLines.getNext());
    if (header != "KVLANI1") {
        errorMessage =
            "Error while loading animation data\nFile : '" + filename + "' have invalid header\n";
        valid = false;
        return nullptr;
    }
    int count = LineFields(fileLines.getNext()).nextInt();
    std::cout << "Frames = " << count << std::endl;

    // Missing lines read as empty ones; only a count far beyond the file is
    // cut, which no complete file ever meets.
    int held = (fileLines.countTokens() - 2 + 1) / 2;
    int made = std::min(count, std::max(held, MAX_PADDED_KEYFRAMES));

    animation = new Animation();
    for (int i = 0; i < made; i++) {
        Keyframe* keyframe = new Keyframe();
        LineFields place(fileLines.getNext());
        LineFields angles(fileLines.getNext());
        Vector<float, 3> position;
        position[0] = place.nextFloat();
        position[1] = place.nextFloat();
        position[2] = place.nextFloat();
        float pitch = angles.nextFloat();
        float heading = angles.nextFloat();
        keyframe->setPosition(position);
        keyframe->setPitch(pitch);
        keyframe->setHeading(heading);
        animation->addKeyframe(keyframe);
    }
    return animation;
}

bool AnimationParser::loadFile(std::string name) {
    File file(name, 0);
    if (!file.exists()) {
        errorMessage = "Error while loading animation data\nFile '" + name + "' not found!\n";
        valid = false;
        return false;
    }
    contents = file.getAsString();
    return true;
}

bool AnimationParser::isValid() const {
    return valid;
}

std::string AnimationParser::getErrorMessage() const {
    return errorMessage;
}
