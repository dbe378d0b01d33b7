#include "tests/support/process.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace ied::test {

namespace {

void redirect(const std::string &path, int flags, int descriptor) {
    const int fd = open(path.c_str(), flags, 0600);
    if (fd < 0 || dup2(fd, descriptor) < 0) {
        _exit(126);
    }
}

std::vector<char *> pointers(const std::vector<std::string> &texts) {
    std::vector<char *> list;
    for (const std::string &text : texts) {
        list.push_back(const_cast<char *>(text.c_str()));
    }
    list.push_back(nullptr);
    return list;
}

// The environment of this process with additions, the latter first so that they win.
std::vector<std::string> environmentWith(const std::vector<std::string> &additions) {
    std::vector<std::string> all;
    for (char **entry = environ; *entry; ++entry) {
        const std::string text = *entry;
        bool replaced = false;
        for (const std::string &addition : additions) {
            replaced = replaced || text.starts_with(addition.substr(0, addition.find('=') + 1));
        }
        if (!replaced) {
            all.push_back(text);
        }
    }
    all.insert(all.end(), additions.begin(), additions.end());
    return all;
}

// Collects the exit status if the child has ended.
bool collect(Process &process, int options) {
    int result = 0;
    if (process.pid < 0 || process.status) {
        return true;
    }
    if (waitpid(process.pid, &result, options) != process.pid) {
        return false;
    }
    process.status = WIFEXITED(result) ? WEXITSTATUS(result) : -WTERMSIG(result);
    return true;
}

} // namespace

bool waitUntil(const std::function<bool()> &condition, Milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (Milliseconds pause{1};; pause = std::min(pause * 2, Milliseconds{20})) {
        if (condition()) {
            return true;
        }
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(pause);
    }
}

TempFolder::TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "ied-test-XXXXXX").string();
    if (!mkdtemp(name.data())) {
        throw std::runtime_error("no temporary folder");
    }
    path = name;
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::string readFile(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

void writeFile(const std::string &path, const std::string &content) {
    std::ofstream file(path, std::ios::binary);
    file << content;
}

Process::~Process() {
    if (pid >= 0 && !status) {
        kill(pid, SIGKILL);
        collect(*this, 0);
    }
    if (input >= 0) {
        close(input);
    }
}

void start(Process &process, const std::vector<std::string> &arguments,
           const std::vector<std::string> &environment, bool withInput) {
    int ends[2] = {-1, -1};
    if (withInput && pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    const std::vector<std::string> whole = environmentWith(environment);
    const std::vector<char *> argumentPointers = pointers(arguments);
    const std::vector<char *> environmentPointers = pointers(whole);
    const pid_t parent = getpid();
    process.pid = fork();
    if (process.pid < 0) {
        throw std::runtime_error("no process");
    }
    if (process.pid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) {
            _exit(126);
        }
        if (withInput) {
            dup2(ends[0], STDIN_FILENO);
        } else {
            redirect("/dev/null", O_RDONLY, STDIN_FILENO);
        }
        redirect(process.folder.path + "/out", O_WRONLY | O_CREAT | O_APPEND, STDOUT_FILENO);
        redirect(process.folder.path + "/err", O_WRONLY | O_CREAT | O_APPEND, STDERR_FILENO);
        execve(argumentPointers[0], argumentPointers.data(), environmentPointers.data());
        _exit(127);
    }
    if (withInput) {
        close(ends[0]);
    }
    process.input = ends[1];
}

std::string output(const Process &process) {
    return readFile(process.folder.path + "/out");
}

std::string errors(const Process &process) {
    return readFile(process.folder.path + "/err");
}

bool running(Process &process) {
    return !collect(process, WNOHANG);
}

std::optional<int> waitExit(Process &process, Milliseconds limit) {
    waitUntil([&] { return collect(process, WNOHANG); }, limit);
    return process.status;
}

std::optional<int> stop(Process &process) {
    if (running(process)) {
        kill(process.pid, SIGTERM);
    }
    return waitExit(process);
}

void writeLine(Process &process, const std::string &line) {
    const std::string text = line + "\n";
    if (write(process.input, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error("the child takes no input");
    }
}

RunResult run(const std::vector<std::string> &arguments, const std::vector<std::string> &environment) {
    Process process;
    start(process, arguments, environment);
    waitExit(process);
    return {process.status, output(process), errors(process)};
}

std::string binary(const std::string &name) {
    return std::string(IED_BIN_DIR) + "/" + name;
}

std::string uniqueName() {
    static std::atomic<int> count = 0;
    return "test" + std::to_string(getpid()) + "x" + std::to_string(++count);
}

} // namespace ied::test
