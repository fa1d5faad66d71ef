#ifndef KVL_O3DSCENE_H
#define KVL_O3DSCENE_H

#include <string>

class O3dScene {
public:
    O3dScene();
    ~O3dScene();

    std::string toString() const;
};

#endif
