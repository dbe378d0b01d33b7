#include "basicInterface/timeText.h"

#include "basicInterface/clock.h"
#include "basicInterface/memory.h"

#include <cstdio>
#include <cstring>

namespace ied {

void generalizeTime(AsnOcts *octs, std::tm *tm) {
    tm->tm_year += 1900;
    tm->tm_mon += 1;
    const auto digits = [](int value, int modulus) {
        return static_cast<unsigned>(value) % static_cast<unsigned>(modulus);
    };
    char text[16];
    std::snprintf(text, sizeof text, "%04u%02u%02u%02u%02u%02uZ", digits(tm->tm_year, 10000),
                  digits(tm->tm_mon, 100), digits(tm->tm_mday, 100), digits(tm->tm_hour, 100),
                  digits(tm->tm_min, 100), digits(tm->tm_sec, 100));
    octs->octetLen = sizeof text - 1;
    octs->octs = static_cast<u8 *>(Malloc(octs->octetLen));
    std::memcpy(octs->octs, text, octs->octetLen);
}

void sprintTime(const TimeStamp *timestamp, u32 size, char *out) {
    TimeStamp time = {};
    if (timestamp == nullptr) {
        getTimeStamp(&time);
    } else {
        time = *timestamp;
    }
    const std::time_t seconds = time.sec;
    std::tm tm = {};
    localtime_r(&seconds, &tm);
    std::snprintf(out, size, "%04d-%02d-%02d %02d:%02d:%02d.%03d", tm.tm_year + 1900, tm.tm_mon + 1,
                  tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec, static_cast<int>(time.ms));
}

} // namespace ied
