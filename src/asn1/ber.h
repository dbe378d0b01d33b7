// The run-time below all ASN.1 codecs: Basic Encoding Rules (ISO 8825-1) over a byte buffer that is
// written backwards, from its end to its start, so that every length is known when it is written.
//
// Every ASN.1 type T has three operations:
//   u32 BEnc<T>Content(gen, value)   writes the content octets in front of what is there and returns
//       their count; of a CHOICE it writes the whole chosen alternative with its tag and length;
//   void BDec<T>Content(gen, tag, len, value, &bytesDecoded, env)   reads content behind a tag and a
//       length (0xFFFFFFFF: indefinite) that were read already, and adds its octets to bytesDecoded;
//       `value` is a zeroed record. Throws BerError at the first error; what was decoded until then
//       hangs from `value`;
//   void Free<T>(value)   frees what hangs from the record, also after a decode that stopped half
//       way, and leaves it empty; the record itself is its caller's.
// All state is per call: tasks encode and decode in parallel.
#pragma once

#include "asn1/berTypes.h"

namespace ied {

// ------------------------------------------------------------------------------------ errors

// The non-local exit of every decoder. `code` is negative and tells the place that refused.
struct BerError {
    i32 code;
};

// What one decode carries down to every level.
struct DecodeEnv {
    u32 depth = 0;                // nested structures, arrays, accesses and descriptions so far
    bool mms = false;             // PDV lists hold MMS PDUs; otherwise ACSE PDUs
    bool acceptRejectPdu = false; // the calling side receives rejectPDUs; a server refuses them
};

// Nesting of outside data that is followed, at most; deeper is an error.
inline constexpr u32 berDepthLimit = 32;
inline constexpr u32 berIndefinite = 0xFFFFFFFF;

using Asn1ErrorHandler = void (*)(const char *text);
// The handler in force. Read and written as a whole, from any task.
extern Asn1ErrorHandler asn1CurrentErrorHandler;
// Gives the text of a decoding error to the handler in force.
void Asn1Error(const char *text);
// Does nothing.
void Asn1DefaultErrorHandler(const char *text);
// Puts `handler` in force (null: the default one) and returns the one before.
Asn1ErrorHandler Asn1InstallErrorHandler(Asn1ErrorHandler handler);

// Reports `text`, if there is one, and throws BerError.
[[noreturn]] void berFail(i32 code, const char *text = nullptr);

// ----------------------------------------------------------------------------------- buffers

struct ExpBuf {
    u8 *dataStart, *dataEnd; // the octets that are there
    u8 *curr;                // next octet to read
    ExpBuf *next, *prev;
    u8 *blkStart, *blkEnd; // limits of the block
    u32 readError, writeError;
};

// Size of a block that is chained when an encoding outgrows its buffer.
inline constexpr u32 expBufDataBlkSizeG = 1024;

// The operations of a buffer. Each takes the word that points to the current block.
struct GenBufOps {
    // Copies one whole element (tag, length, content) into `out`. Throws -95 and -96.
    void (*BufCopyAny)(ExpBuf **buf, AsnOcts *out, u32 *bytesDecoded);
    u8 (*BufGetByte)(ExpBuf **buf); // 0 and readError at the end
    // Hands out a pointer to at most *len octets, passes over them and sets *len to their count.
    const u8 *(*BufGetSeg)(ExpBuf **buf, u32 *len);
    u32 (*BufCopy)(ExpBuf **buf, u8 *to, u32 len); // octets copied; readError when fewer than len
    void (*BufSkip)(ExpBuf **buf, u32 len);
    u8 (*BufPeekByte)(ExpBuf **buf);
    const u8 *(*BufPeekSeg)(ExpBuf **buf, u32 *len);
    u32 (*BufPeekCopy)(ExpBuf **buf, u8 *to, u32 len);
    void (*BufPutByteRvs)(ExpBuf **buf, u8 octet);
    void (*BufPutSegRvs)(ExpBuf **buf, const u8 *from, u32 len);
    u32 (*BufReadError)(ExpBuf **buf);
    void (*BufSetWriteError)(ExpBuf **buf, u32 error);
    u32 (*BufWriteError)(ExpBuf **buf);
    void (*BufResetInReadMode)(ExpBuf **buf);
};

extern const GenBufOps expBufOpsG;

struct GenBuf {
    const GenBufOps *ops;
    ExpBuf **bufInfo; // the word that points to the current block
};

// A zeroed record, to be given to Free.
ExpBuf *ExpBufAllocBuf();
// Makes `data` the block. It stays the caller's and outlives the buffer.
void ExpBufInstallDataInBuf(ExpBuf *buf, u8 *data, u32 len);
// Allocates a buffer interface bound to `buf`, to be given to Free.
void ExpBuftoGenBuf(ExpBuf *buf, GenBuf **gen);
void ExpBufResetInWriteRvsMode(ExpBuf *buf);
// Every block of the chain back to reading from its start.
void ExpBufResetInReadMode(ExpBuf **buf);

// A buffer over fixed memory with all its parts in one record, for one decode or one encode
// without an allocation. Not to be copied: its parts point to each other.
struct BerBuf {
    ExpBuf block;
    ExpBuf *current;
    GenBuf gen;
};

// Makes `buf` read the `len` octets of `data`.
void berBufRead(BerBuf *buf, const u8 *data, u32 len);
// Makes `buf` write backwards from data + len.
void berBufWrite(BerBuf *buf, u8 *data, u32 len);
// Whether everything written lies in the block that was given. Otherwise the encoding is larger
// than the memory, and what is in the memory is only its end.
bool berBufFits(const BerBuf *buf);
// Frees the blocks that an encoding too large has chained. The given memory stays.
void berBufRelease(BerBuf *buf);

// ------------------------------------------------------------------------- tags and lengths

// Writes the shortest form; returns its octets.
u32 BEncDefLen(GenBuf *gen, u32 len);
// Writes the identifier octets of `tag`, which holds them from its top octet down.
u32 BEncTag(GenBuf *gen, u32 tag);
// The length, or berIndefinite. Throws -41 to -43.
u32 BDecLen(GenBuf *gen, u32 *bytesDecoded, DecodeEnv *env);
// The identifier octets from the top octet down: A1 is 0xA1000000. Throws -74.
u32 BDecTag(GenBuf *gen, u32 *bytesDecoded, DecodeEnv *env);
// Two zero octets. Throws -44.
void BDecEoc(GenBuf *gen, u32 *bytesDecoded, DecodeEnv *env);

// -------------------------------------------------------------------------------- primitives

struct AsnNull {};
using VisibleString = AsnOcts;
using UTF8String = AsnOcts;
using GraphicString = AsnOcts;

// Encoder, decoder and free function of a type, and the forms that write and read its universal
// tag and its length as well (BEnc<T>, BDec<T>; another tag is -99). `Kind` names the rules where
// the C++ type alone does not.
template <class T, class Kind = T> struct AsnOperations {
    static u32 encode(GenBuf *gen, const T *value);
    static void decode(GenBuf *gen, u32 tag, u32 len, T *value, u32 *bytesDecoded, DecodeEnv *env);
    static void release(T *value);
    static u32 encodeTagged(GenBuf *gen, const T *value);
    static void decodeTagged(GenBuf *gen, T *value, u32 *bytesDecoded, DecodeEnv *env);
};

// The operations of a type under the names that the codecs are called by; arguments behind the name are the
// kind.
#define ASN_CODEC(Name, ...)                                                                                 \
    extern template struct AsnOperations<Name __VA_OPT__(, ) __VA_ARGS__>;                                   \
    inline u32 BEnc##Name##Content(GenBuf *gen, const Name *value) {                                         \
        return AsnOperations<Name __VA_OPT__(, ) __VA_ARGS__>::encode(gen, value);                           \
    }                                                                                                        \
    inline void BDec##Name##Content(GenBuf *gen, u32 tag, u32 len, Name *value, u32 *bytesDecoded,           \
                                    DecodeEnv *env) {                                                        \
        AsnOperations<Name __VA_OPT__(, ) __VA_ARGS__>::decode(gen, tag, len, value, bytesDecoded, env);     \
    }                                                                                                        \
    inline void Free##Name(Name *value) {                                                                    \
        AsnOperations<Name __VA_OPT__(, ) __VA_ARGS__>::release(value);                                      \
    }                                                                                                        \
    inline u32 BEnc##Name(GenBuf *gen, const Name *value) {                                                  \
        return AsnOperations<Name __VA_OPT__(, ) __VA_ARGS__>::encodeTagged(gen, value);                     \
    }                                                                                                        \
    inline void BDec##Name(GenBuf *gen, Name *value, u32 *bytesDecoded, DecodeEnv *env) {                    \
        AsnOperations<Name __VA_OPT__(, ) __VA_ARGS__>::decodeTagged(gen, value, bytesDecoded, env);         \
    }

