#include "ied-client/format.h"
#include "ied-client/quantity.h"
#include "tests/support/frames.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>

using namespace ied::client;
using ied::test::canonical;
using ied::test::hexText;

namespace {

// Local times in these tests are those of UTC.
[[maybe_unused]] const bool utc = (setenv("TZ", "UTC", 1), tzset(), true);

std::optional<Value> valueOf(const Bytes &octets) {
    Reader reader{octets};
    const Element element = next(reader);
    return reader.failed ? std::nullopt : decodeValue(element);
}

std::optional<Type> typeOf(const Bytes &octets) {
    Reader reader{octets};
    const Element element = next(reader);
    return reader.failed ? std::nullopt : decodeType(element);
}

struct Sample {
    const char *data; // Data element
    const char *text; // for people
    const char *json;
};

class DataSample : public testing::TestWithParam<Sample> {};

} // namespace

TEST_P(DataSample, ReadsAndIsWrittenBackAsItCame) {
    const Bytes octets = ied::test::octets(GetParam().data);
    const std::optional<Value> value = valueOf(octets);
    ASSERT_TRUE(value);
    EXPECT_EQ(valueText(*value), GetParam().text);
    EXPECT_EQ(jsonValue(*value, nullptr), GetParam().json);
    EXPECT_EQ(hexText(encodeValue(*value)), canonical(GetParam().data));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, DataSample,
    testing::Values(
        Sample{"83 01 01", "true", "true"}, Sample{"83 01 00", "false", "false"},
        Sample{"84 02 06 80", "10 (on)", "\"10\""},
        Sample{"84 03 03 40 00", "0100000000000", "\"0100000000000\""}, Sample{"85 01 FF", "-1", "-1"},
        Sample{"85 02 00 80", "128", "128"}, Sample{"85 04 80 00 00 00", "-2147483648", "-2147483648"},
        Sample{"86 05 00 FF FF FF FF", "4294967295", "4294967295"}, Sample{"87 05 08 3F 80 00 00", "1", "1"},
        Sample{"87 05 08 43 67 B3 33", "231.7", "231.7"},
        Sample{"87 05 08 7F C0 00 00", "not a number", "null"},
        Sample{"87 05 08 FF 80 00 00", "-infinity", "null"}, Sample{"89 03 00 1B FF", "001BFF", "\"001BFF\""},
        Sample{"8A 02 4F 4B", "OK", "\"OK\""}, Sample{"8A 04 1B 5B 32 4A", "\\x1B[2J", "\"\\\\x1B[2J\""},
        Sample{"90 03 C3 A9 FF", "é\\xFF", "\"é\\\\xFF\""},
        Sample{"91 08 00 00 00 01 80 00 00 0A", "1970-01-01 00:00:01.500", "\"1970-01-01T00:00:01.500Z\""},
        Sample{"8C 06 00 00 03 E8 00 01", "1984-01-02 00:00:01.000", "\"1984-01-02T00:00:01.000Z\""},
        Sample{"A2 08 A2 03 83 01 01 85 01 07", "{{true}, 7}", "[[true],7]"},
        Sample{"A1 06 85 01 01 85 01 02", "{1, 2}", "[1,2]"}),
    [](const auto &parameter) { return "sample" + std::to_string(parameter.index); });

TEST(ClientValues, RefuseWhatIsNoEncoding) {
    std::string deep;
    for (int i = 0; i < 60; ++i) {
        deep = ied::test::tlv("A2", deep);
    }
    for (const std::string &data :
         {std::string("83 00"), std::string("85 00"), std::string("85 09 00 00 00 00 00 00 00 00 01"),
          std::string("84 00"), std::string("84 02 08 00"), std::string("84 01 01"),
          std::string("87 04 08 3F 80 00"), std::string("87 05 09 3F 80 00 00"), std::string("A1 02 85 01"),
          std::string("A2 80 00 00"), std::string("8B 00"), std::string("02 01 01"), deep}) {
        EXPECT_FALSE(valueOf(ied::test::octets(data))) << data;
    }
    for (const std::string &type :
         {std::string("A2 02 A1 01"), std::string("A1 05 81 01 05 A2 00"), std::string("A7 00"),
          std::string("85 04 7F FF FF FF"), std::string("A0 00")}) {
        EXPECT_FALSE(typeOf(ied::test::octets(type))) << type;
    }
}

