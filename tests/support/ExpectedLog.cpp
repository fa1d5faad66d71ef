#include "support/ExpectedLog.h"

#include "support/LogLines.h"

#include <algorithm>
#include <sstream>

ExpectedLog& ExpectedLog::line(const std::string& text) {
    return add(EXACT, text);
}

ExpectedLog& ExpectedLog::lines(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
        line(text);
    }
    return *this;
}

ExpectedLog& ExpectedLog::startingWith(const std::string& prefix) {
    return add(PREFIX, prefix);
}

ExpectedLog& ExpectedLog::anyLine() {
    return add(ANY, "");
}

ExpectedLog& ExpectedLog::skipTo(const std::string& text) {
    return add(SKIP_TO, text);
}

testing::AssertionResult ExpectedLog::matches(const std::vector<std::string>& log) const {
    size_t at = 0;
    for (const Step& step : steps) {
        if (step.kind == SKIP_TO) {
            auto found = std::find(log.begin() + std::min(at, log.size()), log.end(), step.text);
            if (found == log.end()) {
                return failure(log, at, "a later line '" + step.text + "'");
            }
            at = static_cast<size_t>(found - log.begin()) + 1;
            continue;
        }
        if (at >= log.size()) {
            return failure(log, at, describe(step) + " after the end of the log");
        }
        bool ok = (step.kind == ANY) || (step.kind == EXACT && log[at] == step.text) ||
                  (step.kind == PREFIX && startsWith(log[at], step.text));
        if (!ok) {
            return failure(log, at, describe(step));
        }
        at++;
    }
    if (at != log.size()) {
        return failure(log, at, "the end of the log");
    }
    return testing::AssertionSuccess();
}

ExpectedLog& ExpectedLog::add(Kind kind, const std::string& text) {
    steps.push_back({kind, text});
    return *this;
}

std::string ExpectedLog::describe(const Step& step) {
    switch (step.kind) {
    case EXACT:
        return "the line '" + step.text + "'";
    case PREFIX:
        return "a line starting with '" + step.text + "'";
    default:
        return "any line";
    }
}

testing::AssertionResult ExpectedLog::failure(const std::vector<std::string>& log, size_t at,
                                              const std::string& wanted) {
    std::ostringstream text;
    text << "expected " << wanted << " at line " << at << "; the log around it:\n";
    size_t first = (at > 8) ? at - 8 : 0;
    for (size_t i = first; i < log.size() && i < at + 8; i++) {
        text << (i == at ? ">> " : "   ") << i << ": " << log[i].substr(0, 120) << "\n";
    }
    return testing::AssertionFailure() << text.str();
}
