// The simulated instrument: plays the device manager through the shared objects alone.

#include "device/peerInterface.h"
#include "ied-device/console.h"
#include "ied-device/lineSource.h"
#include "ied-device/options.h"
#include "ied-device/serverQueues.h"
#include "ied-device/spy.h"
#include "ied-device/state.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <poll.h>
#include <unistd.h>

namespace ied::instrument {

namespace {

constexpr u64 second = 1'000'000'000;
constexpr int longestRestMs = 20; // between two looks at the queues

// Does the lines that are due. False after "quit".
bool serveLines(Instrument *instrument, LineSource *source) {
    while (!source->lines.empty() && monotonicNs() >= source->restUntilNs) {
        const Reply reply = executeLine(instrument, takeLine(source));
        source->refused |= reply.failed;
        if (reply.failed && !source->name.empty()) {
            std::fprintf(stderr, "%s:%u: ", source->name.c_str(), source->taken);
        }
        std::fputs(reply.text.c_str(), reply.failed ? stderr : stdout);
        std::fflush(stdout);
        if (reply.after == After::Quit) {
            return false;
        }
        if (reply.after == After::Wait) {
            source->restUntilNs =
                monotonicNs() + static_cast<u64>(reply.waitSeconds * static_cast<f64>(second));
        }
    }
    return true;
}

void showState(const Instrument &instrument, const Options &options) {
    if (!options.stateFile.empty() && !writeStateFile(instrument, options.stateFile)) {
        std::fprintf(stderr, "ied-device: cannot write %s\n", options.stateFile.c_str());
    }
}

// Ticks that are due; after a long sleep of the host the missed ones are not made up.
void serveClock(Instrument *instrument, const Options &options, u64 *next) {
    const u64 period = static_cast<u64>(static_cast<f64>(tickNs) / options.speed);
    const u64 now = monotonicNs();
    if (now > *next + 5 * second) {
        *next = now;
    }
    bool measured = false;
    for (; *next <= now; *next += period) {
        if (!instrument->held) {
            measured |= tickInstrument(instrument, now - *next);
        }
    }
    if (measured) {
        showState(*instrument, options);
    }
}

void rest(const LineSource &input, u64 next) {
    const u64 now = monotonicNs();
    const int ms =
        next <= now ? 0 : static_cast<int>(std::min<u64>((next - now) / 1'000'000 + 1, longestRestMs));
    pollfd descriptor{input.fd, POLLIN, 0};
    poll(&descriptor, input.fd < 0 ? 0 : 1, ms);
}

int play(const Options &options) {
    sweepSharedObjects(peer::sharedNames);
    const auto instrument = std::make_unique<Instrument>();
    if (const char *failed = openSharedObjects(&instrument->shared)) {
        std::fprintf(stderr, "ied-device: cannot open the %s\n", failed);
        return 1;
    }
    LineSource script;
    if (!options.script.empty() && !loadScript(options.script, &script)) {
        std::fprintf(stderr, "ied-device: cannot read %s\n", options.script.c_str());
        return 1;
    }
    LineSource input;
    input.fd = STDIN_FILENO;
    startInstrument(instrument.get());
    showState(*instrument, options);
    std::puts("ready");
    std::fflush(stdout);
    // The clock comes first, so that what a line does comes behind what was due before.
    for (u64 next = monotonicNs();;) {
        serveClock(instrument.get(), options, &next);
        serveQueues(instrument.get(), options.showQueues);
        readLines(&input);
        if (!serveLines(instrument.get(), &script) ||
            (script.lines.empty() && !serveLines(instrument.get(), &input))) {
            return script.refused ? 1 : 0;
        }
        rest(input, next);
    }
}

} // namespace

} // namespace ied::instrument

int main(int argc, char **argv) {
    using namespace ied::instrument;
    Options options;
    const int status = readOptions(argc, argv, &options);
    if (status >= 0) {
        return status;
    }
    if (options.remove) {
        ied::removeSharedObjects(ied::peer::sharedNames);
        return 0;
    }
    ied::installEndSignals();
    return options.spy ? spy() : play(options);
}
