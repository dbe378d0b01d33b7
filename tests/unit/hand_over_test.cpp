// The hand-over from the refresh task to the monitor task, in step however late the monitor is.
#include "device/dataRefresh.h"
#include "tests/support/deviceModel.h"
#include "tests/support/monitorStandIn.h"
#include "tests/support/process.h"
#include "tests/support/smallModel.h"

using namespace ied;
using ied::test::DeviceState;
using ied::test::LogLines;
using ied::test::MonitorStandIn;
using ied::test::Pictures;
using ied::test::waitUntil;

namespace {

// The clock stands: no hand-over runs out of time unless the test moves it.
class HandOver : public testing::Test {
  protected:
    HandOver() { storeShared(event, 0); }
    void happen() {
        storeShared(event, loadShared(event) + 1);
        waitForMon();
    }
    static std::string picture() { return std::to_string(loadShared(event)); }
    static int failures() { return LogLines::count("UPD", "ERR", "waitForMon", "Fail to take semRefresh!"); }

    static inline u32 event;
    DeviceState device{1000000, false};
    MonitorStandIn monitor;
    LogLines log;
};

TEST_F(HandOver, TheFirstOneWaitsForItsAnswerThoughTheSemaphoreIsFullAtStart) {
    monitor.start(picture);
    for (u32 i = 1; i <= 100; i++) {
        happen();
        ASSERT_EQ(monitor.pictures.size(), i);
        EXPECT_EQ(monitor.pictures.back(), std::to_string(i));
    }
    EXPECT_EQ(failures(), 0);
}

TEST_F(HandOver, EndsAfter50TicksWithAMessage) {
    std::atomic<bool> ended{false};
    const u32 start = tickGet();
    std::thread refresh([&] {
        happen();
        ended = true;
    });
    EXPECT_TRUE(waitUntil([] { return semTake(semMonitor, NO_WAIT) == OK; }));
    heldClockAdvance(490);
    EXPECT_FALSE(waitUntil([&] { return ended.load(); }, ied::test::Milliseconds(20)));
    heldClockAdvance(10);
    refresh.join();
    EXPECT_EQ(tickGet() - start, 50U);
    EXPECT_EQ(failures(), 1);
}

// The look at the first event takes a second, and its answer comes after the second event has been
// handed over: it must not pass for the answer to that one.
TEST_F(HandOver, AnAnswerThatComesDuringTheNextOneIsNotTakenForIts) {
    const u32 second = handedOver + 2;
    monitor.start([&] {
        const std::string seen = picture();
        if (seen == "1") {
            heldClockAdvance(1000);
            EXPECT_TRUE(waitUntil([&] { return loadPublished(handedOver) == second; }));
        } else if (seen == "2") {
            EXPECT_FALSE(waitUntil([&] { return picture() != seen; }, ied::test::Milliseconds(20)))
                << "the picture stands while it is looked at";
        }
        return seen;
    });
    happen();
    EXPECT_EQ(failures(), 1);
    for (int i = 0; i < 20; i++) {
        happen();
    }
    EXPECT_EQ(failures(), 1);
    ASSERT_EQ(monitor.pictures.size(), 21U);
    for (u32 i = 0; i < 21; i++) {
        EXPECT_EQ(monitor.pictures[i], std::to_string(i + 1));
    }
}

TEST_F(HandOver, AnAnswerThatCameInBetweenIsTakenBack) {
    monitor.start([&] {
        const std::string seen = picture();
        if (seen == "1") {
            heldClockAdvance(1000);
            EXPECT_TRUE(waitUntil([] { return failures() == 1; }));
        }
        return seen;
    });
    happen();
    EXPECT_TRUE(waitUntil([] { return loadPublished(lookedAt) == loadPublished(handedOver); }));
    happen();
    happen();
    EXPECT_EQ(failures(), 1);
    EXPECT_EQ(monitor.pictures, (Pictures{"1", "2", "3"}));
}

// The give of a hand-over may come when the monitor has seen its event with the one before.
TEST_F(HandOver, AGiveThatComesLateShowsNothingTwice) {
    monitor.start(picture);
    happen();
    semGive(semMonitor);
    EXPECT_TRUE(waitUntil([] { return semTake(semRefresh, NO_WAIT) == OK; }));
    happen();
    EXPECT_EQ(monitor.pictures, (Pictures{"1", "2"}));
    EXPECT_EQ(failures(), 0);
}

// The monitor is held up before it sees the first event at all. What it missed is reported once;
// it answers what comes later as if nothing had been.
TEST_F(HandOver, AMonitorThatHadNotBegunAnswersTheLaterOnes) {
    const u32 first = handedOver + 1;
    monitor.start(picture, [&] {
        EXPECT_TRUE(waitUntil([&] { return loadPublished(handedOver) == first; }));
        EXPECT_TRUE(waitUntil([] {
            heldClockAdvance(100);
            return failures() == 1;
        }));
        EXPECT_TRUE(waitUntil([&] { return loadPublished(handedOver) == first + 1; }));
    });
    happen();
    EXPECT_EQ(failures(), 1);
    for (int i = 0; i < 20; i++) {
        happen();
    }
    EXPECT_EQ(failures(), 1) << "no later one waits for an answer that never comes";
    monitor.stop();
    ASSERT_EQ(monitor.pictures.size(), 20U) << "the first two are one picture, as the log says";
    for (u32 i = 0; i < 20; i++) {
        EXPECT_EQ(monitor.pictures[i], std::to_string(i + 2));
    }
}

} // namespace
