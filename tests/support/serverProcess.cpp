#include "tests/support/serverProcess.h"

#include "tests/support/tcp.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/file.h>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace ied::test {

namespace {

constexpr std::size_t armFlagAt = 12;
constexpr std::size_t armFlagCount = 94;
constexpr std::size_t dspFlagAt = 11808;
constexpr std::size_t dspFlagCount = 60;
constexpr std::size_t statisticsCountersAt[] = {37549832, 37549836};
constexpr std::uint32_t startCount = 1000;

// Open descriptors of a process that lead to something of that name.
std::size_t descriptorsTo(pid_t pid, std::string_view name) {
    std::error_code ignored;
    std::size_t count = 0;
    for (const auto &entry :
         std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/fd", ignored)) {
        count += std::filesystem::read_symlink(entry.path(), ignored).string().starts_with(name);
    }
    return count;
}

} // namespace

Region::Region(std::string instanceName) : instance(std::move(instanceName)) {
    const std::string name = "/sd_commdata." + instance;
    descriptor = shm_open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (descriptor < 0 || flock(descriptor, LOCK_SH) != 0 || ftruncate(descriptor, regionSize) != 0) {
        throw std::runtime_error("no shared region");
    }
    void *mapping = mmap(nullptr, regionSize, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (mapping == MAP_FAILED) {
        throw std::runtime_error("the shared region cannot be mapped");
    }
    base = static_cast<u8 *>(mapping);
}

Region::~Region() {
    munmap(base, regionSize);
    close(descriptor);
    std::error_code ignored;
    for (const auto &entry : std::filesystem::directory_iterator("/dev/shm", ignored)) {
        if (entry.path().filename().string().ends_with("." + instance)) {
            std::filesystem::remove(entry.path(), ignored);
        }
    }
}

void announceReady(Region &region) {
    for (std::size_t i = 0; i < armFlagCount; ++i) {
        put(region, armFlagAt + 4 * i, startCount);
    }
    for (std::size_t i = 0; i < dspFlagCount; ++i) {
        put(region, dspFlagAt + 4 * i, startCount);
    }
    for (std::size_t offset : statisticsCountersAt) {
        put(region, offset, startCount);
    }
    put(region, readyWordAt, readyWord);
}

ServerProcess::ServerProcess(ServerOptions serverOptions)
    : options(std::move(serverOptions)), instance(uniqueName()), port(freePort()), region(instance) {
    for (const char *folder : {"/tffs0", "/bulk0/data/Wave/waveRec", "/bulk0/data/Wave/transWave",
                               "/bulk0/data/Wave/signalVolt"}) {
        std::filesystem::create_directories(root.path + folder);
    }
}

void launchServer(ServerProcess &server) {
    std::vector<std::string> arguments = {binary("ied-server"),
                                          "--port",
                                          std::to_string(server.port),
                                          "--root",
                                          server.root.path,
                                          "--instance",
                                          server.instance,
                                          "--icd",
                                          server.options.icd.empty() ? fullIcd() : server.options.icd};
    for (const std::string &setting : server.options.settings) {
        arguments.push_back("--set");
        arguments.push_back(setting);
    }
    arguments.insert(arguments.end(), server.options.arguments.begin(), server.options.arguments.end());
    if (server.options.ready) {
        announceReady(server.region);
    }
    start(server.process, arguments);
}

bool startServer(ServerProcess &server) {
    launchServer(server);
    const bool up = waitUntil([&] { return listening(server.port) || !running(server.process); });
    if (up && running(server.process)) {
        return true;
    }
    std::fprintf(stderr, "the server did not come up:\n%s%s", output(server.process).c_str(),
                 errors(server.process).c_str());
    return false;
}

bool listening(std::uint16_t port) {
    char wanted[8];
    std::snprintf(wanted, sizeof wanted, ":%04X", static_cast<unsigned>(port));
    for (const char *table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
        std::ifstream file(table);
        std::string line;
        while (std::getline(file, line)) {
            std::istringstream fields(line);
            std::string number, local, remote, state;
            fields >> number >> local >> remote >> state;
            if (state == "0A" && local.ends_with(wanted)) {
                return true;
            }
        }
    }
    return false;
}

std::size_t descriptorCount(pid_t pid) {
    return descriptorsTo(pid, "");
}

std::size_t socketCount(pid_t pid) {
    return descriptorsTo(pid, "socket:");
}

std::uint64_t privateOctets(pid_t pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/smaps_rollup");
    std::uint64_t sum = 0;
    std::string line;
    while (std::getline(file, line)) {
        std::istringstream fields(line);
        std::string key;
        std::uint64_t kib = 0;
        if (fields >> key >> kib && key == "Private_Dirty:") {
            sum += kib * 1024;
        }
    }
    return sum;
}

std::string fullIcd() {
    return std::string(IED_SOURCE_DIR) + "/device/tffs0/ZRX418.icd";
}

} // namespace ied::test