TEST(ClientValues, TakeFromAPersonOnlyWhatFitsTheType) {
    struct Row {
        const char *type;
        const char *text;
        const char *data; // null: refused
    };
    for (const Row &row :
         {Row{"83 00", "true", "83 01 01"}, Row{"83 00", "0", "83 01 00"}, Row{"83 00", "yes", nullptr},
          Row{"85 01 08", "-128", "85 01 80"}, Row{"85 01 08", "128", nullptr},
          Row{"85 01 20", "1x", nullptr}, Row{"86 01 20", "4294967295", "86 05 00 FF FF FF FF"},
          Row{"86 01 20", "4294967296", nullptr}, Row{"86 01 08", "-1", nullptr},
          Row{"A7 06 02 01 20 02 01 08", "1.5", "87 05 08 3F C0 00 00"},
          Row{"A7 06 02 01 20 02 01 08", "", nullptr}, Row{"84 01 FE", "10", "84 02 06 80"},
          Row{"84 01 FE", "102", nullptr}, Row{"89 01 08", "0a1B", "89 02 0A 1B"},
          Row{"89 01 08", "0a1", nullptr}, Row{"8A 01 FD", "abc", "8A 03 61 62 63"},
          Row{"8A 01 FD", "abcd", nullptr}, Row{"91 00", "1.5", "91 08 00 00 00 01 80 00 00 0A"},
          Row{"91 00", "-1", nullptr}}) {
        std::string why;
        const std::optional<Value> value = parseValue(row.text, *typeOf(ied::test::octets(row.type)), why);
        ASSERT_EQ(value.has_value(), row.data != nullptr) << row.type << " " << row.text;
        if (value) {
            EXPECT_EQ(hexText(encodeValue(*value)), canonical(row.data)) << row.text;
        } else {
            EXPECT_NE(why, "");
        }
    }
}

TEST(ClientValues, NameQualityAndUnits) {
    const auto quality = [](const std::string &bits) {
        Value value;
        value.kind = Kind::bitString;
        value.octets = bits;
        return qualityText(value);
    };
    EXPECT_EQ(quality("0000000000000"), "good");
    EXPECT_EQ(quality("0100000000000"), "invalid");
    EXPECT_EQ(quality("1110000000010"), "questionable, overflow, test");
    EXPECT_EQ(quality("0000000000101"), "good, substituted, operator blocked");
    EXPECT_EQ(unitSymbol(62, 3), "kW");
    EXPECT_EQ(unitSymbol(29, 0), "V");
    EXPECT_EQ(unitSymbol(29, -6), "µV");
    EXPECT_EQ(unitSymbol(1, 0), "");
    EXPECT_EQ(unitSymbol(1, -2), "%");
    EXPECT_EQ(unitSymbol(5, 4), "×10^4 A");
    EXPECT_EQ(unitSymbol(99, 0), "unit 99");
}

TEST(ClientChart, CutsTheOneBarThatDwarfsTheOthers) {
    const std::string chart = chartText({0, 100, 2, 4, 0}, 0, "%", 80);
    EXPECT_EQ(chart, "4 %        │ ↑ █ \n"
                     "           │ █ █ \n"
                     "           │ █ █ \n"
                     "           │ ███ \n"
                     "           │ ███ \n"
                     "           │ ███ \n"
                     "            0\n");
    EXPECT_NE(chartText({0, 0}, 0, "", 80).find("0 "), std::string::npos); // no division by nothing
    const std::string wide =
        chartText(std::vector<ied::f64>(400, 1), 0, "", 40); // more elements than columns
    EXPECT_LE(columns(wide.substr(0, wide.find('\n'))), 40U);
}
