#ifndef KVL_MATERIAL_H
#define KVL_MATERIAL_H

#include "graphics/Vector.h"

#include <string>

class Texture;

// Surface colours of an object, handed to GL by drawMaterial(). The textures
// belong to the texture pool; a material only points at them.
class Material {
public:
    Material();
    ~Material();

    void setDiffuse(Vector<float, 4> colour);
    void setDiffuse(float r, float g, float b);
    void setDiffuse(float r, float g, float b, float a);
    void setAmbience(Vector<float, 4> colour);
    void setAmbience(float r, float g, float b);
    void setAmbience(float r, float g, float b, float a);
    void setEmissive(Vector<float, 4> colour);
    void setEmissive(float r, float g, float b);
    void setEmissive(float r, float g, float b, float a);
    void setSpecular(Vector<float, 4> colour);
    void setSpecular(float r, float g, float b);
    void setSpecular(float r, float g, float b, float a);

    Vector<float, 4> getDiffuse() const;
    Vector<float, 4> getAmbient() const;
    Vector<float, 4> getEmissive() const;
    Vector<float, 4> getSpecular() const;

    void setShinyness(int value);
    float getShinyness() const;
    void setTransparency(float value);
    float getTransparency() const;

    void setTexture1(Texture* texture);
    void setTexture2(Texture* texture);
    Texture* getTexture1() const;
    Texture* getTexture2() const;
    bool hasTexture() const;
    bool hasMultiTexture() const;

    void setName(std::string text);
    std::string getName() const;

    void drawMaterial() const;
    std::string toString() const;

private:
    std::string name;
    Vector<float, 4> diffuse;
    Vector<float, 4> emissive;
    Vector<float, 4> specular;
    Vector<float, 4> ambient;
    float shinyness;
    float transparency;
    Texture* texture1;
    Texture* texture2;
};

#endif
