// A script of octets against a buffered and an unbuffered control block, two clients, three values and a
// held clock: writes and reads of every attribute with values of every form, changes, rounds of the
// monitor and the report task, clients that vanish, sockets that refuse, and any of these while a report
// is being sent. Each report has to be whole, go to the owner, and follow the one before: nothing lost
// without BufOvfl, nothing doubled, SqNum without a gap.
#include "tests/support/conversation.h"
#include "tests/support/reportTesting.h"
#include "tests/support/reports.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <span>
#include <utility>

using namespace ied;
using namespace ied::test;

namespace {

// The fuzzer takes the end of the process for a finding.
void demand(bool holds, const char *what) {
    if (!holds) {
        std::fprintf(stderr, "violated: %s\n", what);
        std::abort();
    }
}

constexpr u8 clients = 2;
constexpr const char *attributes[] = {"RptID",   "RptEna",   "Resv",    "DatSet",     "ConfRev",
                                      "OptFlds", "BufTm",    "SqNum",   "TrgOps",     "IntgPd",
                                      "GI",      "PurgeBuf", "EntryID", "TimeOfEntry"};

// What the next report of a block has to be; nothing where that is not known.
struct Expected {
    std::optional<u64> entryId;
    std::optional<u64> orEntryId; // where a report may or may not count as sent
    bool asked = false;           // entryId is a position that no report has confirmed yet
    std::optional<u32> sqNum;
    std::array<u32, 3> lastChange{}; // of each member, told with dchg
};

// A position that was asked for is gone when the block is disabled before a report was sent from it.
void forgetAsked(Expected &e) {
    if (e.asked) {
        e.entryId.reset();
    }
}

struct World {
    explicit World(std::span<const u8> input) : script(input) {
        externGlbCfg.minRptBufNum = externGlbCfg.maxRptBufNum = 5;
        externGlbCfg.minIntgPd = 50;
        externGlbCfg.sendBufSize = 2048; // a start clears sixteen times as much
        GenNode *st = model.node("Tiny/GGIO1$ST");
        for (std::size_t i = 0; i < values.size(); ++i) {
            const std::string name = "V" + std::to_string(i);
            model.leaf(model.add(st, name.c_str(), LevelDO, CdcSPS), "v", TypeInt32U, &values[i])->trgOps =
                TrgDchg;
        }
        model.dataSet("Tiny/LLN0$ds", {"Tiny/GGIO1$ST$V0", "Tiny/GGIO1$ST$V1$v", "Tiny/GGIO1$ST$V2"});
        const u16 options = OptSeqNum | OptReason | OptBufOvfl | OptEntryID;
        model.block({.name = "Tiny/LLN0$BR$b", .dataSet = "Tiny/LLN0$ds", .optFlds = options, .rptID = "b"});
        model.block({.name = "Tiny/LLN0$RP$u", .dataSet = "Tiny/LLN0$ds", .optFlds = options, .rptID = "u"});
        demand(model.start(), "the model starts");
        for (u8 slot = 0; slot < clients; ++slot) {
            come(slot);
        }
    }

    u8 octet() {
        if (script.empty()) {
            return 0;
        }
        const u8 first = script.front();
        script = script.subspan(1);
        return first;
    }
    std::string octetString(std::size_t length) {
        std::string text;
        while (text.size() < length) {
            text += static_cast<char>(octet());
        }
        return text;
    }

    static void come(u8 slot) {
        ClientStat &client = clientStat[slot];
        client.status = CS_DATA;
        client.sockFd = 100 + slot;
        client.sendFail = 0;
        ++client.association;
    }
    void vanish(u8 slot) {
        releaseClientRCB(slot);
        for (Expected &e : expected) {
            forgetAsked(e);
        }
        come(slot);
    }

