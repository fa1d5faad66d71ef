#include "script/StringTokenizer.h"

#include "script/StringUtils.h"

#include <algorithm>
#include <limits>
#include <utility>

StringTokenizer::StringTokenizer(std::string source) : StringTokenizer(std::move(source), " ") {}

StringTokenizer::StringTokenizer(std::string source, std::string delimiters)
    : StringTokenizer(std::move(source), std::move(delimiters), false) {}

StringTokenizer::StringTokenizer(std::string source, std::string delimiters, bool returnDelimiters)
    : tokenCount(0), position(0), source(std::move(source)), sourceLength(0), moreTokens(true),
      returnDelimiters(returnDelimiters) {
    sourceLength = static_cast<int>(this->source.length());
    tokenize(std::move(delimiters));
}

bool StringTokenizer::isDelimiter(char c) const {
    return std::find(delimiters.begin(), delimiters.end(), c) != delimiters.end();
}

void StringTokenizer::pushIfNotBlank(const std::string& token) {
    if (!StringUtils::trim(token).empty()) {
        tokens.push_back(token);
    }
}

void StringTokenizer::tokenize(std::string delimiterChars) {
    delimiters.insert(delimiters.end(), delimiterChars.begin(), delimiterChars.end());
    std::string current;
    for (char c : source) {
        if (isDelimiter(c)) {
            pushIfNotBlank(current);
            if (returnDelimiters) {
                tokens.push_back(std::string(1, c));
            }
            current.clear();
        } else {
            current += c;
        }
    }
    pushIfNotBlank(current);
    tokenCount = static_cast<int>(tokens.size());
    position = 0;
    if (tokenCount == 0) {
        moreTokens = false;
    }
}

std::string StringTokenizer::getNext() {
    if (!moreTokens) {
        return "";
    }
    // A negative skip can leave the cursor ahead of the first token.
    std::string token = (position >= 0 && position < tokenCount) ? tokens[position] : "";
    position++;
    if (position >= tokenCount) {
        moreTokens = false;
    }
    return token;
}

void StringTokenizer::getNext(int count) {
    // Clamped so that a huge skip cannot overflow; past the end is past the end.
    long long moved = static_cast<long long>(position) + count;
    moved = std::min<long long>(moved, tokenCount);
    moved = std::max<long long>(moved, std::numeric_limits<int>::min());
    position = static_cast<int>(moved);
    if (position >= tokenCount) {
        moreTokens = false;
    }
}

bool StringTokenizer::hasMoreTokens() const {
    return moreTokens;
}

int StringTokenizer::countTokens() const {
    return tokenCount;
}

// Rewinds the cursor only: a tokenizer that has run out stays out.
void StringTokenizer::reset() {
    position = 0;
}
