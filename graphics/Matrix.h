#ifndef KVL_MATRIX_H
#define KVL_MATRIX_H

#include <ostream>
#include <string>

// Sixteen floats column by column, the order glMultMatrixf reads.
class Matrix {
public:
    Matrix();

    // An index outside 0..15 reaches the first element.
    float& operator[](int i);
    const float& operator[](int i) const;

    float* data();
    const float* data() const;

    // "Matrix {", one line per group of four elements, "}" and an empty line.
    std::string toString() const;
    void print() const;

private:
    void write(std::ostream& out) const;
    static int inRange(int i);

    float values[16];
};

#endif