    ReportModel model;
    std::array<u32, 3> values{};
    u32 changeCount = 0;
    bool changed = false; // since the last round of the monitor
    std::array<Expected, 2> expected;
    std::span<const u8> script;
    bool refuses = false; // the socket, once
    int stepsIn = 0;      // steps that run while the next report is sent
    bool sending = false;
};

World *world;

void step(World &w);

void takeReport(World &w, const RCB &rcb, const Report &report) {
    Expected &e = w.expected[static_cast<std::size_t>(&rcb - aRCBObj)];
    if (report.sqNum) {
        demand(!e.sqNum || *report.sqNum == *e.sqNum, "SqNum follows");
        e.sqNum = (*report.sqNum + 1) & (rcb.buffered != 0 ? 0xFFFFU : 0xFFU);
    }
    e.asked = false;
    if (rcb.buffered != 0 && report.entryId && report.bufOvfl) {
        demand(!e.entryId || *report.entryId == *e.entryId ||
                   (e.orEntryId && *report.entryId == *e.orEntryId) ||
                   (*report.bufOvfl && *report.entryId > *e.entryId),
               "an entry is lost or doubled");
        e.entryId = *report.entryId + 1;
        e.orEntryId.reset();
    } else {
        e.entryId.reset();
    }
    std::size_t next = 0;
    for (std::size_t i = 0; i < w.values.size(); ++i) {
        if (!report.included.at(i)) {
            continue;
        }
        const std::string &value = report.values.at(next); // the leaf itself or its object, a structure
        const std::size_t content = value.starts_with("A2") ? 8 : 4;
        const auto number = static_cast<u32>(std::stoul(value.substr(content), nullptr, 16));
        demand(number <= w.values[i], "a value that was never there");
        if (!report.reasons.empty() && report.reasons.at(next) == "0240") {
            demand(number > e.lastChange[i], "a change is told twice");
            e.lastChange[i] = number;
        }
        ++next;
    }
    demand(next == report.values.size(), "a value for each included member");
}

long scriptedSend(int socket, const void *buffer, std::size_t length, int) {
    World &w = *world;
    const auto report = reportOf(mmsOf({hexText({static_cast<const u8 *>(buffer), length})}).value_or(""));
    demand(report.has_value() && report->included.size() == w.values.size(), "a report is whole");
    const bool buffered = report->rptId.ends_with(ascii("b"));
    RCB &rcb = aRCBObj[buffered ? 0 : 1];
    demand(socket == 100 + rcb.clientId, "a report goes to the owner");
    if (std::exchange(w.refuses, false)) {
        errno = EPIPE;
        return -1;
    }
    takeReport(w, rcb, *report);
    if (w.stepsIn != 0) {
        const u64 told = w.expected[buffered ? 0 : 1].entryId.value_or(0);
        for (int steps = std::exchange(w.stepsIn, 0); steps > 0; --steps) {
            step(w);
        }
        Expected &e = w.expected[buffered ? 0 : 1];
        if (told != 0 && e.entryId == told) { // an association that ended meanwhile counts nothing
            e.orEntryId = told - 1;
        }
    }
    return static_cast<long>(length);
}

// A value of the form that the attribute has, or of any.
Data *someValue(World &w) {
    const u8 form = w.octet();
    const auto number = [&w] {
        const u32 value = w.octet();
        return value < 250 ? value : value << 24;
    };
    switch (form % 8) {
    case 0:
    case 1:
        return heapNumber(Data::boolean, form >> 7);
    case 2:
        return heapNumber(Data::unsignedInt, number());
    case 3:
        return heapNumber(Data::integer, number());
    case 4:
        return heapBits(form % 3 == 0 ? 6 : form % 3 == 1 ? 10 : form >> 3, w.octetString(4));
    case 5:
        return heapData(Data::octetString, std::string(7, '\0') + w.octetString(1));
    case 6:
        return heapData(Data::octetString, w.octetString(form % 12));
    default:
        return heapData(Data::visibleString, w.octetString(form % 5));
    }
}

void writeAttribute(World &w) {
    const u8 which = w.octet();
    RCB &rcb = aRCBObj[which & 1];
    const auto slot = static_cast<u8>(which >> 1 & 1);
    const std::string attribute = attributes[which / 4 % std::size(attributes)];
    GenNode *node = w.model.node(std::string(rcb.rcbRef) + "$" + attribute);
    node->fc = rcb.buffered != 0 ? FcBR : FcRP;
    Data *data = someValue(w);
    const RCB before = rcb;
    const bool wasEnabled = rcb.pStat->lastRptEna == 1;
    i8 error = DaeNone;
    const bool written = writeDataHandle(data, node, &error, slot);
    const std::string shownData = show(data);
    freeHeap(data);
    demand(written == (error == DaeNone), "either done or refused");
    Expected &e = w.expected[which & 1];
    const bool foreign = before.clientId < clientNone && before.clientId != slot;
    const bool locked = before.RptEna == 1 && attribute != "RptEna" && attribute != "GI";
    if (foreign || locked) {
        demand(!written, "a write is refused");
        demand(std::memcmp(&before, &rcb, sizeof rcb) == 0, "a refused write changes nothing");
        return;
    }
    if (!written) {
        return;
    }
    if (attribute == "RptEna" && rcb.RptEna != before.RptEna) {
        // Behind an owner that vanished the count goes on.
        e.sqNum = rcb.RptEna == 1 && !wasEnabled ? std::optional<u32>(0) : e.sqNum;
        if (rcb.RptEna == 0) {
            forgetAsked(e);
        }
    } else if (attribute == "PurgeBuf" && rcb.pStat->entrySeq == 0) {
        e.entryId = 1;
        e.orEntryId.reset();
    } else if (attribute == "EntryID") {
        e = {};
        const u64 id = std::stoull(shownData.substr(std::strlen("octets ")), nullptr, 16);
        e.entryId = id == 0 ? std::nullopt : std::optional<u64>(id + 1); // zeros: from the oldest on
        e.asked = true;
    } else if (attribute == "TrgOps") {
        w.changed = false; // the block begins to compare with what is there now
    }
}

void readAttribute(World &w) {
    const u8 which = w.octet();
    const RCB &rcb = aRCBObj[which & 1];
    demand(w.model.read(rcb, attributes[which / 2 % std::size(attributes)]) != "nothing",
           "attributes are readable");
}

void change(World &w) {
    w.values[w.octet() % w.values.size()] = ++w.changeCount;
    w.changed = true;
}

void monitorPass(World &w) {
    constexpr TimeStamp time = {1'600'000'000, 0, 10};
    for (RCB *rcb : {&aRCBObj[0], &aRCBObj[1]}) {
        const u64 before = rcb->pStat->writeCount;
        monEventRpt(rcb, &time);
        demand(!w.changed || rcb->buffered == 0 || (rcb->TrgOps & TrgDchg) == 0 || rcb->BufTm != 0 ||
                   rcb->pStat->writeCount > before,
               "a change makes an entry");
        monPeriodRpt(rcb, &time);
        demand(rcb->pStat->sendCount <= rcb->pStat->writeCount, "sending stays behind the entries");
    }
    w.changed = false;
}

void reportPass(World &w) {
    if (std::exchange(w.sending, true)) {
        return; // the report task is one
    }
    sendRpt();
    w.sending = false;
    for (u8 slot = 0; slot < clients; ++slot) {
        clientStat[slot].sendFail = 0;
    }
}

void step(World &w) {
    const u8 what = w.octet();
    switch (what % 16) {
    case 0:
    case 1:
    case 2:
    case 3:
    case 4:
        return writeAttribute(w);
    case 5:
        return readAttribute(w);
    case 6:
    case 7:
        return change(w);
    case 8:
    case 9:
        return monitorPass(w);
    case 10:
    case 11:
    case 12:
        return reportPass(w);
    case 13:
        return heldClockAdvance(u64{what} * 2);
    case 14:
        return w.vanish(static_cast<u8>(what >> 4 & 1));
    default:
        w.refuses = what >= 0x80;
        w.stepsIn = what >= 0x80 ? 0 : 1 + what / 16 % 4;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8 *data, std::size_t size) {
    [[maybe_unused]] static const auto *const tables = new Conversation; // of slots, and the settings
    World fresh({data, size});
    world = &fresh;
    socketOps.send = scriptedSend;
    while (!fresh.script.empty()) {
        step(fresh);
    }
    return 0;
}
