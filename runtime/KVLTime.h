#ifndef KVL_KVLTIME_H
#define KVL_KVLTIME_H

#include <string>

// A time of the script: minutes, seconds and milliseconds as written, and the
// whole time in milliseconds. Script form mm:ss:mmm, log form
// (0000065123)-[01:05:123]. Comparisons go through getTicks().
class KVLTime {
public:
    KVLTime();
    KVLTime(int minutes, int seconds, int milliseconds);
    explicit KVLTime(unsigned int ticks);
    explicit KVLTime(std::string text);

    void setMinutes(int value);
    void setSeconds(int value);
    void setMilliseconds(int value);
    int getMinutes() const;
    int getSeconds() const;
    int getMilliseconds() const;
    unsigned int getTicks() const;
    double getTicksAsDouble() const;

    // Computes from the fields; the arguments are not used.
    unsigned int time2uint(int minutes, int seconds, int milliseconds) const;
    void reset();
    bool isValid() const;
    void setTimeAsString(std::string text);
    std::string toString() const;
    static std::string forceStringLength(std::string text, unsigned int length);

private:
    void computeTicks();
    void clearNumbers();

    int minutes;
    int seconds;
    int milliseconds;
    unsigned int ticks;
    bool valid;
};

#endif
