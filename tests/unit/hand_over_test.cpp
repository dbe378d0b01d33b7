// The hand-over from the refresh task to the monitor task, in step however late the monitor is.
#include "device/dataRefresh.h"
#include "tests/support/deviceModel.h"
#include "tests/support/monitorStandIn.h"
#include "tests/support/process.h"
#include "tests/support/smallModel.h"

using namespace ied;
using namespace ied::test;

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
    void expectPicturesFrom(u32 first, u32 last) {
        ASSERT_EQ(monitor.pictures.size(), last - first + 1);
        for (u32 i = first; i <= last; i++) {
            EXPECT_EQ(monitor.pictures[i - first], std::to_string(i));
        }
    }
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
        expectPicturesFrom(1, i);
    }
    EXPECT_EQ(failures(), 0);
}

TEST_F(HandOver, EndsAfter50TicksWithAMessage) {
    heldClockStart(1000000, true); // moves to the end of a wait
    const u32 start = tickGet();
    happen();
    EXPECT_EQ(tickGet() - start, 50U);
    EXPECT_EQ(failures(), 1);
}

// The look at the first event takes a second, and its answer comes after the second event has been
// handed over: it must not pass for the answer to that one, which runs out of time too.
TEST_F(HandOver, AnAnswerThatComesDuringTheNextOneIsNotTakenForIts) {
    const u32 second = handedOver + 2;
    monitor.start([&] {
        const std::string seen = picture();
        if (seen == "1") {
            heldClockAdvance(1000);
            EXPECT_TRUE(waitUntil([&] { return loadPublished(handedOver) == second; }));
        } else if (seen == "2") {
            EXPECT_TRUE(waitUntil([] {
                heldClockAdvance(100);
                return failures() == 2;
            }));
        }
        return seen;
    });
    for (int i = 0; i < 22; i++) {
        const int before = failures();
        happen();
        EXPECT_TRUE(failures() > before || loadPublished(lookedAt) == handedOver) << i;
    }
    EXPECT_EQ(failures(), 2);
    expectPicturesFrom(1, 22);
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
    expectPicturesFrom(2, 21); // the first two are one picture, as the log says
}

} // namespace
