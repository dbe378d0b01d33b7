// What runs out: data sets, room for long lists, and the host's half-open connections.
#include "tests/support/serverFixture.h"

#include <arpa/inet.h>
#include <linux/filter.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

using namespace ied::test;

namespace {

class Exhaustion : public ServerSuite {
  protected:
    // Services 2, 4, 11 and so on: with those that define data sets. Buffers hold a message of 1 MiB.
    static void SetUpTestSuite() {
        expectedAssociateResponse = connectReply;
        const std::string services = "03EE0C000004", withDefine = "03EE1C000004";
        expectedAssociateResponse.replace(expectedAssociateResponse.find(services), services.size(),
                                          withDefine);
        startSuite({"",
                    {"tickRate=1000", "maxClientNum=16", "recvBufSize=1048576", "clientTaskStack=4194304",
                     "mmsServiceParam=0,1,2,4,5,6,11,12,13,37,65,68,72,73,74,77,79,83,84"},
                    {},
                    true});
    }
    void TearDown() override { expectIntact(); }
};

const std::string device = "ZRX418MEAS";

std::string listOf(const std::string &one, int count) {
    const std::string entry = canonical(one);
    std::string list;
    list.reserve(entry.size() * static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        list += entry;
    }
    return list;
}

std::string variable(const std::string &item) {
    return tlv("30", tlv("A0", objectName(device, item)));
}

std::string define(const std::string &item, const std::string &members) {
    return confirmedRequest(1, tlv("AB", objectName(device, item) + tlv("A0", members)));
}

std::string deleteSet(const std::string &item) {
    return confirmedRequest(1, tlv("AD", "80 01 00" + tlv("A1", objectName(device, item))));
}

std::string readSet(const std::string &item) {
    return confirmedRequest(1, tlv("A4", tlv("A1", tlv("A1", objectName(device, item)))));
}

// Answers, all to invoke id 1.
const std::string defined = canonical("A1 05 02 01 01 8B 00");
const std::string deleted = canonical("A1 0B 02 01 01 AD 06 80 01 01 81 01 01");
const std::string noSuchSet = canonical("A1 0B 02 01 01 AD 06 80 01 00 81 01 00");
const std::string notRead = canonical("A1 0A 02 01 01 A4 05 A1 03 80 01 0A");
const std::string tooLong = canonical("A2 0A 80 01 01 A2 05 A0 03 87 01 03"); // access-denied

std::string definitionError(const std::string &code) {
    return canonical("A2 0A 80 01 01 A2 05 A0 03 82 01" + code);
}

// A message of any length in TPDUs of 60,000 octets.
std::string askInParts(RawClient &client, const std::string &mmsPdu) {
    const std::string data = dataTsdu(mmsPdu);
    constexpr std::size_t part = 2 * 60000;
    for (std::size_t at = 0; at < data.size(); at += part) {
        sendHex(client, frame(data.substr(at, part), at + part >= data.size()));
    }
    return receiveMms(client).value_or("silence");
}

} // namespace

TEST_F(Exhaustion, DataSetsRunOutAndComeBack) {
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    const auto answer = [&](const std::string &pdu) { return ask(client, pdu).value_or("silence"); };
    const std::string before = answer(getNameList(1, 2, device));
    const std::string members = variable("LLN0$ST$Mod") + variable("MHAI1$MX$HA$phsAHar");
    std::vector<int> rounds;
    for (int round = 0; round < 3; ++round) {
        int count = 0;
        std::string last;
        while ((last = answer(define("LLN0$run" + std::to_string(count), members))) == defined) {
            ASSERT_LT(++count, 10000);
        }
        EXPECT_EQ(last, definitionError("00"));
        EXPECT_EQ(answer(define("LLN0", members)), definitionError("00")) << "before every other check";
        EXPECT_EQ(answer(readSet("LLN0$run" + std::to_string(count))), notRead);
        for (int i = 0; i < count; ++i) {
            const std::string item = "LLN0$run" + std::to_string(i);
            EXPECT_TRUE(answer(readSet(item)).starts_with(canonical("A1 82"))) << item;
            EXPECT_EQ(answer(deleteSet(item)), deleted);
            EXPECT_EQ(answer(deleteSet(item)), noSuchSet);
        }
        rounds.push_back(count);
    }
    EXPECT_GE(rounds[0], 1);
    EXPECT_EQ(rounds, std::vector<int>(3, rounds[0]));
    EXPECT_EQ(answer(getNameList(1, 2, device)), before);
}

