// Reports: the compare of monitored leaves against a plain load and compare of the same words, and
// reports of 1, 32 and 500 members built, encoded and sent against a copy of their octets and a bare
// send of the same frames. Time per report; the ratios follow from one run.
#include "basicInterface/clock.h"
#include "basicInterface/complexData.h"
#include "basicInterface/memory.h"
#include "device/addressBinding.h"
#include "device/externGlbCfg.h"
#include "device/region.h"
#include "platform/platform.h"
#include "proto-process/c/client.h"
#include "proto-process/c/reportEncode.h"
#include "proto-process/c/reportModel.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <cstring>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <string>
#include <sys/mman.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace ied;

constexpr int sizes[] = {1, 32, 500};

// A model of 500 measured values, all bound to one record, with a data set and a block of each size.
std::string modelText() {
    std::string dataSets;
    std::string blocks;
    for (const int size : sizes) {
        const std::string name = std::to_string(size);
        dataSets += "<DataSet name=\"ds" + name + "\">";
        for (int i = 1; i <= size; i++) {
            dataSets += "<FCDA ldInst=\"LD0\" lnClass=\"GGIO\" lnInst=\"1\" doName=\"AnIn" +
                        std::to_string(i) + "\" fc=\"MX\"/>";
        }
        dataSets += "</DataSet>";
        blocks += "<ReportControl name=\"brcb" + name + "\" rptID=\"r\" datSet=\"ds" + name +
                  "\" buffered=\"true\" confRev=\"1\"><TrgOps dchg=\"true\"/><OptFields seqNum=\"true\" "
                  "timeStamp=\"true\" reasonCode=\"true\" entryID=\"true\" bufOvfl=\"true\"/><RptEnabled "
                  "max=\"1\"/></ReportControl>";
    }
    std::string dois;
    std::string dos;
    for (int i = 1; i <= sizes[2]; i++) {
        const std::string name = "AnIn" + std::to_string(i);
        dois +=
            "<DOI name=\"" + name + "\"><SDI name=\"mag\"><DAI name=\"f\" sAddr=\"RT.TotW\"/></SDI></DOI>";
        dos += "<DO name=\"" + name + "\" type=\"MV\"/>";
    }
    return "<?xml version=\"1.0\"?><SCL><Header id=\"b\"/><IED name=\"Q\"><AccessPoint name=\"S\"><Server>"
           "<LDevice inst=\"LD0\"><LN0 lnClass=\"LLN0\" inst=\"\" lnType=\"Z\">" +
           dataSets + blocks + "</LN0><LN lnClass=\"GGIO\" inst=\"1\" lnType=\"G\">" + dois +
           "</LN></LDevice></Server></AccessPoint></IED><DataTypeTemplates><LNodeType id=\"Z\" "
           "lnClass=\"LLN0\"/><LNodeType id=\"G\" lnClass=\"GGIO\">" +
           dos +
           "</LNodeType><DOType id=\"MV\" cdc=\"MV\"><DA name=\"mag\" fc=\"MX\" bType=\"Struct\" type=\"AV\" "
           "dchg=\"true\"/><DA name=\"q\" fc=\"MX\" bType=\"Quality\" qchg=\"true\"/><DA name=\"t\" "
           "fc=\"MX\" "
           "bType=\"Timestamp\"/></DOType><DAType id=\"AV\"><BDA name=\"f\" bType=\"FLOAT32\"/></DAType>"
           "</DataTypeTemplates></SCL>";
}

int ends[2]; // of the connection: the server's, and the one that a task empties

// A TCP connection of this host, as a client's is.
bool connectEnds() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    socklen_t length = sizeof address;
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    ends[1] = ::socket(AF_INET, SOCK_STREAM, 0);
    if (::bind(listener, generic, length) != 0 || ::listen(listener, 1) != 0 ||
        ::getsockname(listener, generic, &length) != 0 || ::connect(ends[1], generic, length) != 0) {
        return false;
    }
    ends[0] = ::accept(listener, nullptr, nullptr);
    const int on = 1;
    return ends[0] >= 0 && ::setsockopt(ends[0], IPPROTO_TCP, TCP_NODELAY, &on, sizeof on) == 0;
}

