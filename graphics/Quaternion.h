#ifndef KVL_QUATERNION_H
#define KVL_QUATERNION_H

#include "graphics/Matrix.h"

// A rotation as w, x, y, z; the default is the identity.
class Quaternion {
public:
    Quaternion();
    Quaternion(float w, float x, float y, float z);

    float getW() const;
    float getX() const;
    float getY() const;
    float getZ() const;

    // Hamilton's product: this rotation on the left.
    Quaternion operator*(const Quaternion& other) const;

    // The rotation as a matrix for glMultMatrixf; the translation part is zero.
    Matrix getMatrix() const;

private:
    float w;
    float x;
    float y;
    float z;
};

#endif
