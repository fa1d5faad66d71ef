#ifndef KVL_BINARY_H
#define KVL_BINARY_H

#include <string>
#include <vector>

// The bytes of one file, read whole.
class Binary {
public:
    explicit Binary(std::vector<unsigned char> data);

    unsigned int size() const;
    unsigned char getData(int index) const;
    std::string toString() const;

private:
    std::vector<unsigned char> data;
};

#endif
