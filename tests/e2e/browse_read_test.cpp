// The whole model by name, and measurements that move as the instrument writes them.
#include "tests/support/serverFixture.h"

#include <algorithm>
#include <bit>
#include <map>

using namespace ied::test;

namespace {

// Places in the region: the real-time block and its change counter.
constexpr std::size_t realTimeCounterAt = 11812;
constexpr std::size_t realTimeAt = 21360; // seconds, milliseconds, quality
constexpr std::size_t voltageAAt = 21396;
constexpr std::size_t powerAt = 21576;
constexpr std::size_t frequencyAt = 58616;

std::string floatData(float value) {
    return "870508" + hexNumber(std::bit_cast<std::uint32_t>(value), 4);
}

void setMeasurements(Region &region, float voltage, float power, float frequency, std::uint32_t seconds) {
    put(region, voltageAAt, voltage);
    put(region, powerAt, power);
    put(region, frequencyAt, frequency);
    put(region, realTimeAt, seconds);
    put(region, realTimeAt + 4, std::uint32_t{500});
    put(region, realTimeAt + 8, std::uint8_t{10});
    raise(region, realTimeCounterAt);
}

class BrowseAndRead : public ServerSuite {
  protected:
    static void SetUpTestSuite() {
        startSuite();
        setMeasurements(server->region, 230.5F, 72000.0F, 49.98F, 1700000000);
    }
    void SetUp() override { ASSERT_TRUE(associate(client, server->port)); }
    RawClient client;
};

// Identifiers in a GetNameList answer, and whether more follow.
struct NameList {
    std::vector<std::string> names;
    bool more = false;
};

std::size_t lengthAt(const std::string &text, std::size_t &at) {
    std::size_t length = std::stoul(text.substr(at, 2), nullptr, 16);
    at += 2;
    if (length >= 0x80) {
        const std::size_t digits = 2 * (length - 0x80);
        length = std::stoul(text.substr(at, digits), nullptr, 16);
        at += digits;
    }
    return 2 * length;
}

NameList namesOf(const std::string &answer) {
    NameList list;
    std::size_t at = 2;
    lengthAt(answer, at); // A1
    at += 6 + 2;          // invoke id, A1
    lengthAt(answer, at);
    at += 2; // A0
    std::size_t rest = lengthAt(answer, at);
    const std::size_t end = at + rest;
    while (at < end) {
        at += 2; // 1A
        const std::size_t length = lengthAt(answer, at);
        list.names.push_back(characters(answer.substr(at, length)));
        at += length;
    }
    list.more = answer.substr(end) != "810100";
    return list;
}

std::vector<std::string> allNames(RawClient &client, int objectClass, const std::string &domain) {
    std::vector<std::string> all;
    for (bool more = true; more;) {
        const NameList part =
            namesOf(ask(client, getNameList(1, objectClass, domain, all.empty() ? "" : all.back())).value());
        all.insert(all.end(), part.names.begin(), part.names.end());
        more = part.more && !part.names.empty();
    }
    return all;
}

} // namespace

TEST_F(BrowseAndRead, EveryNameOfEveryDeviceHasATypeAndAValue) {
    const std::vector<std::string> devices = allNames(client, 9, "");
    ASSERT_GE(devices.size(), 8U);
    EXPECT_TRUE(std::is_sorted(devices.begin(), devices.end()));
    std::size_t objects = 0;
    for (const std::string &device : devices) {
        std::vector<std::string> names = allNames(client, 0, device);
        ASSERT_FALSE(names.empty()) << device;
        EXPECT_EQ(names.front(), "LLN0");
        std::vector<std::string> sorted = names;
        std::sort(sorted.begin(), sorted.end());
        EXPECT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end())
            << "a name twice in " << device;
        for (const std::string &name : names) {
            const long depth = std::count(name.begin(), name.end(), '$');
            if (depth == 0) {
                EXPECT_EQ(ask(client, getTypeOf(2, device, name)).value_or("").substr(0, 2), "A1") << name;
            } else if (depth == 2) {
                // A success carries a structure; a failure would be 80.
                const std::string answer = ask(client, read(3, device, name)).value_or("");
                EXPECT_EQ(answer.substr(0, 2), "A1") << device << "/" << name;
                const std::size_t list = answer.find("A4");
                EXPECT_NE(answer.find("A2", list), std::string::npos)
                    << device << "/" << name << " " << answer.substr(0, 60);
                ++objects;
            }
        }
    }
    EXPECT_GT(objects, 1000U);
}

