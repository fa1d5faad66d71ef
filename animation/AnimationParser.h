#ifndef KVL_ANIMATIONPARSER_H
#define KVL_ANIMATIONPARSER_H

#include <string>
#include <vector>

class Animation;

// Reads an animation file (first line "KVLANI1") into a new Animation.
// Lines are taken by position alone: after the header come the count line
// and two lines per keyframe, "pos x y z" and "rot pitch heading", whose
// first words are not checked. Failures are stored, not printed.
class AnimationParser {
public:
    explicit AnimationParser(std::string filename);
    ~AnimationParser();
    AnimationParser(const AnimationParser&) = delete;
    AnimationParser& operator=(const AnimationParser&) = delete;

    // A new Animation owned by the caller, or null.
    Animation* parse();
    bool loadFile(std::string name);
    bool isValid() const;
    std::string getErrorMessage() const;

    // A count beyond what a file holds is filled with empty keyframes up to
    // this many in all, so that a damaged count cannot exhaust memory.
    static constexpr int MAX_PADDED_KEYFRAMES = 65536;

private:
    Animation* animation;
    std::vector<std::string> lines;
    std::string filename;
    std::string contents;
    std::string errorMessage;
    bool valid;
};

#endif
