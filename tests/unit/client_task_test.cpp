// The client task, its accept loop and its end over real connections on the loopback.
#include "DebugInfo/DebugInfo.h"
#include "device/externGlbCfg.h"
#include "device/parameterRefresh.h"
#include "platform/shared.h"
#include "proto-process/c/client.h"
#include "proto-process/c/serverStart.h"
#include "tests/support/conversation.h"
#include "tests/support/process.h"

#include <arpa/inet.h>
#include <atomic>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <netinet/in.h>
#include <thread>
#include <unistd.h>

namespace ied::test {
namespace {

constexpr u8 slots = 16;

// Lines of the debug log, by the hook of the configuration record.
std::mutex logLock;
std::string logText;

void keepLine(const char *line) {
    const std::lock_guard guard(logLock);
    logText += line;
}

bool logged(const char *text) {
    const std::lock_guard guard(logLock);
    return logText.find(text) != std::string::npos;
}

// What the accept loop does: connections that it took, and rests in which it found no slot to take one
// for. A rest is short here.
std::atomic<u32> accepted, rests;
thread_local bool isAcceptLoop = false;
ClockOps hostClock;
SocketOps hostSockets;

void restShortly(u64 deadline) {
    if (isAcceptLoop) {
        ++rests;
        deadline = hostClock.monotonicNs() + 1'000'000;
    }
    hostClock.sleepUntilNs(deadline);
}

int countedAccept(int fd, ::sockaddr *address, u32 *length) {
    ++accepted;
    return hostSockets.accept(fd, address, length);
}

// Whether the accept loop looks for a slot once more, in vain, while it has taken `taken` connections
// and no more.
bool findsNoSlot(u32 taken) {
    const u32 before = rests; // of the next two rests the first may follow an earlier look
    return waitUntil([&] { return rests - before >= 2 || accepted > taken; }) && accepted <= taken;
}

std::ptrdiff_t openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
}

// A client's socket.
class Client {
  public:
    explicit Client(u16 port, int receiveBuffer = 0) {
        fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const ::timeval limit{60, 0};
        ::setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        if (receiveBuffer != 0) {
            ::setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
        }
        ::sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        connected = ::connect(fd, reinterpret_cast<const ::sockaddr *>(&address), sizeof address) == 0;
    }
    ~Client() { close(); }
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    void close(bool reset = false) {
        if (fd >= 0) {
            const ::linger abortive{reset ? 1 : 0, 0};
            ::setsockopt(fd, SOL_SOCKET, SO_LINGER, &abortive, sizeof abortive);
            ::close(fd);
            fd = -1;
        }
    }
    bool give(std::string_view hex) {
        const std::vector<u8> data = octets(hex);
        return ::send(fd, data.data(), data.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(data.size());
    }
    // The next `size` octets, or fewer when the connection ends before.
    std::string take(std::size_t size) {
        std::vector<u8> data(size);
        std::size_t have = 0;
        while (have < size) {
            const ssize_t n = ::recv(fd, data.data() + have, size - have, 0);
            if (n <= 0) {
                break;
            }
            have += static_cast<std::size_t>(n);
        }
        data.resize(have);
        return hexText(data);
    }
    std::string ask(std::string_view hex, std::string_view reply) {
        return give(hex) ? take(canonical(reply).size() / 2) : "not sent";
    }
    bool associate() {
        return ask(crFrame, ccFrame) == ccFrame &&
               ask(connectFrame(initiateRequest), connectReply) == canonical(connectReply);
    }
    bool isServed() { return ask(request(9, identify), identifyReply(9)) == identifyReply(9); }
    bool isEnded() { return take(1).empty(); }

    int fd;
    bool connected;
};

// All slots with their tasks and an accept loop, for all tests of this process.
class Server : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        externGlbCfgInit();
        externGlbCfg.maxClientNum = slots;
        externGlbCfg.tickRate = 1000;
        externGlbCfg.acceptTimeout = externGlbCfg.recvTimeout = 20;
        externGlbCfg.dbDest = DBINFO_DST_CONSOLE;
        std::fill(std::begin(externGlbCfg.dbLevel), std::end(externGlbCfg.dbLevel), u8{DbINF});
        externGlbCfg.dbHook = keepLine;
        externGlbCfg.maxSendFail = 5;
        externGlbCfg.tcpPort = 0;
        externGlbCfg.listenBacklog = 64;
        platformOptions.bindAddress = "127.0.0.1";
        sysClkRateSet(externGlbCfg.tickRate);
        clientStatInit();
        clientSemInit();
        for (u8 slot = 0; slot < slots; ++slot) {
            clientStat[slot].status = CS_IDLE;
            taskSpawn("t61850Client", 247, taskOptionFp, externGlbCfg.clientTaskStack, clientProcess, slot, 2,
                      3, 4, 5, 6, 7, 8, 9, 10);
        }
        socketInit(&listenFd);
        const int sendBuffer = 4096; // of every accepted socket: a peer that does not read is soon noticed
        ::setsockopt(listenFd, SOL_SOCKET, SO_SNDBUF, &sendBuffer, sizeof sendBuffer);
        ::sockaddr_in address{};
        socklen_t length = sizeof address;
        ::getsockname(listenFd, reinterpret_cast<::sockaddr *>(&address), &length);
        port = ntohs(address.sin_port);
        hostClock = clockOps;
        hostSockets = socketOps;
        storeShared(clockOps.sleepUntilNs, restShortly);
        storeShared(socketOps.accept, countedAccept);
        accepting = new std::thread([] {
            isAcceptLoop = true;
            while (!loadShared(stopping)) {
                acceptRound(listenFd, splitTimeout(20));
            }
        });
    }
    static void TearDownTestSuite() {
        storeShared(stopping, true);
        accepting->join();
        delete accepting;
        storeShared(clockOps.sleepUntilNs, hostClock.sleepUntilNs);
        storeShared(socketOps.accept, hostSockets.accept);
    }

