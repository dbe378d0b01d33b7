// The door to the device manager: opening what it shares, and commands on its queue.
#include "device/externalInterface.h"
#include "device/peerInterface.h"
#include "device/region.h"
#include "tests/support/smallModel.h"

#include <cstring>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace ied;
using ied::test::LogLines;

namespace {

class ExternalInterface : public testing::Test {
  protected:
    ExternalInterface() {
        platformOptions.instance = "external" + std::to_string(::getpid());
        heldClockStart(3000, true);
    }
    ~ExternalInterface() override {
        removeSharedObjects(peer::sharedNames);
        heldClockStop();
        comdata = nullptr;
    }
};

TEST_F(ExternalInterface, OpensEverythingAfterTwoSeconds) {
    const u32 start = tickGet();
    ASSERT_TRUE(sysInit());
    EXPECT_GE(tickGet() - start, 2 * sysClkRateGet());
    ASSERT_NE(comdata, nullptr);
    EXPECT_EQ(semTake(mutexComdata, NO_WAIT), OK) << "free at first";
    EXPECT_EQ(semGive(mutexComdata), OK);
    TimeStamp now{};
    EXPECT_EQ(clockDeviceRead(fdRtc, &now), OK);
    EXPECT_EQ(now.sec, 3002U);

    // The other side sees the same octets, to the last one.
    auto *peer = static_cast<u8 *>(sdOpen("/sd_commdata", 1, 0, regionSize, 0, 0));
    ASSERT_NE(peer, nullptr);
    storeShared(*regionPlace(comdata, region::ready), region::readyValue);
    EXPECT_EQ(peer[37549840], 0x55);
    EXPECT_EQ(peer[37549841], 0xAA);
    peer[regionSize - 1] = 1;
    EXPECT_EQ(comdata[regionSize - 1], 1);
}

TEST_F(ExternalInterface, ACommandIsFiveWordsOnTheQueue) {
    ASSERT_TRUE(sysInit());
    sendManageMsg(1, 99, 0, 27);
    MsgQId peer = msgQOpen("/msgqDataManager", 80, 20, 0, 0, 0);
    ASSERT_NE(peer, nullptr);
    u8 octets[64];
    ASSERT_EQ(msgQReceive(peer, octets, sizeof octets, NO_WAIT), 20);
    const u8 expected[20] = {1, 0, 0, 0, 1, 0, 0, 0, 99, 0, 0, 0, 0, 0, 0, 0, 27, 0, 0, 0};
    EXPECT_EQ(std::memcmp(octets, expected, sizeof expected), 0);
}

TEST_F(ExternalInterface, AFullQueueLosesTheCommandWithAMessage) {
    ASSERT_TRUE(sysInit());
    const LogLines log;
    for (u32 i = 0; i < 80; i++) {
        sendManageMsg(1, 0, i, 37);
    }
    EXPECT_TRUE(LogLines::lines().empty());
    sendManageMsg(1, 85, 0, 0);
    EXPECT_EQ(LogLines::count("OTH", "ERR", "sendManageMsg",
                              "Send msg Error! cmdType = 1, sendID = 1, data0 = 85, data1 = 0, data2 = 0"),
              1);
}

struct Unopenable {
    const char *object;
    const char *message;
};

class UnopenableObject : public ExternalInterface, public testing::WithParamInterface<Unopenable> {};

TEST_P(UnopenableObject, EndsTheOpeningAndIsNamedWithTheReasonOfTheHost) {
    const std::string name = GetParam().object + ("." + platformOptions.instance);
    const std::string inTheWay = "/dev/shm" + name;
    ASSERT_EQ(::mkdir(inTheWay.c_str(), 0700), 0);
    const LogLines log;
    EXPECT_FALSE(sysInit());
    EXPECT_EQ(::rmdir(inTheWay.c_str()), 0);
    EXPECT_EQ(LogLines::count("OTH", "ERR", "sysInit", GetParam().message), 1);
    EXPECT_EQ(LogLines::lines().size(), 1U);
    testing::internal::CaptureStderr();
    edrErrorInject(513, "src", 1, 0, 0, "stopped");
    const std::string record = testing::internal::GetCapturedStderr();
    EXPECT_NE(record.find("cannot open \"" + name + "\": Invalid argument"), std::string::npos) << record;
}

INSTANTIATE_TEST_SUITE_P(ExternalInterface, UnopenableObject,
                         testing::Values(Unopenable{"/msgqDataManager", "Fail to open DataManager msgQ!"},
                                         Unopenable{"/sd_commdata", "ERROR TO OPEN SD_COMMDATA"},
                                         Unopenable{"/mutexCommomData", "ERROR TO OPEN SD_COMMDATA_MUTEX"}));

} // namespace
