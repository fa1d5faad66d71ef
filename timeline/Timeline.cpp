#include "timeline/Timeline.h"

Timeline::Timeline() : offset(0) {}

unsigned int Timeline::getOffset() const { return offset; }

void Timeline::setOffset(unsigned int value) { offset = value; }
