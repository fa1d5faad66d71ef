#ifndef KVL_TIMELINE_H
#define KVL_TIMELINE_H

// Holds the offset that is added to the demo clock.
class Timeline {
public:
    Timeline();
    unsigned int getOffset() const;
    void setOffset(unsigned int value);

private:
    unsigned int offset;
};

#endif
