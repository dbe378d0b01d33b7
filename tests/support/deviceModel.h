// What tests of the device layer stand on: a region of their own, a held clock, and models from a
// few lines of SCL.
#pragma once

#include "basicInterface/clock.h"
#include "basicInterface/nodeTree.h"
#include "device/externGlbCfg.h"
#include "device/protoData.h"
#include "device/region.h"
#include "platform/platform.h"
#include "tests/support/regionValues.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace ied::test {

// An empty region and an empty mirror; the clock stands at `utc` seconds while it lives, moved by
// waits if `movesItself`.
class DeviceState {
  public:
    explicit DeviceState(u32 utc = 1000000, bool movesItself = true) {
        base = static_cast<u8 *>(::mmap(nullptr, regionSize, PROT_READ | PROT_WRITE,
                                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
        comdata = base;
        std::memset(protoData, 0, protoDataSize);
        heldClockStart(utc, movesItself);
        fdRtc = clockDeviceOpen("/unix");
    }
    ~DeviceState() {
        heldClockStop();
        ::munmap(base, regionSize);
        comdata = nullptr;
    }
    DeviceState(const DeviceState &) = delete;
    DeviceState &operator=(const DeviceState &) = delete;

    // Writes a value at an octet of the region, as the device manager does.
    template <class T> void put(u32 offset, T value) { storeValue(base + offset, value); }
    template <class T> T get(u32 offset) const { return loadValue<T>(base + offset); }
    void raise(u32 offset) { raiseCounter(base + offset); }
    void putTime(u32 offset, u32 sec, u32 ms, u8 tq) {
        put(offset, sec);
        put(offset + 4, ms);
        put(offset + 8, tq);
    }

  private:
    u8 *base;
};

inline bool operator==(const TimeStamp &a, const TimeStamp &b) {
    return a.sec == b.sec && a.ms == b.ms && a.tq == b.tq;
}

// Record of the mirror by its short address; the test ends if there is none.
template <class T> T &record(const std::string &sAddr) {
    const MapPlace place = resolveSAddr(sAddr);
    if (!isRecordOf<T>(place.nodeType)) {
        std::fprintf(stderr, "no such record: %s\n", sAddr.c_str());
        std::abort();
    }
    return *reinterpret_cast<T *>(protoData + place.offset);
}

// Gives the setting of that short address a value under edit.
inline void edit(const std::string &sAddr, f64 value) {
    switch (resolveSAddr(sAddr).nodeType) {
    case CdcING:
        record<ING>(sAddr).setVal[SetSE] = static_cast<i32>(value);
        break;
    case CdcASG:
        record<ASG>(sAddr).setMag[SetSE] = static_cast<f32>(value);
        break;
    case CdcENG:
        record<ENG>(sAddr).setVal[SetSE] = static_cast<i8>(value);
        break;
    default:
        record<SPG>(sAddr).setVal[SetSE] = static_cast<u8>(value);
    }
}

// A list of nodes as a setting group control block has it.
struct NodeList {
    explicit NodeList(const std::vector<GenNode *> &nodes) : list(asnListNewPtr()) {
        for (GenNode *node : nodes) {
            asnListPush(list, node);
        }
    }
    ~NodeList() { AsnListFree(list); }
    NodeList(const NodeList &) = delete;
    NodeList &operator=(const NodeList &) = delete;
    AsnList *list;
};

// The file of an IED "Q" with one device "LD0": its LLN0 and GGIO1 of the type "G" with what `dois`
// instantiates, `types` being DOType, DAType and EnumType elements and `dos` the DO of the type.
inline std::string ggioFile(const std::string &dos, const std::string &types, const std::string &dois,
                            const std::string &inDevice = "", const std::string &inIed = "") {
    return "<?xml version='1.0'?><SCL><Header id='t'/><IED name='Q'>" + inIed +
           "<AccessPoint name='S'><Server><LDevice inst='LD0'><LN0 lnClass='LLN0' inst='' lnType='Z'>" +
           inDevice + "</LN0><LN lnClass='GGIO' inst='1' lnType='G'>" + dois +
           "</LN></LDevice></Server></AccessPoint></IED><DataTypeTemplates><LNodeType id='Z' "
           "lnClass='LLN0'></LNodeType><LNodeType id='G' lnClass='GGIO'>" +
           dos + "</LNodeType>" + types + "</DataTypeTemplates></SCL>";
}

// A file with that content while it lives.
struct TextFile {
    explicit TextFile(const std::string &text) {
        char name[] = "/tmp/iedModelXXXXXX";
        const int fd = ::mkstemp(name);
        path = name;
        if (fd < 0 || ::write(fd, text.data(), text.size()) != static_cast<long>(text.size())) {
            std::abort();
        }
        ::close(fd);
        externGlbCfgInit();
        hostModelOptions.icdOnHost = true;
        hostModelOptions.modelPool = 0x500000;
    }
    ~TextFile() { ::unlink(path.c_str()); }
    TextFile(const TextFile &) = delete;
    TextFile &operator=(const TextFile &) = delete;
    std::string path;
};

// Node of a reference "LN$FC$DO..." of the device QLD0; the test ends if there is none.
inline GenNode *nodeOf(const std::string &item) {
    GenNode *node = nullptr;
    if (!searchNodeByStr("QLD0", item.c_str(), &node)) {
        std::fprintf(stderr, "no such node: %s\n", item.c_str());
        std::abort();
    }
    return node;
}

} // namespace ied::test
