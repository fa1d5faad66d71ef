#include "objects/Material.h"

#include "graphics/Texture.h"
#include "script/KVLUtils.h"

#include <GL/glew.h>

namespace {

std::string rgbText(const Vector<float, 4>& c) {
    return KVLUtils::float2string(c[0]) + "," + KVLUtils::float2string(c[1]) + "," +
           KVLUtils::float2string(c[2]) + ";\n";
}

} // namespace

Material::Material()
    : name(), diffuse(vec4(0.75f, 0.75f, 0.75f, 1.0f)), emissive(vec4(0.0f, 0.0f, 0.0f, 1.0f)),
      specular(vec4(0.5f, 0.5f, 0.5f, 1.0f)), ambient(vec4(0.75f, 0.75f, 0.75f, 1.0f)),
      shinyness(10.0f), transparency(0.0f), texture1(nullptr), texture2(nullptr) {}

Material::~Material() {
    texture1 = nullptr;
    texture2 = nullptr;
}

void Material::setDiffuse(Vector<float, 4> c) {
    diffuse = c;
}

void Material::setDiffuse(float r, float g, float b) {
    diffuse = vec4(r, g, b, diffuse[3]);
}

void Material::setDiffuse(float r, float g, float b, float a) {
    diffuse = vec4(r, g, b, a);
}

void Material::setAmbience(Vector<float, 4> c) {
    ambient = c;
}

void Material::setAmbience(float r, float g, float b) {
    ambient = vec4(r, g, b, ambient[3]);
}

void Material::setAmbience(float r, float g, float b, float a) {
    ambient = vec4(r, g, b, a);
}

void Material::setEmissive(Vector<float, 4> c) {
    emissive = c;
}

void Material::setEmissive(float r, float g, float b) {
    emissive = vec4(r, g, b, emissive[3]);
}

void Material::setEmissive(float r, float g, float b, float a) {
    emissive = vec4(r, g, b, a);
}

void Material::setSpecular(Vector<float, 4> c) {
    specular = c;
}

void Material::setSpecular(float r, float g, float b) {
    specular = vec4(r, g, b, specular[3]);
}

void Material::setSpecular(float r, float g, float b, float a) {
    specular = vec4(r, g, b, a);
}

Vector<float, 4> Material::getDiffuse() const {
    return diffuse;
}

Vector<float, 4> Material::getAmbient() const {
    return ambient;
}

Vector<float, 4> Material::getEmissive() const {
    return emissive;
}

Vector<float, 4> Material::getSpecular() const {
    return specular;
}

void Material::setShinyness(int value) {
    shinyness = static_cast<float>(value);
}

float Material::getShinyness() const {
    return shinyness;
}

void Material::setTransparency(float value) {
    transparency = value;
}

float Material::getTransparency() const {
    return transparency;
}

void Material::setTexture1(Texture* texture) {
    texture1 = texture;
}

void Material::setTexture2(Texture* texture) {
    texture2 = texture;
}

Texture* Material::getTexture1() const {
    return texture1;
}

Texture* Material::getTexture2() const {
    return texture2;
}

bool Material::hasTexture() const {
    return texture1 != nullptr;
}

bool Material::hasMultiTexture() const {
    return texture1 != nullptr && texture2 != nullptr;
}

void Material::setName(std::string text) {
    name = text;
}

std::string Material::getName() const {
    return name;
}

void Material::drawMaterial() const {
    glMaterialfv(GL_FRONT, GL_AMBIENT, ambient.data());
    glMaterialfv(GL_FRONT, GL_DIFFUSE, diffuse.data());
    glMaterialfv(GL_FRONT, GL_SPECULAR, specular.data());
    glMaterialfv(GL_FRONT, GL_EMISSION, emissive.data());
    glMaterialf(GL_FRONT, GL_SHININESS, shinyness);
}

std::string Material::toString() const {
    std::string text = "Material {\n";
    text += "  diffuse = " + rgbText(diffuse);
    text += "  ambient = " + rgbText(ambient);
    text += "  specular = " + rgbText(specular);
    text += "  emission = " + rgbText(emissive);
    text += "  texture1 = ";
    text += (texture1 != nullptr) ? texture1->toString() : std::string("none\n");
    text += "  texture2 = ";
    text += hasMultiTexture() ? texture2->toString() : std::string("none");
    text += ";\n";
    text += "}\n";
    return text;
}
