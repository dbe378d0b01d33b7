// Mutation of BER values that keeps their structure: an element's content is changed, an element
// removed, doubled, swapped or taken from elsewhere, and every length above it is put right. So a
// mutated request still decodes and reaches the services.
#pragma once

#include "platform/types.h"

#include <span>
#include <vector>

namespace ied::fuzz {

struct BerElement {
    std::vector<u8> tag;
    std::vector<u8> content;          // of a primitive, or of one that does not parse
    std::vector<BerElement> elements; // of a constructed one
    bool constructed = false;
};

// The elements that `octets` hold one behind the other; empty if they do not parse to their end.
std::vector<BerElement> parseBer(std::span<const u8> octets, int depth = 0);
std::vector<u8> writeBer(const BerElement &element);

// Where the elements stand that `octets` hold one behind the other, the outermost only.
struct BerPlace {
    std::size_t begin, content, end;
};
std::vector<BerPlace> outerElements(std::span<const u8> octets);

// Changes a few octets of one primitive's content in place. False if there is none.
bool mutateInPlace(std::span<u8> octets, u32 seed);

// One random change of the tree; `mutate` changes octets in place and returns their new count.
using MutateOctets = std::size_t (*)(u8 *data, std::size_t size, std::size_t maxSize);
void mutateBer(BerElement *root, u32 seed, MutateOctets mutate);

} // namespace ied::fuzz
