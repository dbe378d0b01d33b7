#include "model-gen/c/sclFault.h"

#include "model-gen/c/documentTree.h"
#include "model-gen/c/genNode.h"
#include "platform/platform.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>

namespace ied {

namespace {

void writeDetail(unsigned long line, const char *format, va_list arguments) {
    char text[1024];
    std::vsnprintf(text, sizeof text, format, arguments);
    if (line != 0) {
        std::fprintf(stderr, "%s:%lu: %s\n", parsedFile(), line, text);
    } else {
        std::fprintf(stderr, "%s: %s\n", parsedFile(), text);
    }
}

} // namespace

void faultDetail(unsigned long line, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    writeDetail(line, format, arguments);
    va_end(arguments);
}

void sclFault(unsigned long line, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    writeDetail(line, format, arguments);
    va_end(arguments);
    processExit(-1);
}

void *sclAlloc(std::size_t size, const char *funcName, const char *ifNull) {
    // A size beyond the pool's own width fits no pool.
    const std::size_t most = std::numeric_limits<u32>::max() / 2;
    void *block = gMalloc(static_cast<u32>(size < most ? size : most));
    if (block == nullptr) {
        std::fprintf(stderr, "%s : %s", funcName, ifNull);
        processExit(-1);
    }
    return block;
}

char *sclText(std::string_view text, const char *funcName, const char *ifNull) {
    char *copy = static_cast<char *>(sclAlloc(text.size() + 1, funcName, ifNull));
    std::memcpy(copy, text.data(), text.size());
    return copy;
}

} // namespace ied
