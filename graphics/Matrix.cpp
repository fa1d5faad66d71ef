#include "graphics/Matrix.h"

#include <iostream>
#include <sstream>

Matrix::Matrix() {
    for (int i = 0; i < 16; i++) {
        values[i] = 0.0f;
    }
}

float& Matrix::operator[](int i) {
    return values[inRange(i)];
}

const float& Matrix::operator[](int i) const {
    return values[inRange(i)];
}

float* Matrix::data() {
    return values;
}

const float* Matrix::data() const {
    return values;
}

std::string Matrix::toString() const {
    std::ostringstream out;
    write(out);
    return out.str();
}

void Matrix::print() const {
    write(std::cout);
}

// std::endl, so that each line of the trace reaches the log as it is written.
void Matrix::write(std::ostream& out) const {
    out << "Matrix {" << std::endl;
    for (int group = 0; group < 4; group++) {
        const float* v = values + group * 4;
        out << "  [" << v[0] << ", " << v[1] << ", " << v[2] << ", " << v[3] << "]" << std::endl;
    }
    out << "}" << std::endl;
    out << std::endl;
}

int Matrix::inRange(int i) {
    return (i >= 0 && i < 16) ? i : 0;
}
