#include "fuzz/berMutator.h"

#include <random>

namespace ied::fuzz {

namespace {

constexpr int depthLimit = 40;
constexpr std::size_t contentLimit = 4096;

// Octets of the identifier at the front, 0 if they run out.
std::size_t tagOctets(std::span<const u8> octets) {
    if (octets.empty() || (octets[0] & 0x1F) != 0x1F) {
        return octets.empty() ? 0 : 1;
    }
    std::size_t n = 1;
    while (n < octets.size() && n < 4 && (octets[n] & 0x80) != 0) {
        ++n;
    }
    return n < octets.size() ? n + 1 : 0;
}

// Reads a definite length of at most three octets; false if there is none.
bool readLength(std::span<const u8> octets, std::size_t *used, std::size_t *length) {
    if (octets.empty()) {
        return false;
    }
    *length = octets[0];
    *used = 1;
    if (octets[0] < 0x80) {
        return true;
    }
    const std::size_t count = octets[0] & 0x7F;
    if (count == 0 || count > 2 || octets.size() <= count) {
        return false;
    }
    *length = 0;
    for (std::size_t i = 1; i <= count; ++i) {
        *length = *length << 8 | octets[i];
    }
    *used = 1 + count;
    return true;
}

void collect(BerElement *element, std::vector<BerElement *> *all) {
    all->push_back(element);
    for (BerElement &inner : element->elements) {
        collect(&inner, all);
    }
}

// New content: mostly of the size it had, and text stays text, so that most values still decode.
void mutateContent(BerElement *element, std::minstd_rand &random, MutateOctets mutate) {
    std::vector<u8> octets = element->content;
    const std::size_t size = octets.size();
    const bool keepSize = size != 0 && random() % 4 != 0;
    octets.resize(keepSize ? size : std::min(contentLimit, size * 2 + 4));
    octets.resize(mutate(octets.data(), size, octets.size()));
    if (keepSize) {
        octets.resize(size);
    }
    if (element->tag[0] == 0x1A && random() % 8 != 0) {
        for (u8 &octet : octets) {
            octet &= 0x7F;
        }
    }
    element->content = octets;
}

// Changes what `element` holds or, given `other`, takes over from it.
void mutateElement(BerElement *element, const BerElement &other, std::minstd_rand &random, bool mayGrow) {
    auto &inner = element->elements;
    switch (random() % 6) {
    case 0:
        if (!inner.empty()) {
            inner.erase(inner.begin() + static_cast<long>(random() % inner.size()));
        }
        return;
    case 1:
    case 2:
        if (!inner.empty() && mayGrow) {
            inner.push_back(BerElement(inner[random() % inner.size()]));
        }
        return;
    case 3:
        if (other.tag == element->tag && mayGrow) {
            *element = BerElement(other);
        }
        return;
    case 4:
        element->tag[0] = static_cast<u8>((element->tag[0] & 0xE0) | (random() % 32));
        return;
    default:
        if (inner.size() > 1) {
            std::swap(inner[random() % inner.size()], inner[random() % inner.size()]);
        }
    }
}

} // namespace

std::vector<BerPlace> outerElements(std::span<const u8> octets) {
    std::vector<BerPlace> out;
    std::size_t at = 0;
    while (at < octets.size()) {
        const auto rest = octets.subspan(at);
        const std::size_t tag = tagOctets(rest);
        std::size_t used = 0;
        std::size_t length = 0;
        if (tag == 0 || !readLength(rest.subspan(tag), &used, &length) || length > rest.size() - tag - used) {
            return {};
        }
        out.push_back({at, at + tag + used, at + tag + used + length});
        at = out.back().end;
    }
    return out;
}

bool mutateInPlace(std::span<u8> octets, u32 seed) {
    static constexpr u8 telling[] = {0, 1, 2, 0x7F, 0x80, 0xFF, '$', 'A', '1'};
    std::minstd_rand random(seed);
    std::span<u8> here = octets;
    for (int depth = 0; depth < depthLimit; ++depth) {
        const std::vector<BerPlace> places = outerElements(here);
        if (places.empty()) {
            return false;
        }
        const BerPlace place = places[random() % places.size()];
        const u8 tag = here[place.begin];
        here = here.subspan(place.content, place.end - place.content);
        if ((tag & 0x20) != 0) {
            continue;
        }
        for (u32 changes = 1 + random() % 3; changes > 0 && !here.empty(); --changes) {
            u8 &octet = here[random() % here.size()];
            octet = random() % 2 == 0 ? telling[random() % sizeof telling]
                                      : static_cast<u8>(octet ^ 1U << random() % 8);
            octet = tag == 0x1A ? octet & 0x7F : octet;
        }
        return !here.empty();
    }
    return false;
}

std::vector<BerElement> parseBer(std::span<const u8> octets, int depth) {
    std::vector<BerElement> out;
    while (!octets.empty() && depth < depthLimit) {
        const std::size_t tag = tagOctets(octets);
        std::size_t used = 0, length = 0;
        if (tag == 0 || !readLength(octets.subspan(tag), &used, &length) ||
            length > octets.size() - tag - used) {
            return {};
        }
        BerElement element;
        element.tag.assign(octets.begin(), octets.begin() + static_cast<long>(tag));
        const auto content = octets.subspan(tag + used, length);
        if ((octets[0] & 0x20) != 0) {
            element.elements = parseBer(content, depth + 1);
        }
        element.constructed = !element.elements.empty();
        if (!element.constructed) {
            element.content.assign(content.begin(), content.end());
        }
        out.push_back(std::move(element));
        octets = octets.subspan(tag + used + length);
    }
    return octets.empty() ? out : std::vector<BerElement>{};
}

std::vector<u8> writeBer(const BerElement &element) {
    std::vector<u8> content = element.content;
    for (const BerElement &inner : element.elements) {
        const std::vector<u8> octets = writeBer(inner);
        content.insert(content.end(), octets.begin(), octets.end());
    }
    std::vector<u8> out = element.tag;
    const std::size_t length = content.size();
    if (length >= 0x80) {
        out.push_back(length < 0x100 ? 0x81 : 0x82);
    }
    if (length >= 0x100) {
        out.push_back(static_cast<u8>(length >> 8));
    }
    out.push_back(static_cast<u8>(length));
    out.insert(out.end(), content.begin(), content.end());
    return out;
}

void mutateBer(BerElement *root, u32 seed, MutateOctets mutate) {
    constexpr std::size_t mostElements = 2000;
    std::minstd_rand random(seed);
    std::vector<BerElement *> all;
    collect(root, &all);
    BerElement *element = all[random() % all.size()];
    if (random() % 3 == 0) {
        const BerElement other = *all[random() % all.size()];
        mutateElement(element, other, random, all.size() < mostElements);
        return;
    }
    for (u32 tries = 0; tries < 8 && !element->elements.empty(); ++tries) {
        element = all[random() % all.size()];
    }
    if (element->elements.empty()) {
        mutateContent(element, random, mutate);
    }
}

} // namespace ied::fuzz
