// The map of received GOOSE messages to the entries of the subscription table.
#include "model-gen/c/modelBuild.h"
#include "model-gen/c/sclReader.h"
#include "model-gen/c/sclReaders.h"

#include <cstdio>

namespace ied {

namespace {

constexpr std::size_t macTextLength = 17; // six pairs of digits and five separators

void getMac(u8 (&mac)[6], const char *text) {
    if (text == nullptr || std::strlen(text) != macTextLength) {
        std::fprintf(stderr, "%s : Mac len error!\r\n", "modelGetGooseMap");
        return;
    }
    for (std::size_t i = 0; i < 6; ++i) {
        mac[i] = static_cast<u8>(16 * ctoi(text[3 * i]) + ctoi(text[3 * i + 1]));
    }
}

} // namespace

u8 ctoi(char c) {
    if (c >= '0' && c <= '9') {
        return static_cast<u8>(c - '0');
    }
    if (c >= 'a' && c <= 'f') {
        return static_cast<u8>(c - 'a' + 10);
    }
    if (c >= 'A' && c <= 'F') {
        return static_cast<u8>(c - 'A' + 10);
    }
    return 0;
}

u16 strtoint(const char *text) {
    u16 value = 0;
    for (; *text != '\0'; ++text) {
        value = static_cast<u16>((value << 4) + ctoi(*text));
    }
    return value;
}

void modelGetGooseMap() {
    for (scl::GooseSubscription &subscription :
         records<&scl::GooseSubscription::link>(GooseSubscriptionHead)) {
        for (scl::GooseRxEntry &entry : records<&scl::GooseRxEntry::link>(subscription.entries)) {
            auto *map = newRecord<&scl::GooseMapInit::link>(&GooseMapInitHead, "modelGetGooseMap",
                                                            "gMalloc for GooseMapInit failed!\r\n");
            if (subscription.APPID != nullptr) {
                map->appid = strtoint(subscription.APPID);
            }
            getMac(map->mac, subscription.mAddr);
            map->gocbRef = subscription.goCbRef;
            map->refPath = entry.ref;
            map->apduIndex = decimalU32(entry.tdlString);
        }
    }
}

} // namespace ied
