#include "device/addressTree.h"

#include "device/protoData.h"

#include <cstdio>
#include <cstring>

namespace ied {

alignas(8) u8 protoData[protoDataSize];

namespace {

constexpr std::size_t maxSAddrText = 128; // deeper than the tree goes

void walkTable(const MapTable &table, char *text, std::size_t length, u32 offset, MapLeafFunction leaf,
               void *context) {
    for (u32 i = 0; i < table.count; i++) {
        const MapRow &row = table.rows[i];
        const int added = std::snprintf(text + length, maxSAddrText - length, "%s%s", row.name,
                                        row.next != nullptr ? "." : "");
        if (row.next != nullptr) {
            walkTable(*row.next, text, length + static_cast<std::size_t>(added), offset + row.offset, leaf,
                      context);
        } else {
            leaf(text, row, offset + row.offset, context);
        }
    }
}

} // namespace

void forEachLeaf(MapLeafFunction leaf, void *context) {
    char text[maxSAddrText];
    walkTable(mapTableBase, text, 0, 0, leaf, context);
}

} // namespace ied
