#include "platform/platform.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <set>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace ied {

namespace {

constexpr const char *sharedMemoryFolder = "/dev/shm";

// File "wdtMsgQ.NAME" and object "/wdtMsgQ" give ".NAME"; null for another name.
const char *suffixOf(const char *file, const char *object) {
    const char *base = object + 1;
    const std::size_t length = std::strlen(base);
    const bool matches = std::strncmp(file, base, length) == 0 && (file[length] == 0 || file[length] == '.');
    return matches ? file + length : nullptr;
}

std::set<std::string> suffixesFound(const SharedNames &names) {
    std::set<std::string> found;
    DIR *folder = opendir(sharedMemoryFolder);
    if (folder == nullptr) {
        return found;
    }
    while (const dirent *entry = readdir(folder)) {
        for (const char *object : names.locked) {
            if (const char *suffix = suffixOf(entry->d_name, object)) {
                found.insert(suffix);
            }
        }
    }
    closedir(folder);
    return found;
}

// What can be told of the maps of one process.
enum class Use : u8 {
    None,
    Maps,
    Unknown,
};

Use useOf(const char *process, const std::string &object) {
    const std::string path = std::string("/proc/") + process + "/maps";
    std::FILE *maps = std::fopen(path.c_str(), "re");
    if (maps == nullptr) {
        return errno == ENOENT || errno == ESRCH ? Use::None : Use::Unknown;
    }
    char line[4600];
    Use use = Use::None;
    while (std::fgets(line, sizeof line, maps) != nullptr) {
        const char *at = std::strchr(line, '/');
        if (at != nullptr && std::strncmp(at, object.c_str(), object.size()) == 0 &&
            (at[object.size()] == '\n' || at[object.size()] == ' ')) {
            use = Use::Maps;
        }
    }
    std::fclose(maps);
    return use;
}

// Whether a process whose maps this one may not read could have mapped the object for writing. The
// superuser always could; its processes are passed over, or nobody else could ever sweep.
bool couldWrite(const char *process, const struct stat &object) {
    struct stat owner {};
    if (stat((std::string("/proc/") + process).c_str(), &owner) != 0) {
        return false;
    }
    return owner.st_uid != 0 &&
           (owner.st_uid == object.st_uid || (object.st_mode & (S_IWGRP | S_IWOTH)) != 0);
}

bool isMappedByAnyone(const std::string &object, const struct stat &info) {
    DIR *processes = opendir("/proc");
    if (processes == nullptr) {
        return true;
    }
    bool mapped = false;
    while (const dirent *entry = readdir(processes)) {
        if (mapped || entry->d_name[0] < '0' || entry->d_name[0] > '9') {
            continue;
        }
        const Use use = useOf(entry->d_name, object);
        mapped = use == Use::Maps || (use == Use::Unknown && couldWrite(entry->d_name, info));
    }
    closedir(processes);
    return mapped;
}

// The objects of one instance, each held by the exclusive side of its file lock while it is judged.
struct Leftover {
    std::vector<std::string> names;
    std::vector<int> descriptors;
    Leftover() = default;
    Leftover(const Leftover &) = delete;
    Leftover &operator=(const Leftover &) = delete;
    ~Leftover() {
        std::for_each(descriptors.begin(), descriptors.end(), [](int fd) { close(fd); });
    }
};

// False when somebody uses the object, or when that cannot be told.
bool holdAlone(const std::string &name, Leftover *leftover) {
    const int fd = shm_open(name.c_str(), O_RDWR | O_CLOEXEC, 0);
    if (fd < 0) {
        return errno == ENOENT;
    }
    leftover->names.push_back(name);
    leftover->descriptors.push_back(fd);
    return flock(fd, LOCK_EX | LOCK_NB) == 0;
}

void sweepInstance(const SharedNames &names, const std::string &suffix) {
    Leftover leftover;
    for (const char *object : names.locked) {
        if (!holdAlone(object + suffix, &leftover)) {
            return;
        }
    }
    const std::string region = names.region + suffix;
    const std::size_t others = leftover.names.size();
    if (!holdAlone(region, &leftover)) {
        return;
    }
    struct stat info {};
    if (leftover.names.size() > others && (fstat(leftover.descriptors.back(), &info) != 0 ||
                                           isMappedByAnyone(sharedMemoryFolder + region, info))) {
        return;
    }
    for (const std::string &name : leftover.names) {
        shm_unlink(name.c_str());
    }
}

} // namespace

void sweepSharedObjects(const SharedNames &names) {
    for (const std::string &suffix : suffixesFound(names)) {
        sweepInstance(names, suffix);
    }
}

void removeSharedObjects(const SharedNames &names) {
    shm_unlink(sharedName(names.region).c_str());
    for (const char *object : names.locked) {
        shm_unlink(sharedName(object).c_str());
    }
}

} // namespace ied
