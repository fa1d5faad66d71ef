#ifndef KVL_STDOUTCAPTURE_H
#define KVL_STDOUTCAPTURE_H

#include <gtest/gtest.h>

#include <string>

// What a step wrote to std::cout: the player's log of that step alone.
template <class Step> std::string logOf(Step step) {
    testing::internal::CaptureStdout();
    step();
    return testing::internal::GetCapturedStdout();
}

#endif
