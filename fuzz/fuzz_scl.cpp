// An SCL file: it becomes a model, or the process ends with a message; both are an answer, a crash
// or a hang is not.
#include "device/externGlbCfg.h"
#include "model-gen/c/documentTree.h"
#include "model-gen/c/genNode.h"
#include "platform/platform.h"

#include <csetjmp>
#include <cstdlib>
#include <cstring>

using namespace ied;

namespace {

constexpr u32 poolSize = 0x80000;

const u8 *text;
std::size_t left;
std::jmp_buf ended; // NOLINT: the one way out of exit() that keeps this process
bool reading;

int openText(const char *, int, unsigned) {
    return 1000;
}
int closeText(int) {
    return 0;
}

long readText(int, void *buffer, std::size_t length) {
    const std::size_t n = length < left ? length : left;
    std::memcpy(buffer, text, n);
    text += n;
    left -= n;
    return static_cast<long>(n);
}

} // namespace

// NOLINTBEGIN: the names that the linker's --wrap makes of the three ways to end the process
extern "C" [[noreturn]] void __real_exit(int status);
extern "C" [[noreturn]] void __wrap_exit(int status) {
    if (!reading) {
        __real_exit(status);
    }
    std::longjmp(ended, 1);
}
extern "C" [[noreturn]] void __wrap__ZN3ied8taskExitEi(int status) {
    __wrap_exit(status);
}
extern "C" [[noreturn]] void __wrap__ZN3ied11processExitEi(int status) {
    __wrap_exit(status);
}
// NOLINTEND

// A file that is refused ends the process as it is; here what it held is left behind.
extern "C" const char *__asan_default_options() {
    return "detect_leaks=0";
} // NOLINT

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    externGlbCfgInit();
    hostModelOptions.icdOnHost = false;
    fileOps.open = openText;
    fileOps.close = closeText;
    fileOps.read = readText;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const u8 *data, std::size_t size) {
    text = data;
    left = size;
    reading = true;
    if (setjmp(ended) == 0) { // NOLINT
        modelInit("/tffs0/fuzz.icd", poolSize);
    }
    reading = false;
    modelForget();
    return 0;
}
