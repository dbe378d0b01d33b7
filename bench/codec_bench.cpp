// Octets to values and back: one leaf, and what each further leaf costs. `copy` moves the same
// octets with memcpy, as the bound that no codec can pass.
#include "asn1/mmsCodec.h"

#include <benchmark/benchmark.h>
#include <cstring>
#include <vector>

namespace ied {
namespace {

using Octets = std::vector<u8>;

Octets element(u8 tag, const Octets &content) {
    Octets all(content.size() + 8);
    BerBuf buf;
    berBufWrite(&buf, all.data(), static_cast<u32>(all.size()));
    buf.gen.ops->BufPutSegRvs(buf.gen.bufInfo, content.data(), static_cast<u32>(content.size()));
    BEncDefLen(&buf.gen, static_cast<u32>(content.size()));
    BEncTag(&buf.gen, u32{tag} << 24);
    return {buf.block.dataStart, buf.block.dataEnd};
}

Octets operator+(Octets left, const Octets &right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Octets text(const char *value) {
    return {value, value + std::strlen(value)};
}

const Octets invokeId = {2, 1, 5};

// A Read of `leaves` variables.
Octets readRequest(int leaves) {
    const Octets name =
        element(0xA1, element(0x1A, text("ZRX418MEAS")) + element(0x1A, text("MMXU1$MX$TotW$mag$f")));
    const Octets variable = element(0x30, element(0xA0, name));
    Octets variables;
    for (int i = 0; i < leaves; ++i) {
        variables = variables + variable;
    }
    return element(0xA0, invokeId + element(0xA4, element(0xA1, element(0xA0, variables))));
}

// Its response: a float each.
Octets readResponse(int leaves) {
    Octets results;
    for (int i = 0; i < leaves; ++i) {
        results = results + element(0x87, {8, 0x43, 0x5C, 0, 0});
    }
    return element(0xA1, invokeId + element(0xA4, element(0xA1, results)));
}

void decodePdu(const Octets &octets, MMSpdu *pdu) {
    BerBuf buf;
    berBufRead(&buf, octets.data(), static_cast<u32>(octets.size()));
    DecodeEnv env;
    u32 bytesDecoded = 0;
    BDecMMSpdu(&buf.gen, pdu, &bytesDecoded, &env);
}

void setLeaves(benchmark::State &state, std::size_t octets) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * static_cast<i64>(octets));
}

void decodeReadRequest(benchmark::State &state) {
    const Octets octets = readRequest(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        MMSpdu pdu{};
        decodePdu(octets, &pdu);
        benchmark::DoNotOptimize(pdu);
        FreeMMSpdu(&pdu);
    }
    setLeaves(state, octets.size());
}

void encodeReadResponse(benchmark::State &state) {
    const Octets octets = readResponse(static_cast<int>(state.range(0)));
    MMSpdu pdu{};
    decodePdu(octets, &pdu);
    Octets room(octets.size());
    for (auto _ : state) {
        BerBuf buf;
        berBufWrite(&buf, room.data(), static_cast<u32>(room.size()));
        benchmark::DoNotOptimize(BEncMMSpduContent(&buf.gen, &pdu));
        benchmark::ClobberMemory();
    }
    if (room != octets) {
        state.SkipWithError("the encoding is another one");
    }
    FreeMMSpdu(&pdu);
    setLeaves(state, octets.size());
}

void copyReadResponse(benchmark::State &state) {
    const Octets octets = readResponse(static_cast<int>(state.range(0)));
    Octets room(octets.size());
    for (auto _ : state) {
        std::memcpy(room.data(), octets.data(), octets.size());
        benchmark::ClobberMemory();
    }
    setLeaves(state, octets.size());
}

BENCHMARK(decodeReadRequest)->Arg(1)->Arg(100)->Arg(1000);
BENCHMARK(encodeReadResponse)->Arg(1)->Arg(100)->Arg(1000);
BENCHMARK(copyReadResponse)->Arg(1)->Arg(100)->Arg(1000);

} // namespace
} // namespace ied
