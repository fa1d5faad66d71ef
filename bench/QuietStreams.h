#ifndef KVL_QUIETSTREAMS_H
#define KVL_QUIETSTREAMS_H

#include <iostream>
#include <streambuf>

// Swallows the player's log while a benchmark runs: std::cout, and std::cerr
// as well when asked. The streams are given back when the object goes.
class QuietStreams {
public:
    explicit QuietStreams(bool errorsToo = false)
        : out(std::cout.rdbuf(&sink)), err(errorsToo ? std::cerr.rdbuf(&sink) : nullptr) {}
    ~QuietStreams() {
        std::cout.rdbuf(out);
        if (err != nullptr) {
            std::cerr.rdbuf(err);
        }
    }
    QuietStreams(const QuietStreams&) = delete;
    QuietStreams& operator=(const QuietStreams&) = delete;

private:
    class NullBuffer : public std::streambuf {
    protected:
        int overflow(int c) override { return c; }
        std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
    };

    NullBuffer sink;
    std::streambuf* out;
    std::streambuf* err;
};

#endif
