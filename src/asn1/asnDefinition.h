// The grammar in which an ASN.1 type is written down, a line a component:
//
//   template <> inline constexpr auto asnDefinition<Read_Request> = sequence(-1620,
//       optional<&Read_Request::specificationWithResult>(context(0)),
//       component<&Read_Request::variableAccessSpecification>(explicitContext(1)));
//
// The kind of a component follows from the member's C++ type (a pointer is a component of that
// type in a record of its own); a second argument names it where a C++ type stands for several.
//
// The number is the first of twenty error codes of the type, counting down: code - n when
// component n is missing or a choice's tag is unknown (n 0), then those of DefinitionError.
#pragma once

#include "asn1/asnKinds.h"

#include <tuple>
#include <type_traits>

namespace ied::asn {

// ---------------------------------------------------------------------------------- tagging

enum class Tagging {
    none,
    implicitly,
    explicitly
};

struct Tag {
    u32 identifier; // as of a primitive
    Tagging tagging;
};

inline constexpr Tag untagged{0, Tagging::none};

// [n] IMPLICIT
constexpr Tag context(u32 n) {
    return {n < 31 ? (0x80 | n) << 24 : 0x9F000000 | n << 16, Tagging::implicitly};
}

// [n] EXPLICIT, also of every tagged CHOICE
constexpr Tag explicitContext(u32 n) {
    return {context(n).identifier, Tagging::explicitly};
}

// [APPLICATION n] IMPLICIT
constexpr Tag application(u32 n) {
    return {(0x40 | n) << 24, Tagging::implicitly};
}

// [UNIVERSAL n] IMPLICIT
constexpr Tag universal(u32 n) {
    return {n << 24, Tagging::implicitly};
}

enum DefinitionError : i32 {
    errorUnexpectedTag = 17,
    errorRepeated = 18,
    errorLength = 19
};

// ------------------------------------------------------------------------------------ kinds

// A record or choice that has a definition under `Key`.
template <class T, class Key = T> struct Record;

template <class K>
concept IsKind = requires {
    typename K::Value;
};

template <class T> struct KindOf { using type = Record<T>; };
template <IsKind K> struct KindOf<K> { using type = K; };
template <> struct KindOf<AsnBool> { using type = Boolean; };
template <> struct KindOf<AsnInt> { using type = Integer; };
template <> struct KindOf<UAsnInt> { using type = Unsigned; };
template <> struct KindOf<AsnReal> { using type = Real; };
template <> struct KindOf<AsnBits> { using type = BitString; };
template <> struct KindOf<AsnOcts> { using type = OctetString; };
template <> struct KindOf<AsnOid> { using type = ObjectIdentifier; };
template <> struct KindOf<AsnAny> { using type = Any; };

// The kind that the C++ type or the kind `T` stands for.
template <class T> using kindOf = typename KindOf<T>::type;

template <auto Member> struct MemberOf;
template <class T, class V, V T::*Member> struct MemberOf<Member> { using type = V; };

// Kind of a component: the one given, or the one that follows from the member.
template <auto Member, class Given> struct ComponentKind { using type = kindOf<Given>; };
template <auto Member> struct ComponentKind<Member, void> {
    using type = kindOf<std::remove_pointer_t<typename MemberOf<Member>::type>>;
};
template <auto Member, class Given> using componentKind = typename ComponentKind<Member, Given>::type;

// The kind `Kind` where it can hold itself: each level counts towards the depth limit.
template <class Kind> struct Nested : Kind {
    static void decode(Reader &reader, u32 tag, u32 len, typename Kind::Value *value) {
        const Nesting nesting(reader.env->depth);
        Kind::decode(reader, tag, len, value);
    }
};

// ------------------------------------------------------------------- sequences, sets, choices

template <auto Member, class Kind, bool Optional> struct Component { Tag tag; };

template <auto Member, class Given = void> constexpr auto component(Tag tag = untagged) {
    return Component<Member, componentKind<Member, Given>, false>{tag};
}

// OPTIONAL or DEFAULT: absent is a null pointer, or a string with a null data pointer.
template <auto Member, class Given = void> constexpr auto optional(Tag tag = untagged) {
    return Component<Member, componentKind<Member, Given>, true>{tag};
}

// Whether an alternative is there at all in this decode.
using Condition = bool (*)(const DecodeEnv &);
inline bool always(const DecodeEnv &) {
    return true;
}

template <u32 ChoiceId, auto Member, class Kind, Condition When> struct Alternative { Tag tag; };

template <u32 ChoiceId, auto Member, class Given = void, Condition When = always>
constexpr auto alternative(Tag tag = untagged) {
    return Alternative<ChoiceId, Member, componentKind<Member, Given>, When>{tag};
}

// An alternative without a value.
template <u32 ChoiceId> constexpr auto nullAlternative(Tag tag) {
    return Alternative<ChoiceId, nullptr, Null, always>{tag};
}

// All alternatives with context tags from First to Last that no line before has taken, kept
// undecoded; the functions turn a tag number into a choiceId and back.
template <auto Member, u32 First, u32 Last, u32 (*ToChoice)(u32), u32 (*ToTag)(u32)> struct Others {};

enum class Shape {
    sequence,
    set,
    choice
};

template <Shape TheShape, class... Rows> struct Definition {
    static constexpr Shape shape = TheShape;
    static constexpr std::size_t size = sizeof...(Rows);
    i32 code;
    std::tuple<Rows...> rows;
};

template <class... Rows> constexpr auto sequence(i32 code, Rows... rows) {
    return Definition<Shape::sequence, Rows...>{code, {rows...}};
}
template <class... Rows> constexpr auto set(i32 code, Rows... rows) {
    return Definition<Shape::set, Rows...>{code, {rows...}};
}
template <class... Rows> constexpr auto choice(i32 code, Rows... rows) {
    return Definition<Shape::choice, Rows...>{code, {rows...}};
}

template <class Key> inline constexpr int asnDefinition = 0;

} // namespace ied::asn
