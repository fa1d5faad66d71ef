#ifndef KVL_EVENTPOOLS_H
#define KVL_EVENTPOOLS_H

#include "runtime/Data.h"
#include "runtime/DataEffectPool.h"
#include "runtime/DataFBOPool.h"
#include "runtime/KVLDemosys.h"
#include "timeline/ActionPool.h"

#include <gtest/gtest.h>

// The pools and the action pool as the resource loader makes them, for the
// events to act on; their deletion log stays out of the test output.

inline void createEventPools() {
    KVLDemosys::resetState();
    KVLDemosys::data = new Data();
    KVLDemosys::effectPool = new DataEffectPool();
    KVLDemosys::fboPool = new DataFBOPool();
    KVLDemosys::data->addData("effectPool", KVLDemosys::effectPool);
    KVLDemosys::data->addData("fboPool", KVLDemosys::fboPool);
    KVLDemosys::action = new ActionPool();
}

inline void deleteEventPools() {
    testing::internal::CaptureStdout();
    delete KVLDemosys::action;
    delete KVLDemosys::data;
    testing::internal::GetCapturedStdout();
    KVLDemosys::resetState();
}

#endif
