// The item form of a node's name, "LN$FC$DO$DA": how it is held against limits and cut at "$", or a
// text at any other character.
#pragma once

#include "asn1/berTypes.h"

#include <string_view>

namespace ied {

// Octets from which an item text or any item of it is no name of this model: items have 8-bit positions.
inline constexpr std::size_t maxItemText = 256;

// The octets of a string; empty for an absent one (no octets, or a length of all ones).
inline std::string_view octsView(const AsnOcts *octs) {
    if (octs == nullptr || octs->octs == nullptr || octs->octetLen == ~u32{0}) {
        return {};
    }
    return {reinterpret_cast<const char *>(octs->octs), octs->octetLen};
}

// Whether the text has items at all: at least two characters, and short enough to be cut.
inline bool hasItems(std::string_view text) {
    return text.size() >= 2 && text.size() < maxItemText;
}

// Number of items; a text that ends in "$" has an empty last one.
inline std::size_t countItems(std::string_view text) {
    std::size_t count = 1;
    for (const char c : text) {
        count += c == '$';
    }
    return count;
}

// Takes the first item off `rest`. What remains behind the last item is a null view, which differs
// from the empty item behind a final "$".
inline std::string_view takeItem(std::string_view &rest) {
    const std::size_t end = rest.find('$');
    const std::string_view item = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view{}
                                         : std::string_view{rest.data() + end + 1, rest.size() - end - 1};
    return item;
}

// Item splitting at "$" into `maxDepth` heap parts of the caller's array; returns the count.
int analyseItemByStr(const char *text, char **parts);
int analyseItemByOcts(const AsnOcts *octs, AsnOcts *parts);

// Positions of the first and last `c`, or -1.
int getFirstCharLoc(const char *text, char c);
int getLastCharLoc(const char *text, char c);
// What stands before or after the last `c` into `out`; false if there is none or it comes first.
bool trimBefore(char *out, const char *text, char c);
bool trimAfter(char *out, const char *text, char c);

} // namespace ied