bool setUp() {
    char path[] = "/tmp/iedBenchXXXXXX";
    const int fd = ::mkstemp(path);
    const std::string text = modelText();
    if (fd < 0 || ::write(fd, text.data(), text.size()) != static_cast<long>(text.size())) {
        return false;
    }
    ::close(fd);
    comdata = static_cast<u8 *>(::mmap(nullptr, regionSize, PROT_READ | PROT_WRITE,
                                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
    externGlbCfgInit();
    hostModelOptions.icdOnHost = true;
    hostModelOptions.modelPool = 0x500000 * sizeof(void *) / 4;
    fdRtc = clockDeviceOpen("/unix");
    const bool made = modelCfgInit(path);
    ::unlink(path);
    clientStatInit();
    clientSemInit();
    if (!made || !connectEnds()) {
        return false;
    }
    clientStat[0].status = CS_DATA;
    clientStat[0].sockFd = ends[0];
    std::thread([] {
        std::vector<u8> octets(1 << 20);
        while (::recv(ends[1], octets.data(), octets.size(), 0) > 0) {
        }
    }).detach();
    return true;
}

ReportMaker maker;

// The block with the data set of that number. Everything stands from the first call on.
RCB *block(i64 number) {
    [[maybe_unused]] static const bool made = [] {
        if (!setUp()) {
            std::abort();
        }
        reportMakerInit(&maker);
        return true;
    }();
    return &aRCBObj[number];
}

// ------------------------------------------------------------------------------------ compare

void compareLeaves(benchmark::State &bench) {
    DsMonitor *monitor = &block(2)->pStat->monitor;
    for (auto _ : bench) {
        benchmark::DoNotOptimize(dsMonitor(monitor, TrgDchg | TrgQchg));
    }
    bench.counters["leaves"] = monitor->num;
}

// The same words, found by the same pointers: what no compare can do without.
void plainCompare(benchmark::State &bench) {
    const DsMonitor *monitor = &block(2)->pStat->monitor;
    for (auto _ : bench) {
        u32 changed = 0;
        for (u32 i = 0; i < monitor->num; i++) {
            const MonDAI &entry = monitor->list[i];
            const void *place = nodeData(entry.leaf);
            const u32 value = entry.cmpKind == MonWord ? *static_cast<const u32 *>(place)
                                                       : *static_cast<const u16 *>(place);
            changed += value != entry.oldValue;
        }
        benchmark::DoNotOptimize(changed);
    }
}

// ------------------------------------------------------------------------------------- reports

RptEntry *fullEntry(const RCB *rcb) {
    RptEntry *entry = entryAt(rcb->pStat, 0);
    std::memset(entry->included, 1, rcb->pDataSet->memberNum);
    std::memset(entry->reasons, TrgDchg, rcb->pDataSet->memberNum);
    const AsnListElement *element = rcb->pDataSet->nodes->first;
    for (u32 i = 0; element != nullptr; element = element->next, i++) {
        copyNodeData(&entry->data[i], const_cast<GenNode *>(asnListValue<GenNode>(element)));
    }
    return entry;
}

void buildAndEncode(benchmark::State &bench) {
    const RCB *rcb = block(bench.range(0));
    const RptEntry *entry = fullEntry(rcb);
    u32 length = 0;
    for (auto _ : bench) {
        benchmark::DoNotOptimize(length = encodeReport(&maker, rcb, entry));
    }
    bench.counters["octets"] = length;
}

void buildAndSend(benchmark::State &bench) {
    const RCB *rcb = block(bench.range(0));
    const RptEntry *entry = fullEntry(rcb);
    for (auto _ : bench) {
        if (!sendPacket(maker.buffer, encodeReport(&maker, rcb, entry), 0)) {
            bench.SkipWithError("not sent");
        }
    }
}

void copyOfOctets(benchmark::State &bench) {
    const RCB *rcb = block(bench.range(0));
    const u32 length = encodeReport(&maker, rcb, fullEntry(rcb));
    std::vector<u8> copy(length);
    for (auto _ : bench) {
        std::memcpy(copy.data(), encodedPacket(maker.buffer, length), length);
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
}

// The frames of the same report, each by one call.
void bareSend(benchmark::State &bench) {
    const RCB *rcb = block(bench.range(0));
    const u32 length = encodeReport(&maker, rcb, fullEntry(rcb));
    const u8 *packet = encodedPacket(maker.buffer, length);
    constexpr u32 headers = tpktOctets + dtOctets; // of each frame
    for (auto _ : bench) {
        for (u32 at = 0, frame = 0; at + headers < length; at += frame - headers) {
            frame = std::min(externGlbCfg.maxTpduSize, length - at);
            if (::send(ends[0], packet + at, frame, 0) != static_cast<long>(frame)) {
                bench.SkipWithError("not sent");
            }
        }
    }
}

BENCHMARK(compareLeaves);
BENCHMARK(plainCompare);
BENCHMARK(buildAndEncode)->DenseRange(0, 2);
BENCHMARK(copyOfOctets)->DenseRange(0, 2);
BENCHMARK(buildAndSend)->DenseRange(0, 2);
BENCHMARK(bareSend)->DenseRange(0, 2);

} // namespace
