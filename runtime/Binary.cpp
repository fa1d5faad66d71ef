#include "runtime/Binary.h"

#include "script/KVLUtils.h"

Binary::Binary(std::vector<unsigned char> data) : data(std::move(data)) {}

unsigned int Binary::size() const {
    return static_cast<unsigned int>(data.size());
}

// Callers index without a check; outside the data they read 0 rather than
// whatever lies behind the buffer.
unsigned char Binary::getData(int index) const {
    if (index < 0 || static_cast<size_t>(index) >= data.size()) {
        return 0;
    }
    return data[static_cast<size_t>(index)];
}

std::string Binary::toString() const {
    return "Binary { size = " + KVLUtils::uint2string(size()) + " }\n";
}
