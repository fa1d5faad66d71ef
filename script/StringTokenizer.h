#ifndef KVL_STRINGTOKENIZER_H
#define KVL_STRINGTOKENIZER_H

#include <string>
#include <vector>

// Splits a text at any of a set of delimiter characters. Every text format of
// the player is read through this class, so its rules are the grammar's
// rules: tokens that are empty or only white space never appear, and the
// tokens that do appear keep their surrounding white space.
class StringTokenizer {
public:
    explicit StringTokenizer(std::string source);
    StringTokenizer(std::string source, std::string delimiters);
    StringTokenizer(std::string source, std::string delimiters, bool returnDelimiters);

    void tokenize(std::string delimiters);

    std::string getNext();
    void getNext(int count);
    bool hasMoreTokens() const;
    int countTokens() const;
    void reset();

private:
    bool isDelimiter(char c) const;
    void pushIfNotBlank(const std::string& token);

    int tokenCount;
    int position;
    std::vector<std::string> tokens;
    std::vector<char> delimiters;
    std::string source;
    int sourceLength;
    bool moreTokens;
    bool returnDelimiters;
};

#endif
