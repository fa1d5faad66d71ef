#include "runtime/KVLTime.h"

#include "script/KVLUtils.h"
#include "script/StringTokenizer.h"
#include "script/StringUtils.h"

KVLTime::KVLTime() : minutes(0), seconds(0), milliseconds(0), ticks(0), valid(true) {}

KVLTime::KVLTime(int minutes, int seconds, int milliseconds)
    : minutes(minutes), seconds(seconds), milliseconds(milliseconds), ticks(0), valid(true) {
    computeTicks();
}

// Fields are derived from the total here, the only place with a carry. The
// validity of such a value means nothing; it is left as true.
KVLTime::KVLTime(unsigned int ticks)
    : minutes(static_cast<int>(ticks / 60000)), seconds(static_cast<int>((ticks % 60000) / 1000)),
      milliseconds(static_cast<int>(ticks % 1000)), ticks(ticks), valid(true) {}

KVLTime::KVLTime(std::string text) : minutes(0), seconds(0), milliseconds(0), ticks(0), valid(true) {
    setTimeAsString(std::move(text));
}

void KVLTime::computeTicks() {
    ticks = static_cast<unsigned int>(minutes) * 60000u + static_cast<unsigned int>(seconds) * 1000u +
            static_cast<unsigned int>(milliseconds);
}

void KVLTime::clearNumbers() {
    minutes = 0;
    seconds = 0;
    milliseconds = 0;
    ticks = 0;
}

void KVLTime::setMinutes(int value) {
    minutes = value;
    computeTicks();
}

void KVLTime::setSeconds(int value) {
    seconds = value;
    computeTicks();
}

void KVLTime::setMilliseconds(int value) {
    milliseconds = value;
    computeTicks();
}

int KVLTime::getMinutes() const { return minutes; }

int KVLTime::getSeconds() const { return seconds; }

int KVLTime::getMilliseconds() const { return milliseconds; }

unsigned int KVLTime::getTicks() const { return ticks; }

double KVLTime::getTicksAsDouble() const { return static_cast<double>(ticks); }

unsigned int KVLTime::time2uint(int, int, int) const {
    return static_cast<unsigned int>(minutes) * 60000u + static_cast<unsigned int>(seconds) * 1000u +
           static_cast<unsigned int>(milliseconds);
}

void KVLTime::reset() { clearNumbers(); }

bool KVLTime::isValid() const { return valid; }

// No range check and no carry: "01:75:2000" keeps its fields as written.
void KVLTime::setTimeAsString(std::string text) {
    valid = true;
    StringTokenizer parts(text, ":");
    if (parts.countTokens() != 3) {
        clearNumbers();
        valid = false;
        return;
    }
    int* fields[3] = {&minutes, &seconds, &milliseconds};
    for (int* field : fields) {
        std::string token = parts.getNext();
        if (StringUtils::isInt(token)) {
            *field = KVLUtils::string2Int(token);
        } else {
            valid = false;
        }
    }
    if (valid) {
        computeTicks();
    } else {
        clearNumbers();
    }
}

std::string KVLTime::toString() const {
    return "(" + forceStringLength(KVLUtils::uint2string(ticks), 10) + ")-[" +
           forceStringLength(KVLUtils::int2string(minutes), 2) + ":" +
           forceStringLength(KVLUtils::int2string(seconds), 2) + ":" +
           forceStringLength(KVLUtils::int2string(milliseconds), 3) + "]";
}

std::string KVLTime::forceStringLength(std::string text, unsigned int length) {
    while (text.length() < length) {
        text = "0" + text;
    }
    return text;
}
