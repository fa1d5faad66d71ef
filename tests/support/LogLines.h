#ifndef KVL_LOGLINES_H
#define KVL_LOGLINES_H

#include <string>
#include <vector>

// Finding and cutting the lines of a log, for tests that compare what the
// player printed.

bool startsWith(const std::string& text, const std::string& prefix);

// Index of the first line at or after `from` that starts with `prefix`, or -1.
int findLine(const std::vector<std::string>& lines, const std::string& prefix, int from = 0);

// Index of the first line at or after `from` that is `line`, or -1.
int indexOf(const std::vector<std::string>& lines, const std::string& line, int from = 0);

// How often `line` stands in the log.
int count(const std::vector<std::string>& lines, const std::string& line);

// Lines `from` up to `to`, not included; empty when the range does not fit.
std::vector<std::string> slice(const std::vector<std::string>& lines, int from, int to);

// At most `count` lines from the first that is `first` on; empty when there
// is none.
std::vector<std::string> linesFrom(const std::vector<std::string>& lines, const std::string& first,
                                   size_t count);

// The lines of one list followed by those of the other.
std::vector<std::string> operator+(std::vector<std::string> first,
                                   const std::vector<std::string>& second);

// The lines numbered and cut to 160 characters, for failure messages.
std::string allLines(const std::vector<std::string>& lines);

#endif
