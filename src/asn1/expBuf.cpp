// The buffer blocks behind every encoder and decoder.
#include "asn1/ber.h"
#include "asn1/berCoding.h"
#include "basicInterface/memory.h"

#include <algorithm>
#include <cstring>

namespace ied {

namespace {

u32 available(const ExpBuf *block) {
    return static_cast<u32>(block->dataEnd - block->curr);
}

u8 ExpBufPeekByte(ExpBuf **buf) {
    ExpBuf *block = *buf;
    if (block->curr < block->dataEnd) {
        return *block->curr;
    }
    block->readError = 1;
    return 0;
}

u8 ExpBufGetByte(ExpBuf **buf) {
    const u8 octet = ExpBufPeekByte(buf);
    (*buf)->curr += (*buf)->curr < (*buf)->dataEnd;
    return octet;
}

const u8 *ExpBufPeekSeg(ExpBuf **buf, u32 *len) {
    *len = std::min(*len, available(*buf));
    return (*buf)->curr;
}

const u8 *ExpBufGetSeg(ExpBuf **buf, u32 *len) {
    const u8 *segment = ExpBufPeekSeg(buf, len);
    (*buf)->curr += *len;
    return segment;
}

u32 ExpBufPeekCopy(ExpBuf **buf, u8 *to, u32 len) {
    u32 there = len;
    const u8 *from = ExpBufPeekSeg(buf, &there);
    if (there) {
        std::memcpy(to, from, there);
    }
    if (there < len) {
        (*buf)->readError = 1;
    }
    return there;
}

u32 ExpBufCopy(ExpBuf **buf, u8 *to, u32 len) {
    const u32 copied = ExpBufPeekCopy(buf, to, len);
    (*buf)->curr += copied;
    return copied;
}

void ExpBufSkip(ExpBuf **buf, u32 len) {
    const u32 there = std::min(len, available(*buf));
    (*buf)->curr += there;
    if (there < len) {
        (*buf)->readError = 1;
    }
}

void ExpBufCopyAny(ExpBuf **buf, AsnOcts *out, u32 *bytesDecoded) {
    asn::Reader reader{*buf, nullptr};
    const u8 *start = (*buf)->curr;
    asn::readTag(reader);
    const u32 len = asn::readLen(reader);
    if (len == berIndefinite) {
        berFail(-95, "BDecUnknownAsnAny: ERROR - indef length object found\n");
    }
    if (len > asn::left(reader)) {
        berFail(-96, "BDecUnknownAsnAny: ERROR - decoded past end of data\n");
    }
    const u32 whole = static_cast<u32>((*buf)->curr - start) + len;
    out->octs = static_cast<u8 *>(Malloc(whole + std::size_t{1}));
    out->octetLen = whole;
    std::memcpy(out->octs, start, whole);
    (*buf)->curr += len;
    *bytesDecoded += whole;
}

// Chains a block in front of a full one, since writing goes backwards, and makes it the current one.
void chainBlock(ExpBuf **buf) {
    auto *block = static_cast<ExpBuf *>(Malloc(sizeof(ExpBuf) + expBufDataBlkSizeG));
    ExpBufInstallDataInBuf(block, reinterpret_cast<u8 *>(block + 1), expBufDataBlkSizeG);
    ExpBufResetInWriteRvsMode(block);
    block->writeError = (*buf)->writeError;
    block->next = *buf;
    (*buf)->prev = block;
    *buf = block;
}

void ExpBufPutSegRvs(ExpBuf **buf, const u8 *from, u32 len) {
    while (len) {
        if ((*buf)->dataStart == (*buf)->blkStart) {
            chainBlock(buf);
        }
        ExpBuf *block = *buf;
        const u32 part = std::min(len, static_cast<u32>(block->dataStart - block->blkStart));
        len -= part;
        block->dataStart -= part;
        std::memcpy(block->dataStart, from + len, part);
    }
}

void ExpBufPutByteRvs(ExpBuf **buf, u8 octet) {
    ExpBufPutSegRvs(buf, &octet, 1);
}

u32 ExpBufReadError(ExpBuf **buf) {
    return (*buf)->readError;
}

void ExpBufSetWriteError(ExpBuf **buf, u32 error) {
    (*buf)->writeError = error;
}

u32 ExpBufWriteError(ExpBuf **buf) {
    return (*buf)->writeError;
}

} // namespace

const GenBufOps expBufOpsG = {
    ExpBufCopyAny,    ExpBufGetByte,         ExpBufGetSeg,    ExpBufCopy,
    ExpBufSkip,       ExpBufPeekByte,        ExpBufPeekSeg,   ExpBufPeekCopy,
    ExpBufPutByteRvs, ExpBufPutSegRvs,       ExpBufReadError, ExpBufSetWriteError,
    ExpBufWriteError, ExpBufResetInReadMode,
};

ExpBuf *ExpBufAllocBuf() {
    return MallocOf<ExpBuf>();
}

void ExpBufInstallDataInBuf(ExpBuf *buf, u8 *data, u32 len) {
    *buf = {};
    buf->dataStart = buf->curr = buf->blkStart = data;
    buf->dataEnd = buf->blkEnd = data + len;
}

void ExpBuftoGenBuf(ExpBuf *buf, GenBuf **gen) {
    struct Bound {
        GenBuf gen;
        ExpBuf *current;
    };
    Bound *bound = MallocOf<Bound>();
    bound->current = buf;
    bound->gen = {&expBufOpsG, &bound->current};
    *gen = &bound->gen;
}

void ExpBufResetInWriteRvsMode(ExpBuf *buf) {
    buf->dataStart = buf->dataEnd = buf->blkEnd;
    buf->readError = 1;
    buf->writeError = 0;
}

void ExpBufResetInReadMode(ExpBuf **buf) {
    ExpBuf *first = *buf;
    while (first->prev) {
        first = first->prev;
    }
    for (ExpBuf *block = first; block; block = block->next) {
        block->curr = block->dataStart;
        block->readError = 0;
        block->writeError = 1;
    }
    *buf = first;
}

void berBufRead(BerBuf *buf, const u8 *data, u32 len) {
    ExpBufInstallDataInBuf(&buf->block, const_cast<u8 *>(data), len); // reading leaves it as it is
    buf->current = &buf->block;
    buf->gen = {&expBufOpsG, &buf->current};
}

void berBufWrite(BerBuf *buf, u8 *data, u32 len) {
    berBufRead(buf, data, len);
    ExpBufResetInWriteRvsMode(&buf->block);
}

bool berBufFits(const BerBuf *buf) {
    return !buf->block.prev;
}

void berBufRelease(BerBuf *buf) {
    for (ExpBuf *block = buf->block.prev; block;) {
        ExpBuf *further = block->prev;
        Free(block);
        block = further;
    }
    buf->block.prev = nullptr;
    buf->current = &buf->block;
}

} // namespace ied