    void SetUp() override {
        ASSERT_TRUE(waitUntil(isIdle));
        const std::lock_guard guard(logLock);
        logText.clear();
        descriptors = openDescriptors();
    }
    void TearDown() override {
        EXPECT_TRUE(waitUntil(isIdle)) << "a slot was not given back";
        EXPECT_TRUE(waitUntil([this] { return openDescriptors() == descriptors; }))
            << "a descriptor was lost";
        Client honest(port);
        EXPECT_TRUE(honest.associate() && honest.isServed());
    }
    static bool isIdle() {
        for (u8 slot = 0; slot < slots; ++slot) {
            if (loadPublished(clientStat[slot].status) != CS_IDLE) {
                return false;
            }
        }
        return loadPublished(clientNum) == 0;
    }

    static inline int listenFd;
    static inline u16 port;
    static inline std::thread *accepting;
    static inline bool stopping;
    std::ptrdiff_t descriptors;
};

TEST_F(Server, EndsTheConnectionAfterTheReleaseReply) {
    Client client(port);
    ASSERT_TRUE(client.associate() && client.isServed());
    EXPECT_EQ(client.ask(releaseFrame(), releaseReply), releaseReply);
    EXPECT_TRUE(client.isEnded());
    EXPECT_TRUE(waitUntil([] { return logged("Client quit!"); }));
}

TEST_F(Server, EndsTheConnectionAfterTheAbortReply) {
    Client client(port);
    ASSERT_TRUE(client.associate());
    EXPECT_EQ(client.ask(abortFrame, abortReply), abortReply);
    EXPECT_TRUE(client.isEnded());
}

TEST_F(Server, KeepsTheConnectionAfterAConclude) {
    Client client(port);
    ASSERT_TRUE(client.associate());
    EXPECT_EQ(client.ask(dataFrame("8B00"), dataFrame("8C00")), dataFrame("8C00"));
    EXPECT_TRUE(client.isServed());
    client.close();
}

TEST_F(Server, LetsAClientWaitWhileNoSlotThatIsLeftHasATask) {
    const auto change = [](u8 from, u8 to) {
        for (u8 slot = 0; slot < slots; ++slot) {
            if (loadPublished(clientStat[slot].status) == from) {
                publish(clientStat[slot].status, to);
            }
        }
    };
    const u32 before = accepted;
    change(CS_IDLE, CS_NONE);
    Client early(port); // the accept loop may have found its slot before
    Client client(port);
    ASSERT_TRUE(client.connected && client.give(crFrame));
    EXPECT_TRUE(findsNoSlot(before + 1));
    u8 none;
    EXPECT_EQ(::recv(client.fd, &none, 1, MSG_DONTWAIT), -1);
    EXPECT_EQ(errno, EAGAIN) << "the connection waits";
    change(CS_NONE, CS_IDLE);
    EXPECT_EQ(client.take(canonical(ccFrame).size() / 2), canonical(ccFrame));
}

