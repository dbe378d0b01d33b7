#include "basicInterface/itemText.h"

#include "basicInterface/memory.h"
#include "device/externGlbCfg.h"

#include <cstring>

namespace ied {

namespace {

// Calls `take(index, item)` for each item, at most maxDepth times; returns how many there were.
template <class F> int splitItems(std::string_view text, F &&take) {
    if (!hasItems(text)) {
        return 0;
    }
    int count = 0;
    while (text.data() != nullptr && count < externGlbCfg.maxDepth) {
        take(count++, takeItem(text));
    }
    return count;
}

char *heapItem(std::string_view item) {
    auto *block = static_cast<char *>(Malloc(item.size() + 1));
    std::memcpy(block, item.data(), item.size());
    return block;
}

constexpr int longestTrimmed = 255; // the trims count with 8-bit positions

} // namespace

int analyseItemByStr(const char *text, char **parts) {
    return splitItems(text == nullptr ? std::string_view{} : std::string_view{text},
                      [&](int i, std::string_view item) { parts[i] = heapItem(item); });
}

int analyseItemByOcts(const AsnOcts *octs, AsnOcts *parts) {
    return splitItems(octsView(octs), [&](int i, std::string_view item) {
        parts[i] = {static_cast<u32>(item.size()), reinterpret_cast<u8 *>(heapItem(item))};
    });
}

int getFirstCharLoc(const char *text, char c) {
    const char *found = std::strchr(text, c);
    return found == nullptr ? -1 : static_cast<int>(found - text);
}

int getLastCharLoc(const char *text, char c) {
    const char *found = std::strrchr(text, c);
    return found == nullptr ? -1 : static_cast<int>(found - text);
}

bool trimBefore(char *out, const char *text, char c) {
    const int at = getLastCharLoc(text, c);
    if (at <= 0 || at > longestTrimmed) {
        return false;
    }
    std::memcpy(out, text, static_cast<std::size_t>(at));
    out[at] = '\0';
    return true;
}

bool trimAfter(char *out, const char *text, char c) {
    const int at = getLastCharLoc(text, c);
    const std::size_t length = std::strlen(text);
    if (at <= 0 || length > static_cast<std::size_t>(longestTrimmed)) {
        return false;
    }
    std::memcpy(out, text + at + 1, length - static_cast<std::size_t>(at));
    return true;
}

} // namespace ied
