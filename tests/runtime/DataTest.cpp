#include "runtime/Data.h"
#include "runtime/DataBinaryPool.h"
#include "runtime/DataEffectPool.h"
#include "runtime/DataEventPool.h"
#include "runtime/DataPool.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Says who it is in its text and counts its deletion.
class NamedPool : public DataPool {
public:
    NamedPool(std::string text, int* deaths) : text(std::move(text)), deaths(deaths) {}
    ~NamedPool() override {
        if (deaths != nullptr) {
            ++*deaths;
        }
    }
    std::string toString() const override { return text; }

private:
    std::string text;
    int* deaths;
};

} // namespace

TEST(Data, UnknownPoolNameGivesNullAndInsertsNothing) {
    Data data;
    EXPECT_EQ(nullptr, data.getData("objectPool"));
    EXPECT_FALSE(data.exist("objectPool"));
    EXPECT_EQ("", data.toString());
}

TEST(Data, FindsAPoolByTheNameItWasAddedUnder) {
    Data data;
    DataEventPool* events = new DataEventPool();
    data.addData("eventPool", events);
    EXPECT_TRUE(data.exist("eventPool"));
    EXPECT_EQ(events, data.getData("eventPool"));
    EXPECT_FALSE(data.exist("EventPool"));
}

TEST(Data, ReplacingAPoolLeavesTheOldOneAlive) {
    int deaths = 0;
    NamedPool* first = new NamedPool("first", &deaths);
    {
        Data data;
        data.addData("pool", first);
        data.addData("pool", new NamedPool("second", &deaths));
        EXPECT_EQ("second", data.toString());
    }
    EXPECT_EQ(1, deaths);
    delete first;
    EXPECT_EQ(2, deaths);
}

TEST(Data, PrintsEveryPoolInNameOrderWithNothingBetween) {
    Data data;
    data.addData("texturePool", new NamedPool("T|", nullptr));
    data.addData("animationPool", new NamedPool("A|", nullptr));
    data.addData("fboPool", new NamedPool("F|", nullptr));
    EXPECT_EQ("A|F|T|", data.toString());
}

TEST(Data, DeletesEveryPoolInNameOrder) {
    Data* data = new Data();
    data->addData("eventPool", new DataEventPool());
    data->addData("binaryPool", new DataBinaryPool());
    data->addData("effectTemplatePool", new DataEffectPool());
    data->addData("effectPool", new DataEffectPool());
    testing::internal::CaptureStdout();
    delete data;
    EXPECT_EQ("[Dispose binaryPool]\n"
              "[Dispose effectPool]\n"
              "[Dispose effectPool]\n"
              "[Dispose eventPool]\n",
              testing::internal::GetCapturedStdout());
}
