#ifndef KVL_LIGHTSOURCE_H
#define KVL_LIGHTSOURCE_H

#include "graphics/Vector.h"

class Material;

// The one scene light, GL_LIGHT0. Its colours live in a Material of its own,
// which callers change through getMaterial(); update() hands them to GL.
// Building one touches no GL, so it can live as a static.
class Lightsource {
public:
    Lightsource();
    Lightsource(const Lightsource& other);
    Lightsource& operator=(const Lightsource& other);
    ~Lightsource();

    void setPos(Vector<float, 3> position);
    void setPos(float x, float y, float z);
    Vector<float, 3> getPos() const;
    Material* getMaterial() const;

    // Ambient, diffuse and position of GL_LIGHT0; the specular colour stays
    // GL's own.
    void update() const;
    void enable() const;
    void disable() const;

    // The fourth element of the position given to GL. Near zero but above
    // it: the light stands far out along the line through pos and falls in
    // almost parallel rays from that side, like a sun that the lit scenes
    // were tuned under. Zero would make it exactly directional, one a lamp
    // standing at pos; either changes the shading of every lit scene. The
    // value keeps pos / w, and its square, inside float range for any pos a
    // scene uses, so drivers that divide by w still get a finite direction.
    static constexpr float POSITION_W = 1.0e-6f;

private:
    Vector<float, 3> pos;
    Material* material;
};

#endif
