// Heap values for fields of a reply that are fixed octets.
#pragma once

#include "asn1/berTypes.h"
#include "basicInterface/memory.h"

#include <algorithm>
#include <initializer_list>

namespace ied {

// A heap copy of `octets` as the content of an octet string or object identifier.
template <class T> T newOcts(std::initializer_list<u8> octets) {
    auto *copy = MallocArray<u8>(octets.size() + 1); // strings carry a NUL behind their octets
    std::copy(octets.begin(), octets.end(), copy);
    return {static_cast<u32>(octets.size()), copy};
}

// A bit string of `bitLen` bits, whose octets are at hand.
inline AsnBits newBits(u32 bitLen, std::initializer_list<u8> octets) {
    return {bitLen, newOcts<AsnOcts>(octets).octs};
}

// A heap copy of an optional integer.
inline AsnInt *newAsnInt(AsnInt value) {
    auto *copy = MallocOf<AsnInt>();
    *copy = value;
    return copy;
}

} // namespace ied
