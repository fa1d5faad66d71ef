#ifndef KVL_EXPECTEDLOG_H
#define KVL_EXPECTEDLOG_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

// What a log must look like, step by step: exact lines, lines of a known
// start, one line of any text, or a stretch of lines up to a given one that
// other parts of the player fill.
class ExpectedLog {
public:
    ExpectedLog& line(const std::string& text);
    ExpectedLog& lines(const std::vector<std::string>& texts);
    ExpectedLog& startingWith(const std::string& prefix);
    ExpectedLog& anyLine();
    ExpectedLog& skipTo(const std::string& text);

    // The whole log, to its last line.
    testing::AssertionResult matches(const std::vector<std::string>& log) const;

private:
    enum Kind { EXACT, PREFIX, ANY, SKIP_TO };
    struct Step {
        Kind kind;
        std::string text;
    };

    ExpectedLog& add(Kind kind, const std::string& text);
    static std::string describe(const Step& step);
    static testing::AssertionResult failure(const std::vector<std::string>& log, size_t at,
                                            const std::string& wanted);

    std::vector<Step> steps;
};

#endif
