// The hot paths of reading and writing, straight on the buffer block.
#pragma once

#include "asn1/ber.h"

#include <cstring>

namespace ied::asn {

inline constexpr u32 constructedBit = 0x20000000; // of a tag

inline bool isConstructed(u32 tag) {
    return (tag & constructedBit) != 0;
}

// Octets of the identifier that `tag` holds.
constexpr u32 tagOctets(u32 tag) {
    if ((tag >> 24 & 0x1F) != 0x1F) {
        return 1;
    }
    u32 octets = 2;
    while (octets < 4 && (tag >> (32 - 8 * octets) & 0x80)) {
        ++octets;
    }
    return octets;
}

// ----------------------------------------------------------------------------------- writing

inline void putOctet(GenBuf *gen, u8 octet) {
    ExpBuf *block = *gen->bufInfo;
    if (block->dataStart > block->blkStart) {
        *--block->dataStart = octet;
    } else {
        gen->ops->BufPutByteRvs(gen->bufInfo, octet);
    }
}

// Writes `len` octets, which may be none; returns their count.
inline u32 putOctets(GenBuf *gen, const u8 *from, u32 len) {
    ExpBuf *block = *gen->bufInfo;
    if (len > static_cast<u32>(block->dataStart - block->blkStart)) {
        gen->ops->BufPutSegRvs(gen->bufInfo, from, len);
    } else if (len) {
        block->dataStart -= len;
        std::memcpy(block->dataStart, from, len);
    }
    return len;
}

// Writes the tag and length in front of `len` content octets; returns the octets of all three.
inline u32 putHeader(GenBuf *gen, u32 tag, u32 len) {
    u32 octets = len;
    if (len < 0x80) {
        putOctet(gen, static_cast<u8>(len));
        ++octets;
    } else {
        octets += BEncDefLen(gen, len);
    }
    if (tagOctets(tag) == 1) {
        putOctet(gen, static_cast<u8>(tag >> 24));
        return octets + 1;
    }
    return octets + BEncTag(gen, tag);
}

// ----------------------------------------------------------------------------------- reading

// A block being read and what the decode carries with it. The block's end is moved in to the end
// of the innermost value of definite length, so that no read leaves its parent.
struct Reader {
    ExpBuf *block;
    DecodeEnv *env;
};

inline u32 left(const Reader &reader) {
    return static_cast<u32>(reader.block->dataEnd - reader.block->curr);
}

u32 readLongTag(Reader &reader);
u32 readLongLen(Reader &reader);

// Throws -74.
inline u32 readTag(Reader &reader) {
    ExpBuf *block = reader.block;
    if (block->curr < block->dataEnd && (*block->curr & 0x1F) != 0x1F) {
        return static_cast<u32>(*block->curr++) << 24;
    }
    return readLongTag(reader);
}

// Throws -41 to -43.
inline u32 readLen(Reader &reader) {
    ExpBuf *block = reader.block;
    if (block->curr < block->dataEnd && *block->curr < 0x80) {
        return *block->curr++;
    }
    return readLongLen(reader);
}

// The content of a constructed value: elements up to its end, in either form of length.
class Scope {
  public:
    // Throws `code` when the content would leave its parent.
    Scope(Reader &reader, u32 len, i32 code)
        : reader_(reader), outerEnd_(reader.block->dataEnd), indefinite_(len == berIndefinite) {
        if (indefinite_) {
            return;
        }
        if (len > left(reader)) {
            berFail(code, "ERROR - decoded past end of data\n");
        }
        reader.block->dataEnd = reader.block->curr + len;
    }

    // Tag of the next element, or 0 behind the last one, where the end-of-contents is consumed.
    u32 nextTag() {
        if (!indefinite_ && reader_.block->curr == reader_.block->dataEnd) {
            return 0;
        }
        const u32 tag = readTag(reader_);
        if (tag == 0) {
            readEndOfContents();
        }
        return tag;
    }

    // Gives the parent its end back. Not called when a decode is left by an error: nothing is read
    // after one.
    void close() { reader_.block->dataEnd = outerEnd_; }

  private:
    void readEndOfContents() {
        if (!indefinite_) {
            berFail(-48, "Unexpected Tag\n");
        }
        if (left(reader_) == 0 || *reader_.block->curr != 0) {
            berFail(-49, "ERROR - second octet of EOC not zero\n");
        }
        ++reader_.block->curr;
    }

    Reader &reader_;
    u8 *outerEnd_;
    bool indefinite_;
};

// One level of nesting, as long as it lives.
class Nesting {
  public:
    explicit Nesting(u32 &depth) : depth_(depth) {
        if (++depth_ > berDepthLimit) {
            berFail(-97, "ERROR - nested too deep\n");
        }
    }
    ~Nesting() { --depth_; }
    Nesting(const Nesting &) = delete;
    Nesting &operator=(const Nesting &) = delete;

  private:
    u32 &depth_;
};

} // namespace ied::asn