TEST_F(BrowseAndRead, AValueFollowsTheRegionInTheUnitOfTheModel) {
    const auto value = [&](const char *item) {
        return ask(client, read(1, "ZRX418MEAS", item)).value_or("");
    };
    const auto answer = [](float expected) {
        return canonical("A1 0E 02 01 01 A4 09 A1 07" + floatData(expected));
    };
    EXPECT_TRUE(waitUntil([&] { return value("MMXU1$MX$PhV$phsA$cVal$mag$f") == answer(230.5F); }));
    EXPECT_EQ(value("MMXU1$MX$TotW$mag$f"), answer(72.0F)); // kW
    EXPECT_EQ(value("MMXU1$MX$Hz$mag$f"), answer(49.98F));
    // Time of the block with a fraction of a half, and quality good.
    EXPECT_EQ(value("MMXU1$MX$Hz$t"), canonical("A1 11 02 01 01 A4 0C A1 0A 91 08 65 53 F1 00 80 00 00 0A"));
    EXPECT_EQ(value("MMXU1$MX$Hz$q"), canonical("A1 0C 02 01 01 A4 07 A1 05 84 03 03 00 00"));
    setMeasurements(server->region, 229.25F, 36500.0F, 50.02F, 1700000001);
    EXPECT_TRUE(waitUntil([&] { return value("MMXU1$MX$PhV$phsA$cVal$mag$f") == answer(229.25F); }));
    EXPECT_EQ(value("MMXU1$MX$TotW$mag$f"), answer(36.5F));
    EXPECT_EQ(value("MMXU1$MX$Hz$t").substr(18), canonical("91 08 65 53 F1 01 80 00 00 0A"));
}

TEST_F(BrowseAndRead, AnArrayIsReadWholeByElementByRangeAndByComponent) {
    const auto part = [&](const std::string &access) {
        return ask(client, read(1, "ZRX418MEAS", "MHAI1$MX$HA$phsAHar", access)).value_or("");
    };
    const std::string one = "A2 12 A2 07 87 05 08 00 00 00 00 A2 07 87 05 08 00 00 00 00";
    EXPECT_EQ(part("A5 03 82 01 03"), canonical("A1 1B 02 01 01 A4 16 A1 14" + one));
    EXPECT_EQ(part("A5 08 A3 06 80 01 02 81 01 02"),
              canonical("A1 31 02 01 01 A4 2C A1 2A A1 28" + one + one));
    EXPECT_EQ(part("A5 13 A0 11 81 01 03 30 0C A0 0A 80 03 6D 61 67 30 03 81 01 66"),
              canonical("A1 0E 02 01 01 A4 09 A1 07 87 05 08 00 00 00 00"));
    const std::string whole = part("");
    EXPECT_NE(whole.find(canonical("A1 82 05 00" + one)), std::string::npos)
        << whole.substr(0, 40); // 64 of 20 octets
    for (const char *beyond :
         {"A5 03 82 01 40", "A5 06 82 04 7F FF FF FF", "A5 07 82 05 00 FF FF FF FF",
          "A5 08 A3 06 80 01 3E 81 01 02", "A5 0E A3 0C 80 04 7F FF FF FF 81 04 7F FF FF FF"}) {
        EXPECT_EQ(part(beyond), canonical("A1 0A 02 01 01 A4 05 A1 03 80 01 0A")) << beyond;
    }
}