// The kinds of ASN.1 values, by the rules of their content.
namespace asn {
struct Boolean;                             // AsnBool
struct Integer;                             // AsnInt
struct Unsigned;                            // UAsnInt
struct Null;                                // AsnNull
struct Real;                                // AsnReal
struct BitString;                           // AsnBits
struct OctetString;                         // AsnOcts
struct ObjectIdentifier;                    // AsnOid
struct Visible;                             // AsnOcts, octets up to 128
struct Utf8;                                // AsnOcts
struct Graphic;                             // AsnOcts, not checked
struct Any;                                 // AsnAny
struct Undecoded;                           // AsnOcts: a whole element as it came, its structure checked
struct UndecodedConstructed;                // the same for a type that has no primitive form
template <class Element> struct SequenceOf; // AsnList of pointers to the element's value
template <class Kind> struct Nested;        // what can hold itself
} // namespace asn

ASN_CODEC(AsnBool, asn::Boolean)
ASN_CODEC(AsnInt, asn::Integer)
ASN_CODEC(UAsnInt, asn::Unsigned)
ASN_CODEC(AsnNull, asn::Null)
ASN_CODEC(AsnReal, asn::Real)
ASN_CODEC(AsnBits, asn::BitString)
ASN_CODEC(AsnOcts, asn::OctetString)
ASN_CODEC(AsnOid, asn::ObjectIdentifier)
ASN_CODEC(VisibleString, asn::Visible)
ASN_CODEC(UTF8String, asn::Utf8)
ASN_CODEC(GraphicString, asn::Graphic)
ASN_CODEC(AsnAny, asn::Any)

// An encoder that meets an octet which the type forbids sets the buffer's write error and writes
// the value all the same; the size of an encoding is judged by berBufFits.

} // namespace ied
