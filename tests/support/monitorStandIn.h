// Stands in for the monitor task: takes each hand-over of the refresh task, writes down the picture of
// the mirror at that moment, and answers.
#pragma once

#include "basicInterface/cdcRecord.h"
#include "platform/platform.h"
#include "platform/shared.h"
#include "proto-process/c/monitorTasks.h"

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace ied::test {

class MonitorStandIn {
  public:
    using Look = std::function<std::string()>; // runs in the monitor's thread

    MonitorStandIn() {
        semMonitor = semBCreate(semQPriority, semEmpty);
        semRefresh = semBCreate(semQPriority, semFull);
    }
    ~MonitorStandIn() {
        stop();
        semDelete(semMonitor);
        semDelete(semRefresh);
    }
    MonitorStandIn(const MonitorStandIn &) = delete;
    MonitorStandIn &operator=(const MonitorStandIn &) = delete;

    // `before` runs ahead of the first take.
    void start(
        Look look, std::function<void()> before = [] {}) {
        stop();
        pictures.clear();
        ended = false;
        thread = std::thread([this, look = std::move(look), before = std::move(before)] {
            before();
            while (semTake(semMonitor, WAIT_FOREVER) == OK && !ended) {
                u32 number;
                if (takeHandOver(&number)) {
                    pictures.push_back(look());
                }
                answerHandOver(number);
            }
        });
    }
    // Ends the thread when it has looked at what was handed over.
    void stop() {
        if (thread.joinable()) {
            ended = true;
            semGive(semMonitor);
            thread.join();
        }
    }

    std::vector<std::string> pictures; // to be read while nothing is handed over

  private:
    std::atomic<bool> ended{false};
    std::thread thread;
};

using Pictures = std::vector<std::string>;

// A time as "1000.250".
inline std::string shown(const TimeStamp &time) {
    const TimeStamp t = loadShared(time);
    return std::to_string(t.sec) + "." + std::to_string(1000 + t.ms).substr(1);
}
// A state as "1@1000.250 n2", the last its update counter.
template <class Record> std::string shown(const Record &state) {
    return std::to_string(loadShared(state.stVal)) + "@" + shown(state.t) + " n" +
           std::to_string(loadShared(state.updateCount));
}

} // namespace ied::test
