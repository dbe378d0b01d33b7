// Short addresses as the SCL file writes them: their checks, look-up and listing.
#include "DebugInfo/DebugInfo.h"
#include "device/addressBinding.h"
#include "device/protoData.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace ied {

namespace {

// What is wrong with a short address before it is looked up.
enum class SAddrFault : u8 {
    none,
    tooDeep,
    itemTooLong,
};

SAddrFault checkItems(std::string_view text) {
    if (static_cast<u32>(std::count(text.begin(), text.end(), '.')) + 1 > SADDR_DEP_MAX) {
        return SAddrFault::tooDeep;
    }
    std::size_t length = 0;
    for (const char c : text) {
        length = c == '.' ? 0 : length + 1;
        if (length > SADDR_LEN_MAX) {
            return SAddrFault::itemTooLong;
        }
    }
    return SAddrFault::none;
}

void refuse(const char *caller, const char *format, const char *sAddr) {
    char text[512]; // of a line of the log
    std::snprintf(text, sizeof text, format, sAddr);
    dbInfo(DbSCL, DbPAN, caller, "%s", text);
}

} // namespace

void *getSAddr(const char *sAddr, u8 nodeType) {
    if (sAddr == nullptr || *sAddr == '\0') {
        return nullptr;
    }
    const SAddrFault fault = checkItems(sAddr);
    const MapPlace place = resolveSAddr(sAddr);
    const char *message = nullptr;
    if (fault == SAddrFault::tooDeep) {
        message = "saddr: \"%s\" is depper than the SADDR_DEP_MAX!";
    } else if (fault == SAddrFault::itemTooLong) {
        message = "saddr: \"%s\" is longer than the SADDR_LEN_MAX!";
    } else if (place.nodeType == TypeFailure) {
        message = "saddr: \"%s\" item not find!";
    } else if (place.nodeType != nodeType) {
        message = "saddr: \"%s\" NodeType not Match!";
    }
    if (message != nullptr) {
        refuse("getSAddr", message, sAddr);
        return nullptr;
    }
    return protoData + place.offset;
}

u8 getNodeTypeBySAddr(const char *sAddr) {
    if (sAddr == nullptr || *sAddr == '\0') {
        return TypeFailure;
    }
    const SAddrFault fault = checkItems(sAddr);
    const u8 nodeType = resolveSAddr(sAddr).nodeType;
    if (fault == SAddrFault::tooDeep) {
        refuse("getNodeTypeBySAddr", "saddr : \"%s\" is too deep!", sAddr);
    } else if (fault == SAddrFault::itemTooLong) {
        refuse("getNodeTypeBySAddr", "saddr : \"%s\" is too long!", sAddr);
    } else if (nodeType == TypeFailure) {
        refuse("getNodeTypeBySAddr", "saddr : \"%s\" does not find!", sAddr);
    } else {
        return nodeType;
    }
    return TypeFailure;
}

void sAddrPrint() {
    forEachLeaf([](const char *sAddr, const MapRow &, u32, void *) { std::printf("%s\n", sAddr); }, nullptr);
}

} // namespace ied
