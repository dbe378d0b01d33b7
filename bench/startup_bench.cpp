// Start-up, the file read and the model built, against a bare expat parse of the same file in the
// same run; with the argument 10 the file holds every logical device ten times. The file is that of
// IED_BENCH_ICD, else the instrument's own.
#include "device/externGlbCfg.h"
#include "model-gen/c/genNode.h"
#include "platform/platform.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <ctime>
#include <expat.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <sstream>
#include <unistd.h>

using namespace ied;

namespace {

constexpr std::size_t blockSize = 2048; // as the server reads

std::string icdPath() {
    const char *given = std::getenv("IED_BENCH_ICD");
    return given != nullptr ? given : IED_SOURCE_DIR "/device/tffs0/ZRX418.icd";
}

// The text with every LDevice `times` times, each under an inst of its own.
std::string multiplied(const std::string &text, int times) {
    const std::string open = "<LDevice inst=\"", close = "</LDevice>";
    std::string copies;
    std::size_t last = 0;
    for (std::size_t at = text.find(open); at != std::string::npos; at = text.find(open, at)) {
        const std::size_t name = at + open.size();
        last = text.find(close, at) + close.size();
        for (int i = 1; i < times; ++i) {
            copies += open + std::to_string(i) + text.substr(name, last - name) + "\n";
        }
        at = last;
    }
    return text.substr(0, last) + copies + text.substr(last);
}

// CPU time, so that what else the host does counts for neither.
u64 cpuNs() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<u64>(now.tv_sec) * 1'000'000'000 + static_cast<u64>(now.tv_nsec);
}

void bareParse(const char *path) {
    const int fd = open(path, O_RDONLY);
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetElementHandler(
        parser, [](void *, const char *, const char **) {}, [](void *, const char *) {});
    XML_SetCharacterDataHandler(parser, [](void *, const char *, int) {});
    char block[blockSize];
    ssize_t got = blockSize;
    while (got == static_cast<ssize_t>(blockSize)) {
        got = read(fd, block, blockSize);
        XML_Parse(parser, block, static_cast<int>(got), got < static_cast<ssize_t>(blockSize));
    }
    XML_ParserFree(parser);
    close(fd);
}

void startUp(benchmark::State &state) {
    std::ifstream in(icdPath());
    std::stringstream text;
    text << in.rdbuf();
    if (!in) {
        state.SkipWithError("no SCL file");
        return;
    }
    const auto times = static_cast<int>(state.range(0));
    const std::string path =
        std::filesystem::temp_directory_path() / ("startup_bench." + std::to_string(getpid()));
    std::ofstream(path) << multiplied(text.str(), times);
    externGlbCfgInit();
    hostModelOptions.icdOnHost = true;
    sysClkRateSet(externGlbCfg.tickRate);
    // As in a fresh process, where the pool's pages come from the system and are not cleared by hand.
    mallopt(M_MMAP_THRESHOLD, 1 << 20);
    u64 bare = 0, built = 0;
    for (auto _ : state) {
        const u64 begin = cpuNs();
        bareParse(path.c_str());
        const u64 parsed = cpuNs();
        modelInit(path.c_str(), hostModelOptions.modelPool * static_cast<u32>(times));
        const u64 end = cpuNs();
        bare += parsed - begin;
        built += end - parsed;
        state.SetIterationTime(static_cast<f64>(end - parsed) * 1e-9);
        state.counters["pool_used"] = model_gen_pool.used;
        modelForget();
    }
    state.counters["bare_parses"] = static_cast<f64>(built) / static_cast<f64>(bare);
    std::filesystem::remove(path);
}

BENCHMARK(startUp)->Arg(1)->Arg(10)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
