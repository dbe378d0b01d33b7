// Elements of a kind under a tagging, the fields that hold them, and lists of them.
#pragma once

#include "asn1/asnDefinition.h"
#include "basicInterface/memory.h"

namespace ied::asn {

// ------------------------------------------------------------------------- elements of a kind

template <class Kind>
concept BringsTag = Kind::tag == 0; // choices and whole elements

constexpr u32 tagOf(u32 identifier, Form form) {
    return form == Form::constructed ? identifier | constructedBit : identifier;
}

template <class Kind> bool matchesIdentifier(u32 identifier, u32 tag) {
    if constexpr (Kind::form == Form::either) {
        return (tag & ~constructedBit) == identifier;
    } else {
        return tag == tagOf(identifier, Kind::form);
    }
}

// Whether an element that starts with `tag` is one of this kind under this tagging.
template <class Kind> bool matches(Tag expected, u32 tag) {
    if (expected.tagging == Tagging::explicitly) {
        return tag == (expected.identifier | constructedBit);
    }
    if (expected.tagging == Tagging::implicitly) {
        return matchesIdentifier<Kind>(expected.identifier, tag);
    }
    if constexpr (BringsTag<Kind>) {
        return Kind::matches(tag);
    } else {
        return matchesIdentifier<Kind>(Kind::tag, tag);
    }
}

template <class Kind> u32 encodeElement(GenBuf *gen, Tag tag, const typename Kind::Value *value) {
    u32 octets = Kind::encode(gen, value);
    if constexpr (!BringsTag<Kind>) {
        if (tag.tagging == Tagging::implicitly) {
            return putHeader(gen, tagOf(tag.identifier, Kind::form), octets);
        }
        octets = putHeader(gen, tagOf(Kind::tag, Kind::form), octets);
    }
    return tag.tagging == Tagging::explicitly ? putHeader(gen, tag.identifier | constructedBit, octets)
                                              : octets;
}

// Decodes an element behind its tag, which matches, and its length. `code` is that of the type it
// is part of.
template <class Kind>
void decodeElement(Reader &reader, Tag expected, u32 tag, u32 len, typename Kind::Value *value, i32 code) {
    if (expected.tagging != Tagging::explicitly) {
        Kind::decode(reader, tag, len, value);
        return;
    }
    Scope scope(reader, len, code - errorLength);
    const u32 inner = scope.nextTag();
    if (!matches<Kind>(untagged, inner)) {
        berFail(code - errorUnexpectedTag, "Unexpected Tag\n");
    }
    Kind::decode(reader, inner, readLen(reader), value);
    if (scope.nextTag()) {
        berFail(code - errorUnexpectedTag, "Unexpected Tag\n");
    }
    scope.close();
}

// --------------------------------------------------------------------- fields of a record

inline bool hasData(const AsnBits &value) {
    return value.bits;
}
inline bool hasData(const AsnOcts &value) {
    return value.octs;
}
inline bool hasData(const AsnOid &value) {
    return value.octs;
}
inline bool hasData(const AsnAny &value) {
    return value.value;
}
template <class T> bool hasData(const T &) {
    return true;
}

template <class Kind, class Field> u32 encodeField(GenBuf *gen, Tag tag, const Field &field, bool optional) {
    if constexpr (!std::is_pointer_v<Field>) {
        return optional && !hasData(field) ? 0 : encodeElement<Kind>(gen, tag, &field);
    } else {
        if (field) {
            return encodeElement<Kind>(gen, tag, field);
        }
        if constexpr (std::is_same_v<Field, AsnList *>) {
            constexpr AsnList empty{};
            return optional ? 0 : encodeElement<Kind>(gen, tag, &empty);
        }
        return 0;
    }
}

// A record of its own hangs from its parent before anything is decoded into it.
template <class Kind, class Field>
void decodeField(Reader &reader, Tag expected, u32 tag, u32 len, Field &field, i32 code) {
    if constexpr (std::is_pointer_v<Field>) {
        field = MallocOf<std::remove_pointer_t<Field>>();
        decodeElement<Kind>(reader, expected, tag, len, field, code);
    } else {
        decodeElement<Kind>(reader, expected, tag, len, &field, code);
    }
}

template <class Kind, class Field> void releaseField(Field &field) {
    if constexpr (std::is_pointer_v<Field>) {
        if (!field) {
            return;
        }
        Kind::release(field);
        Free(field);
        field = nullptr;
    } else {
        Kind::release(&field);
    }
}

// ---------------------------------------------------------------------------- SEQUENCE OF

template <class Element> struct SequenceOf {
    using Value = AsnList;
    using Kind = kindOf<Element>;
    static constexpr u32 tag = 0x10000000;
    static constexpr Form form = Form::constructed;
    static constexpr i32 code = -900;

    static u32 encode(GenBuf *gen, const AsnList *list) {
        u32 octets = 0;
        for (const AsnListElement *element = list->last; element; element = element->prev) {
            if (const auto *value = asnListValue<typename Kind::Value>(element)) {
                octets += encodeElement<Kind>(gen, untagged, value);
            }
        }
        return octets;
    }

    static void decode(Reader &reader, u32, u32 len, AsnList *list) {
        list->dataSize = sizeof(void *);
        Scope scope(reader, len, code - errorLength);
        while (const u32 elementTag = scope.nextTag()) {
            // A choice tells by itself that a tag is none of its own.
            if (!BringsTag<Kind> && !matches<Kind>(untagged, elementTag)) {
                berFail(code - errorUnexpectedTag, "Unexpected Tag\n");
            }
            const u32 elementLen = readLen(reader);
            Kind::decode(reader, elementTag, elementLen, asnListPush(list, MallocOf<typename Kind::Value>()));
        }
        scope.close();
    }

    static void release(AsnList *list) {
        for (AsnListElement *element = list->first; element;) {
            AsnListElement *next = element->next;
            auto *value = asnListValue<typename Kind::Value>(element);
            releaseField<Kind>(value);
            Free(element);
            element = next;
        }
        AsnListInit(list, list->dataSize);
    }
};

} // namespace ied::asn
