#include "ied-client/options.h"
#include "ied-client/reference.h"
#include "tests/support/hex.h"

#include <gtest/gtest.h>

using namespace ied::client;
using ied::test::canonical;

namespace {

struct Form {
    const char *text;
    const char *personal;
    const char *item; // MMS item name
};

class ReferenceForm : public testing::TestWithParam<Form> {};

std::string requestHex(const std::string &reference) {
    std::string why;
    return ied::test::hexText(readRequest({variableName(*parseReference(reference, why))}));
}

} // namespace

TEST_P(ReferenceForm, NamesTheSameVariableInBothForms) {
    std::string why;
    const std::optional<Reference> reference = parseReference(GetParam().text, why);
    ASSERT_TRUE(reference) << why;
    EXPECT_EQ(personal(*reference), GetParam().personal);
    EXPECT_EQ(variableName(*reference).item, GetParam().item);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, ReferenceForm,
    testing::Values(
        Form{"LD", "LD", ""}, Form{"LD/", "LD", ""}, Form{"LD/MMXU1", "LD/MMXU1", "MMXU1"},
        Form{"LD/MMXU1[MX]", "LD/MMXU1[MX]", "MMXU1$MX"},
        Form{"LD/MMXU1.TotW.mag.f[MX]", "LD/MMXU1.TotW.mag.f[MX]", "MMXU1$MX$TotW$mag$f"},
        Form{"LD/MMXU1$MX$TotW$mag$f", "LD/MMXU1.TotW.mag.f[MX]", "MMXU1$MX$TotW$mag$f"},
        Form{"LD/MMXU1$MX", "LD/MMXU1[MX]", "MMXU1$MX"},
        Form{"LD/MHAI1.HA.phsAHar[3].mag.f[MX]", "LD/MHAI1.HA.phsAHar[3].mag.f[MX]", "MHAI1$MX$HA$phsAHar"},
        Form{"LD/MHAI1$MX$HA$phsAHar(3)$mag", "LD/MHAI1.HA.phsAHar[3].mag[MX]", "MHAI1$MX$HA$phsAHar"},
        Form{"LD/MHAI1.HA.phsAHar[2..10][MX]", "LD/MHAI1.HA.phsAHar[2..10][MX]", "MHAI1$MX$HA$phsAHar"}));

TEST(Reference, RefusesWhatIsNeitherForm) {
    for (const char *text :
         {"", "/", "/MMXU1", "LD.MMXU1/TotW", "LD//x", "LD/MMXU1..TotW", "LD/MMXU1.TotW.", "LD/M$TotW",
          "LD/M$MX$TotW[MX]", "LD/M.a[", "LD/M.a[x]", "LD/M.a[-1]", "LD/M.a[5..2]", "LD/M.a[1].b[2]",
          "LD/M.a[1..2].b", "LD/M.a[4294967296]", "LD/M.a[0..4294967295]"}) {
        std::string why;
        EXPECT_FALSE(parseReference(text, why)) << text;
        EXPECT_NE(why, "") << text;
    }
}

// ISO 9506-2 AlternateAccess: selectAccess index [2], indexRange [3], and selectAlternateAccess [0]
// with the index [1] before the component.
TEST(Reference, SelectsArrayElementsByAlternateAccess) {
    const std::string name = "A0 10 A1 0E 1A 02 4C 44 1A 08 4D 24 4D 58 24 48 24 61"; // LD, M$MX$H$a
    EXPECT_EQ(requestHex("LD/M$MX$H$a[3]"), canonical("A4 1D A1 1B A0 19 30 17" + name + "A5 03 82 01 03"));
    EXPECT_EQ(requestHex("LD/M.H.a[2..10][MX]"),
              canonical("A4 22 A1 20 A0 1E 30 1C" + name + "A5 08 A3 06 80 01 02 81 01 09"));
    EXPECT_EQ(requestHex("LD/M.H.a[200].mag[MX]"),
              canonical("A4 27 A1 25 A0 23 30 21" + name + "A5 0D A0 0B 81 02 00 C8 30 05 81 03 6D 61 67"));
    EXPECT_EQ(requestHex("LD/M.H.a[0].mag.f[MX]"),
              canonical("A4 2D A1 2B A0 29 30 27" + name +
                        "A5 13 A0 11 81 01 00 30 0C A0 0A 80 03 6D 61 67 30 03 81 01 66"));
}

struct Server {
    const char *text;
    const char *host;
    int port; // 0: refused
};

TEST(Server, IsAHostWithAnOptionalPort) {
    for (const Server &row :
         {Server{"box", "box", 102}, Server{"box:1102", "box", 1102},
          Server{"10.0.0.1:65535", "10.0.0.1", 65535}, Server{"::1", "::1", 102}, Server{"[::1]", "::1", 102},
          Server{"[::1]:10102", "::1", 10102}, Server{"", "", 0}, Server{":102", "", 0},
          Server{"box:", "", 0}, Server{"box:0", "", 0}, Server{"box:65536", "", 0}, Server{"box:1x", "", 0},
          Server{"[::1", "", 0}, Server{"[::1]x", "", 0}}) {
        std::string host;
        ied::u16 port = 102;
        EXPECT_EQ(splitServer(row.text, host, port), row.port != 0) << row.text;
        if (row.port != 0) {
            EXPECT_EQ(host, row.host);
            EXPECT_EQ(port, row.port) << row.text;
        }
    }
}
