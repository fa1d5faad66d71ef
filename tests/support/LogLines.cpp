#include "support/LogLines.h"

#include <algorithm>
#include <sstream>

bool startsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

int findLine(const std::vector<std::string>& lines, const std::string& prefix, int from) {
    for (int i = std::max(from, 0); i < static_cast<int>(lines.size()); i++) {
        if (startsWith(lines[i], prefix)) {
            return i;
        }
    }
    return -1;
}

int indexOf(const std::vector<std::string>& lines, const std::string& line, int from) {
    if (from < 0 || from > static_cast<int>(lines.size())) {
        return -1;
    }
    auto found = std::find(lines.begin() + from, lines.end(), line);
    return (found == lines.end()) ? -1 : static_cast<int>(found - lines.begin());
}

int count(const std::vector<std::string>& lines, const std::string& line) {
    return static_cast<int>(std::count(lines.begin(), lines.end(), line));
}

std::vector<std::string> slice(const std::vector<std::string>& lines, int from, int to) {
    if (from < 0 || to < from || to > static_cast<int>(lines.size())) {
        return {};
    }
    return std::vector<std::string>(lines.begin() + from, lines.begin() + to);
}

std::vector<std::string> linesFrom(const std::vector<std::string>& lines, const std::string& first,
                                   size_t count) {
    int at = indexOf(lines, first);
    if (at < 0) {
        return {};
    }
    size_t end = std::min(lines.size(), at + count);
    return std::vector<std::string>(lines.begin() + at, lines.begin() + end);
}

std::vector<std::string> operator+(std::vector<std::string> first,
                                   const std::vector<std::string>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

std::string allLines(const std::vector<std::string>& lines) {
    std::ostringstream text;
    for (size_t i = 0; i < lines.size(); i++) {
        text << i << ": " << lines[i].substr(0, 160) << "\n";
    }
    return text.str();
}