TEST_F(Server, GivesTheSlotBackWhenAClientVanishesInAnyState) {
    const std::string half = request(1, identify).substr(0, 20);
    const std::vector<std::string> states[] = {
        {},
        {std::string(crFrame).substr(0, 4)},
        {crFrame},
        {crFrame, connectFrame(initiateRequest).substr(0, 100)},
        {crFrame, connectFrame(initiateRequest)},
        {crFrame, connectFrame(initiateRequest), request(1, identify), half},
        {crFrame, connectFrame(initiateRequest), dataFrame("8B00")},
        {crFrame, connectFrame(initiateRequest), frame("0100", false)},
    };
    for (const bool reset : {false, true}) {
        for (const std::vector<std::string> &sent : states) {
            Client client(port);
            ASSERT_TRUE(client.connected);
            for (const std::string &frameText : sent) {
                ASSERT_TRUE(client.give(frameText));
            }
            client.close(reset);
        }
    }
    EXPECT_TRUE(waitUntil([] { return logged("Receive 0 bytes!"); }));
}

TEST_F(Server, DropsAClientThatNeverReads) {
    Client client(port, 2048);
    ASSERT_TRUE(client.associate());
    ::timeval limit{0, 50'000};
    ::setsockopt(client.fd, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    const std::vector<u8> many = octets(request(1, identify) + request(2, identify) + request(3, identify));
    EXPECT_TRUE(waitUntil([&] {
        for (int i = 0; i < 100 && ::send(client.fd, many.data(), many.size(), MSG_NOSIGNAL) > 0; ++i) {
        }
        return logged("Send error!");
    }));
}

TEST_F(Server, LetsTheClientAboveItsSlotsWaitUntilOneLeaves) {
    const u32 before = accepted;
    std::vector<std::unique_ptr<Client>> clients;
    for (u8 slot = 0; slot < slots; ++slot) {
        clients.push_back(std::make_unique<Client>(port));
        ASSERT_TRUE(clients.back()->associate());
    }
    EXPECT_TRUE(waitUntil([] { return logged("Max client num reached!"); }));
    Client waiting(port);
    ASSERT_TRUE(waiting.connected);
    ASSERT_TRUE(waiting.give(crFrame));
    EXPECT_TRUE(clients[3]->isServed());
    EXPECT_TRUE(findsNoSlot(before + slots));
    clients[3].reset();
    EXPECT_EQ(waiting.take(canonical(ccFrame).size() / 2), ccFrame);
    EXPECT_TRUE(clients[5]->isServed());
}

// A fault comes up in a client's task while it serves a read of a variable that does not exist.
std::atomic<u32> faults;
void faultInService(const char *line) {
    keepLine(line);
    if (std::strstr(line, "Not find Node") != nullptr) {
        ++faults;
        EXPECT_EQ(dealParamProcess(ParaEditToSE, nullptr, ParaAll), 0);
    }
}

TEST_F(Server, EndsTheClientNotItsTaskOnAFault) {
    const std::string unknown =
        "A4 18 A1 16 A0 14 30 12 A0 10 A1 0E 1A 03 514C30 1A 07 4E4F544849 4E47"; // QL0/NOTHING
    storeShared(externGlbCfg.dbHook, faultInService);
    faults = 0;
    for (u32 round = 1; round <= 3; ++round) {
        Client client(port);
        ASSERT_TRUE(client.associate());
        // The faulty request is not answered, and the one behind it in the same segment not served.
        ASSERT_TRUE(client.give(request(7, unknown) + request(8, unknown)));
        EXPECT_TRUE(client.isEnded());
        EXPECT_EQ(faults, round);
    }
    EXPECT_TRUE(logged("Input Para Error!") && logged("Client ended by a fault!"));
    storeShared(externGlbCfg.dbHook, keepLine);
}

TEST_F(Server, EndsAnyOtherTaskOnAFault) {
    static bool goesOn;
    const TaskId task = spawnTask(
        "tFault", 200, 0x10000,
        [](TaskArgument) {
            dealParamProcess(ParaEditToSE, nullptr, ParaAll);
            storeShared(goesOn, true);
        },
        1);
    ASSERT_NE(task, taskNone);
    EXPECT_TRUE(waitUntil([task] { return *taskName(task) == '\0'; }));
    EXPECT_FALSE(loadShared(goesOn));
    EXPECT_TRUE(logged("Input Para Error!"));
}

TEST_F(Server, LosesNothingOverManyConnections) {
    for (int round = 0; round < 500; ++round) {
        Client client(port);
        ASSERT_TRUE(client.connected);
        if (round % 4 != 0) {
            ASSERT_TRUE(client.associate()) << round;
        }
        if (round % 4 == 1) {
            ASSERT_TRUE(client.isServed()) << round;
        } else if (round % 4 == 2) {
            ASSERT_EQ(client.ask(releaseFrame(), releaseReply), releaseReply);
        }
        client.close(round % 8 >= 4);
    }
}

} // namespace
} // namespace ied::test