TEST_F(Exhaustion, ListsOf100000EntriesGetOneAnswer) {
    constexpr int entries = 100000;
    const std::string name = "30 05 A0 03 80 01 41"; // a variable of the VMD, of which there is none
    const std::string variables = listOf(name, entries);
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    const auto confirmed = [&](const std::string &service) {
        return askInParts(client, confirmedRequest(1, service));
    };
    // As many failures do not fit the answer.
    EXPECT_EQ(confirmed(tlv("A4", tlv("A1", tlv("A0", variables)))), tooLong);
    EXPECT_EQ(confirmed(tlv("A5", tlv("A0", variables) + tlv("A0", listOf("83 01 01", entries)))), tooLong);
    // Of the longer list only as many as the shorter one has.
    EXPECT_EQ(confirmed(tlv("A5", tlv("A0", variables) + tlv("A0", "83 01 01"))),
              canonical("A1 08 02 01 01 A5 03 80 01 0A"));
    EXPECT_EQ(confirmed(tlv("A5", tlv("A0", name) + tlv("A0", listOf("83 01 01", entries)))),
              canonical("A1 08 02 01 01 A5 03 80 01 0A"));
    EXPECT_EQ(confirmed(tlv("AB", objectName(device, "LLN0$huge") + tlv("A0", variables))),
              definitionError("02"));
    EXPECT_EQ(confirmed(tlv("AD", "80 01 00" + tlv("A1", listOf("80 01 41", entries)))), noSuchSet);
    EXPECT_EQ(confirmed(tlv(
                  "A4", tlv("A1", tlv("A0", tlv("30", tlv("A0", objectName(device, "MHAI1$MX$HA$phsAHar")) +
                                                          tlv("A5", listOf("82 01 00", entries))))))),
              notRead);
    // A value of as many elements, for a leaf and for an array.
    for (const std::string item : {"MMXU1$CF$TotW$db", "MHAI1$MX$HA$phsAHar"}) {
        EXPECT_TRUE(confirmed(tlv("A5", tlv("A0", variable(item)) +
                                            tlv("A0", tlv("A1", listOf("86 01 00", entries)))))
                        .starts_with(canonical("A1 08 02 01 01 A5 03 80 01")))
            << item;
    }
    EXPECT_EQ(ask(client, confirmedRequest(2, "82 00")).value_or("").substr(0, 10),
              canonical("A1 1E 02 01 02"));
}

TEST_F(Exhaustion, HalfOpenConnectionsKeepNobodyOut) {
    std::vector<RawClient> flood(500);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(server->port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    sock_filter drop = BPF_STMT(BPF_RET | BPF_K, 0); // the answer to the SYN never arrives
    const sock_fprog program{1, &drop};
    for (RawClient &client : flood) {
        client.socket = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        ASSERT_EQ(setsockopt(client.socket, SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof program), 0);
        ASSERT_EQ(connect(client.socket, reinterpret_cast<const sockaddr *>(&address), sizeof address), -1);
    }
    for (const RawClient &client : flood) {
        pollfd entry{client.socket, POLLOUT, 0};
        ASSERT_EQ(poll(&entry, 1, 0), 0) << "not half open";
    }
    if (readFile("/proc/sys/net/ipv4/tcp_syncookies")[0] != '0') {
        EXPECT_TRUE(servesHonestClient(server->port)) << "during the flood";
    }
}
