// MMS PDUs of an association, one behind the other, against a live small model: each is put into a
// session data frame and given to packetReply on a held clock. The whole path runs: framing,
// reassembly, decoding, dispatch, services, encoding. IED_FUZZ_COUNTS=1 prints at the end how many
// PDUs reached which service.
#include "fuzz/berMutator.h"
#include "proto-process/c/services.h"
#include "tests/support/conversation.h"
#include "tests/support/smallModel.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace ied;

extern "C" std::size_t LLVMFuzzerMutate(u8 *data, std::size_t size, std::size_t maxSize);

namespace {

std::array<u64, 256> reached;
u64 pdus;
u64 inputs, inputsThatReached;
bool reachedNow;

// Inputs that reached a service lately: every other mutation starts from one of them.
std::array<std::vector<u8>, 512> good;
std::size_t goodNext;

void printCounts() {
    u64 all = 0;
    for (const u64 n : reached) {
        all += n;
    }
    std::fprintf(stderr, "inputs %llu, with a service %llu; PDUs %llu, in the dispatch of services %llu\n",
                 static_cast<unsigned long long>(inputs), static_cast<unsigned long long>(inputsThatReached),
                 static_cast<unsigned long long>(pdus), static_cast<unsigned long long>(all));
    for (std::size_t i = 0; i < reached.size(); ++i) {
        if (reached[i] != 0) {
            std::fprintf(stderr, "  service %zu: %llu\n", i, static_cast<unsigned long long>(reached[i]));
        }
    }
}

// Puts the PDU into a session data frame with the context of MMS.
void frameAround(std::span<const u8> pdu, std::vector<u8> *frame) {
    // Long forms of two octets throughout: valid, and the same place for every size.
    const std::size_t value = pdu.size();
    const std::size_t list = value + 7;
    const std::size_t body = list + 4;
    const std::size_t length = body + 4 + 11;
    const auto high = [](std::size_t n) { return static_cast<u8>(n >> 8); };
    const auto low = [](std::size_t n) { return static_cast<u8>(n); };
    *frame = {3, 0,    high(length), low(length), 2,           0xF0,      0x80, 1,          0,         1,
              0, 0x61, 0x82,         high(body),  low(body),   0x30,      0x82, high(list), low(list), 0x02,
              1, 3,    0xA0,         0x82,        high(value), low(value)};
    frame->insert(frame->end(), pdu.begin(), pdu.end());
}

struct World {
    test::SmallModel model;
    test::Conversation conversation;
    World() {
        if (std::getenv("IED_FUZZ_COUNTS") != nullptr) {
            std::atexit(printCounts);
        }
        conversation.reachData();
    }
};

World &world() {
    static World *const made = new World;
    return *made;
}

} // namespace

// NOLINTBEGIN: the names that the linker's --wrap makes of the dispatch
extern "C" i8
__real__ZN3ied20confirmedServiceProcEPKNS_23ConfirmedServiceRequestEPNS_24ConfirmedServiceResponseEh(
    const ConfirmedServiceRequest *request, ConfirmedServiceResponse *response, u8 clientId);
extern "C" i8
__wrap__ZN3ied20confirmedServiceProcEPKNS_23ConfirmedServiceRequestEPNS_24ConfirmedServiceResponseEh(
    const ConfirmedServiceRequest *request, ConfirmedServiceResponse *response, u8 clientId) {
    ++reached[request->choiceId & 0xFF];
    reachedNow = true;
    return __real__ZN3ied20confirmedServiceProcEPKNS_23ConfirmedServiceRequestEPNS_24ConfirmedServiceResponseEh(
        request, response, clientId);
}
// NOLINTEND

extern "C" int LLVMFuzzerTestOneInput(const u8 *data, std::size_t size) {
    World &w = world();
    ClientStat &client = clientStat[w.conversation.slot];
    client.status = CS_DATA;
    reachedNow = false;
    std::memset(client.supportServ, 1, sizeof client.supportServ);
    static std::vector<u8> frame;
    for (const fuzz::BerPlace &place : fuzz::outerElements({data, size})) {
        ++pdus;
        frameAround({data + place.begin, place.end - place.begin}, &frame);
        w.conversation.give(frame);
        if (w.conversation.status() < CS_ASSOCIATED) {
            break;
        }
    }
    w.conversation.restart(); // what did not decode is forgotten
    ++inputs;
    if (reachedNow) {
        ++inputsThatReached;
        good[goodNext++ % good.size()].assign(data, data + size);
    }
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(u8 *data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
    const std::vector<u8> &from = good[seed / 2 % good.size()];
    if (seed % 2 == 0 && !from.empty() && from.size() <= maxSize) {
        std::memcpy(data, from.data(), from.size());
        size = from.size();
    }
    if (seed % 5 != 0 && fuzz::mutateInPlace({data, size}, seed / 5)) {
        return size;
    }
    std::vector<fuzz::BerElement> elements = fuzz::parseBer({data, size});
    if (elements.empty() || seed % 33 == 0) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    fuzz::mutateBer(&elements[seed / 7 % elements.size()], seed / 5, LLVMFuzzerMutate);
    std::vector<u8> out;
    for (const fuzz::BerElement &element : elements) {
        const std::vector<u8> octets = fuzz::writeBer(element);
        out.insert(out.end(), octets.begin(), octets.end());
    }
    if (out.empty() || out.size() > maxSize) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    std::memcpy(data, out.data(), out.size());
    return out.size();
}
