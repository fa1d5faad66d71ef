#ifndef KVL_ANIMATION_H
#define KVL_ANIMATION_H

#include <string>

class Animation {
public:
    Animation();
    ~Animation();

    std::string toString() const;
};

#endif
