// What the lines of a definition do: each kind of line tells whether a tag is its own, and encodes,
// decodes and frees its field of a record.
#pragma once

#include "asn1/asnElement.h"

namespace ied::asn {

// -------------------------------------------------------------- components of sequence and set

template <auto M, class K, bool O> bool rowMatches(const Component<M, K, O> &row, u32 tag) {
    return matches<K>(row.tag, tag);
}

template <auto M, class K, bool O, class T>
u32 rowEncode(const Component<M, K, O> &row, GenBuf *gen, const T *value) {
    return encodeField<K>(gen, row.tag, value->*M, O);
}

template <auto M, class K, bool O, class T>
void rowDecode(const Component<M, K, O> &row, Reader &reader, u32 tag, T *value, i32 code) {
    const u32 len = readLen(reader);
    decodeField<K>(reader, row.tag, tag, len, value->*M, code);
}

template <auto M, class K, bool O, class T> void rowRelease(const Component<M, K, O> &, T *value) {
    releaseField<K>(value->*M);
}

template <auto M, class K, bool O> constexpr bool isOptional(const Component<M, K, O> &) {
    return O;
}

// -------------------------------------------------------------------- alternatives of a choice

template <u32 C, auto M, class K, Condition W> bool rowMatches(const Alternative<C, M, K, W> &row, u32 tag) {
    return matches<K>(row.tag, tag);
}

template <u32 C, auto M, class K, Condition W>
bool rowAllowed(const Alternative<C, M, K, W> &, const DecodeEnv &env) {
    return W(env);
}

template <u32 C, auto M, class K, Condition W> bool rowHolds(const Alternative<C, M, K, W> &, u32 choiceId) {
    return choiceId == C;
}

// Whether `tag` is this line's but for the form, so that it is no other line's either.
template <u32 C, auto M, class K, Condition W> bool rowClaims(const Alternative<C, M, K, W> &row, u32 tag) {
    return row.tag.tagging != Tagging::none && (tag & ~constructedBit) == row.tag.identifier;
}

template <u32 C, auto M, class K, Condition W, class T>
u32 rowEncode(const Alternative<C, M, K, W> &row, GenBuf *gen, [[maybe_unused]] const T *value) {
    if constexpr (std::is_null_pointer_v<decltype(M)>) {
        constexpr AsnNull none{};
        return encodeElement<K>(gen, row.tag, &none);
    } else {
        return encodeField<K>(gen, row.tag, value->*M, false);
    }
}

template <u32 C, auto M, class K, Condition W, class T>
void rowDecode(const Alternative<C, M, K, W> &row, Reader &reader, u32 tag, u32 len, T *value, i32 code) {
    value->choiceId = C;
    if constexpr (std::is_null_pointer_v<decltype(M)>) {
        AsnNull none;
        decodeElement<K>(reader, row.tag, tag, len, &none, code);
    } else {
        decodeField<K>(reader, row.tag, tag, len, value->*M, code);
    }
}

template <u32 C, auto M, class K, Condition W, class T>
void rowRelease(const Alternative<C, M, K, W> &, [[maybe_unused]] T *value) {
    if constexpr (!std::is_null_pointer_v<decltype(M)>) {
        releaseField<K>(value->*M);
    }
}

// Number of a context tag of one or two octets; 0xFFFFFFFF for any other tag.
constexpr u32 contextNumber(u32 tag) {
    const u32 octets = tagOctets(tag);
    const u32 number = octets == 1 ? tag >> 24 & 0x1F : tag >> 16 & 0x7F;
    const bool fits = octets == 1 || (octets == 2 && number >= 31);
    return tag >> 30 == 2 && fits ? number : 0xFFFFFFFF;
}

template <auto M, u32 First, u32 Last, u32 (*C)(u32), u32 (*N)(u32)>
bool rowMatches(const Others<M, First, Last, C, N> &, u32 tag) {
    const u32 number = contextNumber(tag);
    return number >= First && number <= Last;
}

template <auto M, u32 First, u32 Last, u32 (*C)(u32), u32 (*N)(u32)>
bool rowAllowed(const Others<M, First, Last, C, N> &, const DecodeEnv &) {
    return true;
}

template <auto M, u32 First, u32 Last, u32 (*C)(u32), u32 (*N)(u32)>
bool rowHolds(const Others<M, First, Last, C, N> &, u32 choiceId) {
    return N(choiceId) >= First && N(choiceId) <= Last;
}

template <auto M, u32 First, u32 Last, u32 (*C)(u32), u32 (*N)(u32)>
bool rowClaims(const Others<M, First, Last, C, N> &, u32) {
    return false;
}

template <auto M, u32 First, u32 Last, u32 (*C)(u32), u32 (*N)(u32), class T>
u32 rowEncode(const Others<M, First, Last, C, N> &, GenBuf *gen, const T *value) {
    return encodeField<Undecoded>(gen, untagged, value->*M, true);
}

template <auto M, u32 First, u32 Last, u32 (*C)(u32), u32 (*N)(u32), class T>
void rowDecode(const Others<M, First, Last, C, N> &, Reader &reader, u32 tag, u32 len, T *value, i32 code) {
    value->choiceId = C(contextNumber(tag));
    decodeField<Undecoded>(reader, untagged, tag, len, value->*M, code);
}

template <auto M, u32 First, u32 Last, u32 (*C)(u32), u32 (*N)(u32), class T>
void rowRelease(const Others<M, First, Last, C, N> &, T *value) {
    releaseField<Undecoded>(value->*M);
}

} // namespace ied::asn
