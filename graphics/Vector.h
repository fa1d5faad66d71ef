#ifndef KVL_VECTOR_H
#define KVL_VECTOR_H

#include <cmath>
#include <ostream>

// A fixed array of N values, copied by value everywhere. It holds the array
// and nothing else, so &v[0] can go straight to glVertex3fv and friends.
template <typename T, int N> class Vector {
public:
    Vector() {
        for (int i = 0; i < N; i++) {
            values[i] = T(0);
        }
    }

    // An index outside 0..N-1 reaches the first element rather than memory
    // beyond the array.
    T& operator[](int i) { return values[inRange(i)]; }
    const T& operator[](int i) const { return values[inRange(i)]; }

    T* data() { return values; }
    const T* data() const { return values; }

    Vector operator+(Vector other) const {
        Vector result;
        for (int i = 0; i < N; i++) {
            result.values[i] = values[i] + other.values[i];
        }
        return result;
    }

    Vector operator-(Vector other) const {
        Vector result;
        for (int i = 0; i < N; i++) {
            result.values[i] = values[i] - other.values[i];
        }
        return result;
    }

    Vector operator*(T scalar) const {
        Vector result;
        for (int i = 0; i < N; i++) {
            result.values[i] = values[i] * scalar;
        }
        return result;
    }

    Vector operator-() const {
        Vector result;
        for (int i = 0; i < N; i++) {
            result.values[i] = -values[i];
        }
        return result;
    }

    float length() const {
        T sum = T(0.0);
        for (int i = 0; i < N; i++) {
            sum += values[i] * values[i];
        }
        return sqrtf(sum);
    }

    // No test for a zero length: callers hand in real directions.
    void normalize() {
        float len = length();
        for (int i = 0; i < N; i++) {
            values[i] = T(values[i] / len);
        }
    }

private:
    static int inRange(int i) { return (i >= 0 && i < N) ? i : 0; }

    T values[N];
};

template <typename T, int N> T dot(Vector<T, N> a, Vector<T, N> b) {
    T sum = T(0.0);
    for (int i = 0; i < N; i++) {
        sum += a[i] * b[i];
    }
    return sum;
}

template <typename T> Vector<T, 3> cross(Vector<T, 3> a, Vector<T, 3> b) {
    Vector<T, 3> result;
    result[0] = a[1] * b[2] - a[2] * b[1];
    result[1] = a[2] * b[0] - a[0] * b[2];
    result[2] = a[0] * b[1] - a[1] * b[0];
    return result;
}

// A position or a direction of the three values, in order.
inline Vector<float, 3> vec3(float x, float y, float z) {
    Vector<float, 3> v;
    v[0] = x;
    v[1] = y;
    v[2] = z;
    return v;
}

// The first three floats of an array, such as a vertex kept as plain floats.
inline Vector<float, 3> vec3(const float* values) {
    return vec3(values[0], values[1], values[2]);
}

// A colour of the four values, alpha last.
inline Vector<float, 4> vec4(float r, float g, float b, float a) {
    Vector<float, 4> c;
    c[0] = r;
    c[1] = g;
    c[2] = b;
    c[3] = a;
    return c;
}

inline std::ostream& operator<<(std::ostream& out, const Vector<float, 3>& v) {
    return out << "[" << v[0] << "," << v[1] << "," << v[2] << "]";
}

#endif
