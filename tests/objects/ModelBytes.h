#ifndef KVL_MODELBYTES_H
#define KVL_MODELBYTES_H

#include <cstdint>
#include <cstring>
#include <string>

// A binary model file built record by record, little-endian, starting with
// its header "{KVLB01}". Unlike KVL3dWriter it writes whatever it is told,
// counts that do not match and records cut short included.
class ModelBytes {
public:
    ModelBytes() : data("{KVLB01}") {}

    ModelBytes& name(const std::string& s) {
        data += s;
        data += '\0';
        return *this;
    }
    ModelBytes& i32(int32_t value) {
        uint32_t bits = static_cast<uint32_t>(value);
        for (int i = 0; i < 4; i++) {
            data += static_cast<char>((bits >> (8 * i)) & 0xff);
        }
        return *this;
    }
    ModelBytes& f32(float value) {
        uint32_t bits;
        std::memcpy(&bits, &value, sizeof(bits));
        return i32(static_cast<int32_t>(bits));
    }
    ModelBytes& colour(float r, float g, float b, float a) { return f32(r).f32(g).f32(b).f32(a); }
    // A material of a red diffuse colour between dim ambient and grey
    // specular light.
    ModelBytes& material(const std::string& text, float red, float shine = 10.0f) {
        name(text).colour(0.1f, 0.1f, 0.1f, 1.0f).colour(red, 0.0f, 0.0f, 1.0f);
        return colour(0.5f, 0.5f, 0.5f, 1.0f).colour(0.0f, 0.0f, 0.0f, 1.0f).f32(shine);
    }
    ModelBytes& vertex(float x, float y, float z, float u, float v) {
        return f32(x).f32(y).f32(z).f32(u).f32(v);
    }
    // Three vertices and one triangle, moved by dx along x.
    ModelBytes& triangle(float dx) {
        i32(3).vertex(dx, 0, 0, 0, 0).vertex(dx + 1, 0, 0, 1, 0).vertex(dx, 1, 0, 0, 1);
        return i32(1).i32(0).i32(1).i32(2);
    }

    std::string data;
};

#endif
