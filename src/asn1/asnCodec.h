// Encoder, decoder and free function of every ASN.1 type, made at compile time from its definition.
#pragma once

#include "asn1/asnRows.h"

#include <utility>

namespace ied::asn {

// ------------------------------------------------------------------------ types by definition

// Runs `step` on each row, in order. Each row reaches it as a constant.
template <class Key, class Step> void eachRow(Step step) {
    [&]<std::size_t... I>(std::index_sequence<I...>) {
        (step(std::integral_constant<std::size_t, I>{}, std::get<I>(asnDefinition<Key>.rows)), ...);
    }
    (std::make_index_sequence<asnDefinition<Key>.size>{});
}

// Runs `step` on the rows in order until one says true; whether one did.
template <class Key, class Step> bool findRow(Step step) {
    return [&]<std::size_t... I>(std::index_sequence<I...>) {
        return (step(std::get<I>(asnDefinition<Key>.rows)) || ...);
    }
    (std::make_index_sequence<asnDefinition<Key>.size>{});
}

template <class Key, class T> u32 encodeComponents(GenBuf *gen, const T *value) {
    constexpr std::size_t size = asnDefinition<Key>.size;
    u32 octets = 0;
    [&]<std::size_t... I>(std::index_sequence<I...>) {
        ((octets += rowEncode(std::get<size - 1 - I>(asnDefinition<Key>.rows), gen, value)), ...);
    }
    (std::make_index_sequence<size>{});
    return octets;
}

// 0 for a choiceId that is none.
template <class Key, class T> u32 encodeChoice(GenBuf *gen, const T *value) {
    u32 octets = 0;
    findRow<Key>([&](const auto &row) {
        const bool holds = rowHolds(row, value->choiceId);
        if (holds) {
            octets = rowEncode(row, gen, value);
        }
        return holds;
    });
    return octets;
}

template <class Key, class T> void decodeSequence(Reader &reader, u32 len, T *value) {
    constexpr i32 code = asnDefinition<Key>.code;
    Scope scope(reader, len, code - errorLength);
    u32 tag = scope.nextTag();
    eachRow<Key>([&](auto index, const auto &row) {
        if (rowMatches(row, tag)) {
            rowDecode(row, reader, tag, value, code);
            tag = scope.nextTag();
        } else if (!isOptional(row)) {
            berFail(code - static_cast<i32>(index.value), "Unexpected Tag\n");
        }
    });
    if (tag) {
        berFail(code - errorUnexpectedTag, "Unexpected Tag\n");
    }
    scope.close();
}

template <class Key, class T> void decodeSet(Reader &reader, u32 len, T *value) {
    constexpr i32 code = asnDefinition<Key>.code;
    u32 found = 0; // a bit a component
    Scope scope(reader, len, code - errorLength);
    while (const u32 tag = scope.nextTag()) {
        bool taken = false;
        eachRow<Key>([&](auto index, const auto &row) {
            if (taken || !rowMatches(row, tag)) {
                return;
            }
            if (found & 1u << index.value) {
                berFail(code - errorRepeated, "Unexpected Tag\n");
            }
            found |= 1u << index.value;
            rowDecode(row, reader, tag, value, code);
            taken = true;
        });
        if (!taken) {
            berFail(code - errorUnexpectedTag, "Unexpected Tag\n");
        }
    }
    eachRow<Key>([&](auto index, const auto &row) {
        if (!isOptional(row) && !(found & 1u << index.value)) {
            berFail(code - static_cast<i32>(index.value), "Unexpected Tag\n");
        }
    });
    scope.close();
}

template <class Key, class T> void decodeChoice(Reader &reader, u32 tag, u32 len, T *value) {
    constexpr i32 code = asnDefinition<Key>.code;
    bool taken = false;
    findRow<Key>([&](const auto &row) {
        if (!rowMatches(row, tag) || !rowAllowed(row, *reader.env)) {
            return rowClaims(row, tag) && !rowMatches(row, tag);
        }
        rowDecode(row, reader, tag, len, value, code);
        return taken = true;
    });
    if (!taken) {
        berFail(code, "ERROR - unexpected tag in CHOICE\n");
    }
}

template <class T, class Key> struct Record {
    using Value = T;
    static constexpr Shape shape = asnDefinition<Key>.shape;
    static constexpr u32 tag = shape == Shape::sequence ? 0x10000000 : shape == Shape::set ? 0x11000000 : 0;
    static constexpr Form form = Form::constructed;

    // Whether an alternative of the choice starts with `tag`.
    static bool matches(u32 tagRead) {
        return findRow<Key>([&](const auto &row) { return rowMatches(row, tagRead); });
    }

    static u32 encode(GenBuf *gen, const T *value) {
        if constexpr (shape == Shape::choice) {
            return encodeChoice<Key>(gen, value);
        } else {
            return encodeComponents<Key>(gen, value);
        }
    }

    static void decode(Reader &reader, [[maybe_unused]] u32 tagRead, u32 len, T *value) {
        if constexpr (shape == Shape::sequence) {
            decodeSequence<Key>(reader, len, value);
        } else if constexpr (shape == Shape::set) {
            decodeSet<Key>(reader, len, value);
        } else {
            decodeChoice<Key>(reader, tagRead, len, value);
        }
    }

    static void release(T *value) {
        if constexpr (shape == Shape::choice) {
            findRow<Key>([&](const auto &row) {
                const bool holds = rowHolds(row, value->choiceId);
                if (holds) {
                    rowRelease(row, value);
                }
                return holds;
            });
        } else {
            eachRow<Key>([&](auto, const auto &row) { rowRelease(row, value); });
        }
    }
};

} // namespace ied::asn

namespace ied {

template <class T, class Kind> u32 AsnOperations<T, Kind>::encode(GenBuf *gen, const T *value) {
    return asn::kindOf<Kind>::encode(gen, value);
}

template <class T, class Kind>
void AsnOperations<T, Kind>::decode(GenBuf *gen, u32 tag, u32 len, T *value, u32 *bytesDecoded,
                                    DecodeEnv *env) {
    asn::Reader reader{*gen->bufInfo, env};
    const u8 *start = reader.block->curr;
    asn::kindOf<Kind>::decode(reader, tag, len, value);
    *bytesDecoded += static_cast<u32>(reader.block->curr - start);
}

template <class T, class Kind> void AsnOperations<T, Kind>::release(T *value) {
    asn::kindOf<Kind>::release(value);
}

template <class T, class Kind> u32 AsnOperations<T, Kind>::encodeTagged(GenBuf *gen, const T *value) {
    return asn::encodeElement<asn::kindOf<Kind>>(gen, asn::untagged, value);
}

template <class T, class Kind>
void AsnOperations<T, Kind>::decodeTagged(GenBuf *gen, T *value, u32 *bytesDecoded, DecodeEnv *env) {
    asn::Reader reader{*gen->bufInfo, env};
    const u8 *start = reader.block->curr;
    const u32 tag = asn::readTag(reader);
    if (!asn::matches<asn::kindOf<Kind>>(asn::untagged, tag)) {
        berFail(-99, "Unexpected Tag\n");
    }
    asn::kindOf<Kind>::decode(reader, tag, asn::readLen(reader), value);
    *bytesDecoded += static_cast<u32>(reader.block->curr - start);
}

} // namespace ied
