#include "device/externGlbCfg.h"
#include "proto-process/c/client.h"
#include "proto-process/c/octets.h"
#include "proto-process/c/services.h"

#include <algorithm>
#include <cstring>

namespace ied {

namespace {

constexpr AsnInt maxOutstandingCalling = 1;
constexpr AsnInt maxOutstandingCalled = 5;
constexpr AsnInt maxNesting = 5;
constexpr AsnInt mmsVersion = 1;

constexpr u32 parameterBits = 11;
constexpr u32 parameterOctets = 2;
constexpr u32 serviceBits = 85;
constexpr u32 serviceOctets = 11;

constexpr u8 listEnd = 0xFF;

// ParameterSupportOptions that are served: str1, str2, vnam, valt, vlis.
constexpr u8 parameterSupport[] = {0, 1, 2, 3, 7, listEnd};

void setBit(u8 *bits, u32 n) {
    bits[n / 8] = static_cast<u8>(bits[n / 8] | 0x80 >> n % 8);
}

// Sets the bits that `list` numbers, below `limit`; at most `limit` entries are read.
template <std::size_t size> void setBits(u8 *bits, const u8 (&list)[size], u32 limit) {
    for (u32 i = 0; i < std::min<std::size_t>(size, limit) && list[i] != listEnd; ++i) {
        if (list[i] < limit) {
            setBit(bits, list[i]);
        }
    }
}

// Octet `n` of a bit string; 0 beyond its end.
u8 octetOf(const AsnBits &bits, u32 n) {
    return bits.bits != nullptr && n < (bits.bitLen + 7) / 8 ? bits.bits[n] : u8{0};
}

} // namespace

void getSupportCBB(u8 *bits) {
    std::memset(bits, 0, parameterOctets);
    setBits(bits, parameterSupport, parameterBits + 1);
}

void getSupportServ(u8 *bits) {
    std::memset(bits, 0, serviceOctets);
    setBits(bits, externGlbCfg.mmsServiceParam, serviceNum);
}

void updateSupportServ(const u8 *bits, u8 *table) {
    for (u32 n = 0; n < serviceNum; ++n) {
        table[n] = (bits[n / 8] & 0x80 >> n % 8) != 0;
    }
}

i8 initiateProcess(const Initiate_RequestPDU *request, Initiate_ResponsePDU *response, u8 slot) {
    const AsnInt *calling = request->localDetailCalling;
    const auto limit = static_cast<AsnInt>(externGlbCfg.maxMmsPduSize);
    const AsnInt detail = calling == nullptr ? 0 : std::min(limit, *calling);
    response->localDetailCalled = newAsnInt(detail);
    response->negociatedMaxServOutstandingCalling =
        std::min(maxOutstandingCalling, request->proposedMaxServOutstandingCalling);
    response->negociatedMaxServOutstandingCalled =
        std::min(maxOutstandingCalled, request->proposedMaxServOutstandingCalled);
    if (request->proposedDataStructureNestingLevel != nullptr) {
        response->negociatedDataStructureNestingLevel =
            newAsnInt(std::min(maxNesting, *request->proposedDataStructureNestingLevel));
    }

    auto *details = MallocOf<InitResponseDetail>();
    response->mmsInitResponseDetail = details;
    details->negociatedVersionNumber = mmsVersion;
    details->negociatedParameterCBB = {parameterBits, MallocArray<u8>(parameterOctets)};
    getSupportCBB(details->negociatedParameterCBB.bits);
    for (u32 n = 0; n < parameterOctets; ++n) {
        u8 &octet = details->negociatedParameterCBB.bits[n];
        octet &= octetOf(request->mmsInitRequestDetail->proposedParameterCBB, n);
    }
    details->servicesSupportedCalled = {serviceBits, MallocArray<u8>(serviceOctets)};
    getSupportServ(details->servicesSupportedCalled.bits);

    ClientStat *stat = &clientStat[slot];
    stat->pduSize = static_cast<u32>(std::max(detail, 0));
    updateSupportServ(details->servicesSupportedCalled.bits, stat->supportServ);
    return serviceSuccess;
}

} // namespace ied
