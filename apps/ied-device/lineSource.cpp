#include "ied-device/lineSource.h"

#include <cerrno>
#include <fstream>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace ied::instrument {

namespace {

constexpr std::size_t longestLine = 4096;

void splitLines(LineSource *source) {
    for (std::size_t end; (end = source->partial.find('\n')) != std::string::npos;) {
        source->lines.push_back(source->partial.substr(0, end));
        source->partial.erase(0, end + 1);
    }
    if (source->partial.size() > longestLine) {
        source->partial.clear();
    }
}

void endSource(LineSource *source) {
    source->fd = -1;
    if (!source->partial.empty()) {
        source->lines.push_back(source->partial);
        source->partial.clear();
    }
}

} // namespace

bool loadScript(const std::string &path, LineSource *source) {
    source->name = path;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        source->lines.push_back(line);
    }
    return file.eof();
}

std::string takeLine(LineSource *source) {
    std::string line = std::move(source->lines.front());
    source->lines.pop_front();
    ++source->taken;
    return line;
}

void readLines(LineSource *source) {
    while (source->fd >= 0) {
        pollfd descriptor{source->fd, POLLIN, 0};
        if (poll(&descriptor, 1, 0) <= 0) {
            return;
        }
        char buffer[1024];
        const ssize_t count = read(source->fd, buffer, sizeof buffer);
        if (count > 0) {
            source->partial.append(buffer, static_cast<std::size_t>(count));
            splitLines(source);
        } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
            endSource(source);
        }
    }
}

} // namespace ied::instrument
