// Whether every setting that an edit may take is a parameter of the device.
#include "DebugInfo/DebugInfo.h"
#include "device/modelWalk.h"
#include "device/parameterMaps.h"

#include <bitset>
#include <memory>

namespace ied {

namespace {

// Places of the mirror at which a record begins that a map holds.
using MappedPlaces = std::bitset<protoDataSize>;

void markMapped(MappedPlaces *mapped) {
    for (const std::span<const ParaMap> map : paraMapAddr) {
        for (const ParaMap &row : map) {
            mapped->set(static_cast<std::size_t>(row.modelAddr - protoData));
        }
    }
}

bool isMapped(const MappedPlaces &mapped, const void *record) {
    const auto place = reinterpret_cast<std::uintptr_t>(record) - reinterpret_cast<std::uintptr_t>(protoData);
    return place < protoDataSize && mapped.test(place);
}

} // namespace

void nameUnmappedSettings() {
    const auto mapped = std::make_unique<MappedPlaces>();
    markMapped(mapped.get());
    for (GenNode *node = lds.child; node != nullptr; node = nextNode(node, node->level < LevelDO)) {
        if (node->level != LevelDO || node->fc != FcSG || node->sAddr == nullptr ||
            isMapped(*mapped, nodeData(node))) {
            continue;
        }
        char path[maxPathText];
        getAllPath(node, path, true);
        dbInfo(DbSET, DbCRI, "nameUnmappedSettings",
               "\"%s\" (sAddr \"%s\") is no parameter of the device and cannot be edited: bind it in FC SP!",
               path, node->sAddr);
    }
}

} // namespace ied
