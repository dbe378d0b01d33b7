#include "ied-device/serverQueues.h"

#include "ied-device/actions.h"
#include "ied-device/measuring.h"
#include "ied-device/parameters.h"

#include <cstdio>

namespace ied::instrument {

namespace {

constexpr u32 firstOutput = 85;
constexpr u32 lastOutput = 90;
constexpr u32 commitSelector = 99;
constexpr u32 firstRecordTrigger = 0;
constexpr u32 firstPulseClear = 40;
enum ClearCommand : u32 {
    ClearRtNow = 36,
    ClearRtLast = 37,
    ClearDmdNow = 38,
    ClearDmdLast = 39,
};

// The peer's mutex, held for a copy between the parameter areas.
class AreaLock {
  public:
    explicit AreaLock(SemId mutex) : mutex_(mutex) { semTake(mutex_, WAIT_FOREVER); }
    ~AreaLock() { semGive(mutex_); }
    AreaLock(const AreaLock &) = delete;
    AreaLock &operator=(const AreaLock &) = delete;

  private:
    SemId mutex_;
};

u32 loadEdit(Region region, const RegionField<u32> &field, u32 index) {
    return loadAt<u32>(region, region::editArea + field.at(index));
}

// Whether the server has raised the counter; it is taken over.
bool takeCounter(Region region, const RegionField<u32> &field, u32 index) {
    const u32 wanted = loadEdit(region, field, index);
    const bool raised = wanted != load(region, field, index);
    store(region, field, wanted, index);
    return raised;
}

void operate(Instrument *instrument, u32 output) {
    const Region region = instrument->shared.region;
    const bool close = takeCounter(region, region::outputClose, output);
    const bool open = takeCounter(region, region::outputOpen, output);
    if (close != open) {
        operateOutput(instrument, output, close);
    }
}

void commit(Instrument *instrument) {
    const Region region = instrument->shared.region;
    bool taken = false;
    {
        const AreaLock lock(instrument->shared.mutex);
        taken = commitEdit(region);
    }
    if (taken) {
        refreshRealTime(instrument);
    }
    raise(region, taken ? region::editDone : region::editRefused);
}

void clearExtremes(Instrument *instrument, u32 command) {
    const bool isLast = command == ClearRtLast || command == ClearDmdLast;
    const bool demand = command == ClearDmdNow || command == ClearDmdLast;
    MonthExtremes &month = isLast ? instrument->lastMonth : instrument->thisMonth;
    for (int i = 0; i < extremePlaces; i++) {
        if (demand) {
            month.demand[i] = {};
        } else {
            month.highest[i] = month.lowest[i] = {};
        }
    }
    isLast ? writeLastMonth(instrument) : writeThisMonth(instrument);
}

void clearPulses(Instrument *instrument, u32 input) {
    const Region region = instrument->shared.region;
    store(region, region::pulseCount, 0, input);
    raise(region, region::dspFlag, region::DspPulse);
}

// Records are asked for by their counters: their messages have no group of commands.
void trigger(Instrument *instrument) {
    const Region region = instrument->shared.region;
    for (u32 group = 0; group < region::waveCount.count; group++) {
        if (takeCounter(region, region::commandCounter, firstRecordTrigger + group)) {
            startRecord(instrument, group);
        }
    }
}

void clear(Instrument *instrument, u32 command) {
    if (command >= ClearRtNow && command <= ClearDmdLast) {
        clearExtremes(instrument, command);
    } else if (command >= firstPulseClear && command < firstPulseClear + region::pulseCount.count) {
        clearPulses(instrument, command - firstPulseClear);
    }
}

} // namespace

std::string commandLine(const manageMsg &message) {
    char line[160];
    std::snprintf(
        line, sizeof line,
        "{\"queue\":\"command\",\"sendID\":%u,\"cmdType\":%u,\"data0\":%u,\"data1\":%u,\"data2\":%u}\n",
        message.sendID, message.cmdType, message.data0, message.data1, message.data2);
    return line;
}

std::string watchdogLine(const WdgMessage &message) {
    std::string line = "{\"queue\":\"watchdog\",\"command\":" + std::to_string(message.command);
    if (message.command == WdgRegister || message.command == WdgTimeOutChange) {
        line += ",\"taskName\":\"";
        for (const char *c = message.taskName; c < message.taskName + sizeof message.taskName && *c != 0;
             c++) {
            const auto octet = static_cast<unsigned char>(*c);
            char text[8];
            const bool plain = octet >= ' ' && octet < 0x7F && *c != '"' && *c != '\\';
            std::snprintf(text, sizeof text, plain ? "%c" : "\\u%04x", octet);
            line += text;
        }
        line += "\",\"timeout\":" + std::to_string(message.timeout);
    }
    return line + "}\n";
}

void executeCommand(Instrument *instrument, const manageMsg &message) {
    const Region region = instrument->shared.region;
    if (message.data0 >= firstOutput && message.data0 <= lastOutput) {
        operate(instrument, message.data0 - firstOutput);
    } else if (message.data0 == commitSelector) {
        commit(instrument);
    } else if (message.data2 == 0) {
        trigger(instrument);
    } else {
        clear(instrument, message.data1);
    }
    const AreaLock lock(instrument->shared.mutex);
    for (u32 i = 0; i < region::commandCounter.count; i++) {
        takeCounter(region, region::commandCounter, i);
    }
}

void print(const std::string &line) {
    std::fputs(line.c_str(), stdout);
    std::fflush(stdout);
}

void serveQueues(Instrument *instrument, bool show) {
    manageMsg command{};
    while (msgQReceive(instrument->shared.commands, &command, sizeof command, NO_WAIT) == sizeof command) {
        if (show) {
            print(commandLine(command));
        }
        executeCommand(instrument, command);
    }
    WdgMessage message{};
    while (msgQReceive(instrument->shared.watchdog, &message, sizeof message, NO_WAIT) == sizeof message) {
        if (show) {
            print(watchdogLine(message));
        }
    }
}

} // namespace ied::instrument
