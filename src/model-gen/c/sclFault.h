// Faults of the SCL file, told so that its author can mend it: file, line, element.
#pragma once

#include "platform/types.h"

#include <string_view>

namespace ied {

// A text of the file for a message; empty for one that is not there.
inline const char *shownText(const char *text) {
    return text != nullptr ? text : "";
}

// Writes "file:line: text" (or "file: text" for line 0) to the standard error stream, whatever the
// debug log's destination is. Texts of the file are to be given with a bound ("%.60s").
void faultDetail(unsigned long line, const char *format, ...) __attribute__((format(printf, 2, 3)));

// The same, then ends the process with status 255.
[[noreturn]] void sclFault(unsigned long line, const char *format, ...) __attribute__((format(printf, 2, 3)));

// `size` zeroed octets of the model's pool; throws PoolFull. For a pool that answers null instead, as
// another host's gMalloc may, `funcName` and `ifNull` make the message that ends the process with
// status 255.
void *sclAlloc(std::size_t size, const char *funcName, const char *ifNull);

// A copy of `text` in the pool, with an end; sclAlloc's conditions.
char *sclText(std::string_view text, const char *funcName, const char *ifNull);

} // namespace ied
