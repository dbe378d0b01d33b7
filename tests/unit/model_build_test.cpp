// From SCL types and instances to the tree: its shape, order, types and configured values, and how
// a file that cannot become a model ends. Expected trees are written by hand.
#include "model-gen/c/modelBuild.h"
#include "model-gen/c/modelIndex.h"
#include "tests/support/sclText.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace ied;
using namespace ied::test;

namespace {

// A device "L" whose LLN0 has the data objects of `dos` and the instances of `content`.
std::string ln0File(std::string_view dos, std::string_view types, std::string_view content = "") {
    return sclDocument(sclDevice(content), "<LNodeType id='T0' lnClass='LLN0'>" + std::string(dos) +
                                               "</LNodeType>" + std::string(types));
}

std::string childNames(std::string_view reference) {
    std::string names;
    for (const GenNode *child = nodeAt(reference)->child; child != nullptr; child = child->sibling) {
        names += std::string(names.empty() ? "" : " ") + child->name;
    }
    return names;
}

// Every node knows its parent, and every last child is the last.
void expectSound(const GenNode *node) {
    const GenNode *last = nullptr;
    for (const GenNode *child = node->child; child != nullptr; child = child->sibling) {
        EXPECT_EQ(child->parent, node) << child->name;
        expectSound(child);
        last = child;
    }
    EXPECT_EQ(node->lastChild, last) << nodePath(node);
}

TEST(ModelBuild, ADataObjectStandsInEveryFunctionalConstraintOfItsAttributes) {
    SclSession session;
    session.build(ln0File(
        "<DO name='Vol' type='MV'/>",
        "<DOType id='MV' cdc='MV'><DA name='mag' fc='MX' bType='Struct' type='AV' dchg='true' "
        "dupd='true'/><DA name='q' fc='MX' bType='Quality' qchg='true'/><DA name='units' fc='CF' "
        "bType='Struct' type='U'/><DA name='d' fc='DC' bType='VisString255'/></DOType><DAType id='AV'><BDA "
        "name='f' bType='FLOAT32'/></DAType><DAType id='U'><BDA name='SIUnit' bType='Enum' type='SI'/><BDA "
        "name='multiplier' bType='INT8'/></DAType><EnumType id='SI'><EnumVal ord='29'>V</EnumVal></EnumType>",
        "<DOI name='Vol'><SDI name='mag'><DAI name='f' sAddr='RT.Vol'/></SDI><SDI name='units'><DAI "
        "name='SIUnit'><Val>V</Val></DAI><DAI name='multiplier'><Val>3</Val></DAI></SDI><DAI "
        "name='d'><Val>text</Val></DAI></DOI>"));
    EXPECT_EQ(treeText(&lds), " 0/38/0\n"
                              "  IL 1/38/0\n"
                              "    LLN0 2/38/0\n"
                              "      MX 3/38/1\n"
                              "        Vol 4/7/1\n"
                              "          mag 5/38/1 t80\n"
                              "            f 6/53/1 t80 @RT.Vol\n"
                              "          q 6/46/1 t32\n"
                              "      CF 3/38/4\n"
                              "        Vol 4/7/4\n"
                              "          units 5/38/4\n"
                              "            SIUnit 6/64/4 =29\n"
                              "            multiplier 6/47/4 =3\n"
                              "      DC 3/38/5\n"
                              "        Vol 4/7/5\n"
                              "          d 6/60/5 =text\n");
    expectSound(&lds);
}

TEST(ModelBuild, GroupsStandInTheOrderOfTheirCodesAndSEIsACopyOfSG) {
    SclSession session;
    std::string attributes;
    for (const char *fc : {"XX", "ST", "MX", "SG", "CF", "SP", "SE"}) {
        attributes +=
            "<DA name='" + std::string(fc) + "val' fc='" + fc + "' bType='BOOLEAN'><Val>true</Val></DA>";
    }
    session.build(ln0File("<DO name='B' type='P'/><DO name='A' type='P'/>",
                          "<DOType id='P' cdc='SPG'>" + attributes + "</DOType>",
                          "<DOI name='A'><DAI name='SGval' sAddr='SET.x'/></DOI>"));
    EXPECT_EQ(childNames("IL/LLN0"), "XX MX ST CF SP SG SE");
    EXPECT_EQ(treeText(nodeAt("IL/LLN0$SE")), "SE 3/38/14\n"
                                              "  B 4/22/14\n"
                                              "    SGval 6/41/14 =true\n"
                                              "  A 4/22/14\n"
                                              "    SGval 6/41/14 =true @SET.x\n");
    EXPECT_EQ(nodeAt("IL/LLN0$SE$A$SGval")->value, nodeAt("IL/LLN0$SG$A$SGval")->value)
        << "the text is shared";
    expectSound(&lds);
}

TEST(ModelBuild, DevicesAndLogicalNodesStandInNameOrderAndObjectsInThatOfTheirType) {
    SclSession session;
    session.build(sclDocument(
        "<LDevice inst='b'><LN0 lnClass='LLN0' lnType='T' inst=''/><LN lnClass='GGIO' inst='2' "
        "lnType='T'/><LN prefix='a' lnClass='GGIO' inst='1' lnType='T'/><LN lnClass='GGIO' inst='10' "
        "lnType='T'/></LDevice>" +
            sclDevice("", "B") + sclDevice("", "a"),
        "<LNodeType id='T0'/><LNodeType id='T'><DO name='z' type='D'/><DO name='a' "
        "type='D'/></LNodeType><DOType id='D' cdc='SPS'><DA name='x' fc='ST' bType='INT8'/></DOType>"));
    EXPECT_EQ(childNames(""), "IB Ia Ib");
    EXPECT_EQ(childNames("Ib"), "GGIO10 GGIO2 LLN0 aGGIO1");
    EXPECT_EQ(childNames("Ib/GGIO2$ST"), "z a");
    expectSound(&lds);
}

TEST(ModelBuild, NestedSdosAreExpandedWithTheirInstances) {
    SclSession session;
    session.build(ln0File(
        "<DO name='O' type='D0'/>",
        "<DOType id='D0' cdc='WYE'><DA name='own' fc='MX' bType='INT8'/><SDO name='s' "
        "type='D1'/></DOType><DOType id='D1' cdc='CMV'><DA name='x' fc='CF' bType='INT8'/><SDO name='in' "
        "type='D2'/></DOType><DOType id='D2' cdc='MV'><DA name='y' fc='MX' bType='INT8'/></DOType>",
        "<DOI name='O'><SDI name='s'><SDI name='in'><DAI name='y' sAddr='a.b'/></SDI></SDI></DOI>"));
    EXPECT_EQ(treeText(nodeAt("IL/LLN0")), "LLN0 2/38/0\n"
                                           "  MX 3/38/1\n"
                                           "    O 4/10/1\n"
                                           "      s 5/38/1\n"
                                           "        in 5/38/1\n"
                                           "          y 6/47/1 @a.b\n"
                                           "      own 6/47/1\n"
                                           "  CF 3/38/4\n"
                                           "    O 4/10/4\n"
                                           "      s 5/38/4\n"
                                           "        x 6/47/4\n");
}

struct AttributeCase {
    const char *name;
    const char *cdc;
    const char *attribute;
    const char *instance; // of the DOI
    const char *want;
};

class Attribute : public testing::TestWithParam<AttributeCase> {};

TEST_P(Attribute, BecomesANode) {
    const AttributeCase &test = GetParam();
    SclSession session;
    session.build(
        ln0File("<DO name='O' type='D'/>",
                "<DOType id='D' cdc='" + std::string(test.cdc) + "'>" + test.attribute +
                    "</DOType><DAType id='V'><BDA name='mag' bType='FLOAT32' count='9'/></DAType><EnumType "
                    "id='e'><EnumVal ord='1'>on</EnumVal><EnumVal ord='2'/></EnumType><EnumType "
                    "id='e'><EnumVal ord='1234567890'>big</EnumVal></EnumType>",
                "<DOI name='O'>" + std::string(test.instance) + "</DOI>"));
    EXPECT_EQ(treeText(nodeAt("IL/LLN0$MX$O")->child), test.want);
}

INSTANTIATE_TEST_SUITE_P(
    ModelBuild, Attribute,
    testing::Values(
        AttributeCase{"countZero", "MV", "<DA name='a' fc='MX' bType='INT32U' count='0'/>", "", "a 6/52/1\n"},
        AttributeCase{"countEmpty", "MV", "<DA name='a' fc='MX' bType='INT32U' count=''/>", "", "a 6/52/1\n"},
        AttributeCase{"array", "HST", "<DA name='a' fc='MX' bType='INT32U' count='5'><Val>1</Val></DA>", "",
                      "a 6/40/1 o52 =5\n"},
        AttributeCase{"harmonics", "HWYE", "<DA name='a' fc='MX' bType='Struct' type='V' count='64'/>", "",
                      "a 6/39/1 =64\n  mag 6/53/1\n"},
        AttributeCase{"cells", "HST", "<DA name='a' fc='MX' bType='Struct' type='V' count='7'/>", "",
                      "a 6/40/1 =7\n  mag 6/53/1\n"},
        AttributeCase{"typeValue", "MV", "<DA name='a' fc='MX' bType='INT8'><Val>1</Val></DA>", "",
                      "a 6/47/1 =1\n"},
        AttributeCase{"instanceWins", "MV", "<DA name='a' fc='MX' bType='INT8'><Val>1</Val></DA>",
                      "<DAI name='a'><Val>5</Val></DAI><DAI name='a'><Val>6</Val></DAI>", "a 6/47/1 =5\n"},
        AttributeCase{"instanceWithoutVal", "MV", "<DA name='a' fc='MX' bType='INT8'><Val>1</Val></DA>",
                      "<DAI name='a' sAddr='x'/>", "a 6/47/1 =1 @x\n"},
        AttributeCase{"enumWord", "MV", "<DA name='a' fc='MX' bType='Enum' type='e'><Val>on</Val></DA>", "",
                      "a 6/64/1 =1\n"},
        AttributeCase{"enumOfASecondType", "MV", "<DA name='a' fc='MX' bType='Enum' type='e'/>",
                      "<DAI name='a'><Val>big</Val></DAI>", "a 6/64/1 =123456789\n"},
        AttributeCase{"enumUnknownWord", "MV",
                      "<DA name='a' fc='MX' bType='Enum' type='e'><Val>on</Val></DA>",
                      "<DAI name='a'><Val>off</Val></DAI>", "a 6/64/1 =0\n"},
        AttributeCase{"enumNumber", "MV", "<DA name='a' fc='MX' bType='Enum' type='none'/>",
                      "<DAI name='a'><Val>-3</Val></DAI>", "a 6/64/1 =-3\n"},
        AttributeCase{"enumBoundOnly", "MV", "<DA name='a' fc='MX' bType='Enum' type='e'/>",
                      "<DAI name='a' sAddr='x'/>", "a 6/64/1 =0 @x\n"},
        AttributeCase{"enumAlone", "MV", "<DA name='a' fc='MX' bType='Enum' type='e'/>", "", "a 6/64/1\n"},
        AttributeCase{"unknownType", "MV", "<DA name='a' fc='MX' bType='INT24'/>", "", "a 6/38/1\n"}),
    [](const auto &test) { return std::string(test.param.name); });

TEST(ModelBuild, AnEnumerationWordThatIsNoneIsLoggedOnce) {
    SclSession session;
    session.build(ln0File(
        "<DO name='O' type='D'/>",
        "<DOType id='D' cdc='SPS'><DA name='a' fc='ST' bType='Enum' type='e'/></DOType><EnumType id='e'/>",
        "<DOI name='O'><DAI name='a'><Val>off</Val></DAI></DOI>"));
    const std::string line = "getEnumValue : Find enum failed! type id is : e, desc is off \n";
    EXPECT_EQ(session.log().substr(session.log().find('\n') + 1), line);
}

TEST(ModelBuild, AnUnknownTypeIsToldForEveryNode) {
    SclSession session;
    testing::internal::CaptureStderr();
    session.build(ln0File("<DO name='O' type='D'/><DO name='P' type='D'/>",
                          "<DOType id='D' cdc='SPS'><DA name='a' fc='ST' bType='INT24'/><DA name='b' fc='ST' "
                          "bType='INT8'/></DOType>"));
    const std::string line = "getNodeType : INT24 \r\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), line + line);
}

// A node without data objects searches for nothing.
TEST(ModelBuild, TwoDevicesOfOneNameMayHaveDifferentNodesWithoutObjects) {
    SclSession session;
    session.build(sclDocument(sclDevice("") +
                                  "<LDevice inst='L'><LN0 lnClass='LLN0' lnType='T0'/><LN lnClass='GGIO' "
                                  "inst='1' lnType='T0'><LogControl name='l'/></LN></LDevice>",
                              "<LNodeType id='T0'/>"));
    EXPECT_EQ(childNames(""), "IL IL");
    EXPECT_NE(lds.child->sibling, nullptr);
    EXPECT_EQ(std::string(lds.child->sibling->child->name), "GGIO1");
}

TEST(ModelBuild, NamesLeaveOutWhatDoesNotFit) {
    EXPECT_STREQ(joinName({"pre", "GGIO", "1"}).text, "preGGIO1");
    const std::string prefix(28, 'p');
    EXPECT_EQ(std::string(joinName({prefix.c_str(), "GGIO", "1"}).text), prefix + "1");
    EXPECT_STREQ(joinName({nullptr, "GGIO", nullptr}).text, "GGIO");
    const std::string thirty(30, 'n'), long31(31, 'n');
    EXPECT_EQ(joinName({thirty.c_str()}).text, thirty);
    EXPECT_STREQ(joinName({long31.c_str()}).text, "");
    EXPECT_STREQ(blockName("rcb", 3, 12).text, "rcb03");
    EXPECT_STREQ(blockName("rcb", 1, 1).text, "rcb");
    EXPECT_EQ(blockName(thirty.c_str(), 7, 9).text, thirty + "0") << "cut at 31 octets";
    EXPECT_STREQ(blockName(nullptr, 7, 9).text, "");
    EXPECT_EQ(decimalI32("99999999999"), 0x7FFFFFFF);
    EXPECT_EQ(decimalI32("-99999999999"), INT32_MIN);
    EXPECT_EQ(decimalU32("99999999999"), 0xFFFFFFFFU);
    EXPECT_EQ(decimalU32("3000000000x"), 3000000000U);
    EXPECT_EQ(decimalU32(nullptr), 0U);
}

TEST(ModelBuild, ControlBlocksStandBeforeAndBehindTheObjectsWithTheirFixedLeaves) {
    SclSession session;
    session.build(ln0File(
        "<DO name='O' type='D'/>", "<DOType id='D' cdc='SPG'><DA name='v' fc='SP' bType='INT8'/></DOType>",
        "<ReportControl name='u'/><ReportControl name='b' buffered='true'><RptEnabled "
        "max='3'/></ReportControl><ReportControl name='none'><RptEnabled "
        "max='0'/></ReportControl><ReportControl name='one'><RptEnabled max='1'/></ReportControl><LogControl "
        "name='l'/><GSEControl name='g'/><GSEControl/><SettingControl numOfSGs='2'/>"));
    EXPECT_EQ(childNames("IL/LLN0"), "SP RP LG BR GO");
    EXPECT_EQ(childNames("IL/LLN0$SP"), "SGCB O");
    EXPECT_EQ(childNames("IL/LLN0$RP"), "u one");
    EXPECT_EQ(childNames("IL/LLN0$BR"), "b01 b02 b03");
    EXPECT_EQ(treeText(nodeAt("IL/LLN0$SP$SGCB")), "SGCB 4/29/6\n  NumOfSG 6/50/6\n  ActSG 6/50/6\n  EditSG "
                                                   "6/50/6\n  CnfEdit 6/41/6\n  LActTm 6/62/6\n");
    EXPECT_EQ(
        treeText(nodeAt("IL/LLN0$GO$g")),
        "g 4/32/11\n  GoEna 6/41/11\n  GoID 6/59/11\n  DatSet 6/59/11\n  ConfRev 6/52/11\n  NdsCom 6/41/11\n"
        "  DstAddress 5/38/11\n    Addr 6/54/11\n    PRIORITY 6/50/11\n    VID 6/51/11\n    APPID 6/51/11\n");
    EXPECT_EQ(treeText(nodeAt("IL/LLN0$BR$b02")), "b02 4/30/10\n  RptID 6/59/10\n  RptEna 6/41/10\n  DatSet "
                                                  "6/59/10\n  ConfRev 6/52/10\n  OptFlds 6/45/10\n"
                                                  "  BufTm 6/52/10\n  SqNum 6/51/10\n  TrgOps 6/44/10\n  "
                                                  "IntgPd 6/52/10\n  GI 6/41/10\n  PurgeBuf 6/41/10\n"
                                                  "  EntryID 6/55/10\n  TimeOfEntry 6/63/10\n");
    EXPECT_EQ(treeText(nodeAt("IL/LLN0$RP$u")),
              "u 4/30/8\n  RptID 6/59/8\n  RptEna 6/41/8\n  Resv 6/41/8\n  DatSet 6/59/8\n  ConfRev 6/52/8\n "
              " OptFlds 6/45/8\n"
              "  BufTm 6/52/8\n  SqNum 6/51/8\n  TrgOps 6/44/8\n  IntgPd 6/52/8\n  GI 6/41/8\n");
    EXPECT_EQ(treeText(nodeAt("IL/LLN0$LG$l")),
              "l 4/31/9\n  LogEna 6/41/9\n  LogRef 6/59/9\n  DatSet 6/59/9\n  OldEntrTm 6/63/9\n  NewEntrTm "
              "6/63/9\n"
              "  OldEntr 6/55/9\n  NewEntr 6/55/9\n  TrgOps 6/44/9\n  IntgPd 6/52/9\n");
}

TEST(ModelBuild, TheFirstInstanceOfANameCounts) {
    SclSession session;
    const std::string ln =
        "<LN lnClass='GGIO' inst='1' lnType='T'><DOI name='O'><DAI name='x'><Val>%</Val></DAI></DOI><DOI "
        "name='O'><DAI name='x'><Val>9</Val></DAI></DOI></LN>";
    std::string second = ln;
    second.replace(second.find('%'), 1, "2");
    std::string firstLn = ln;
    firstLn.replace(firstLn.find('%'), 1, "1");
    session.build(sclDocument(
        "<LDevice inst='L'><LN0 lnClass='LLN0' lnType='T0'/>" + firstLn + second + "</LDevice>",
        "<LNodeType id='T0'/><LNodeType id='T'><DO name='O' type='D'/></LNodeType><LNodeType id='T'/><DOType "
        "id='D' cdc='SPS'><DA name='x' fc='ST' bType='INT8'/></DOType><DOType id='D' cdc='MV'/>"));
    const GenNode *ln1 = nodeAt("IL/GGIO1");
    EXPECT_EQ(shown(nodeAt("IL/GGIO1$ST$O$x")->value), "1");
    EXPECT_EQ(shown(ln1->sibling->child->child->child->value), "1")
        << "two nodes of one name share what names the first";
}

// ------------------------------------------------------------------------------- growth of a file

// Many types, objects, instances, enumerations, each found by its name.
std::string wideFile(int n) {
    std::string dois, dos, types, vals;
    for (int i = 0; i < n; ++i) {
        const std::string k = std::to_string(i);
        dois += "<DOI name='d" + k + "'><DAI name='v'><Val>w" + k + "</Val></DAI></DOI>";
        dos += "<DO name='d" + k + "' type='t" + k + "'/>";
        types += "<DOType id='t" + k +
                 "' cdc='SPS'><DA name='v' fc='ST' bType='Enum' type='e'/><DA name='u' fc='ST' bType='Enum' "
                 "type='e'><Val>none</Val></DA><DA name='s' fc='MX' bType='Struct' type='a" +
                 k + "'/></DOType><DAType id='a" + k + "'><BDA name='x' bType='INT8'/></DAType>";
        vals += "<EnumVal ord='" + k + "'>w" + k + "</EnumVal>";
    }
    for (int i = 0; i < n; ++i) {
        types += "<EnumType id='" + std::string(i % 2 == 0 ? "e" : "f" + std::to_string(i)) + "'/>";
    }
    return ln0File(dos, types + "<EnumType id='e'>" + vals + "</EnumType>", dois);
}

TEST(ModelBuild, TenTimesTheFileTakesTenTimesTheComparisons) {
    u64 comparisons[2];
    for (const int big : {0, 1}) {
        SclSession session;
        const u64 before = nameComparisons;
        session.build(wideFile(big != 0 ? 2000 : 200), 0x2000000);
        comparisons[big] = nameComparisons - before;
        EXPECT_EQ(shown(nodeAt("IL/LLN0$ST$d199$v")->value), "199");
    }
    EXPECT_LT(comparisons[1], 11 * comparisons[0]);
}

TEST(ModelBuild, ATreeOfTypesWithoutAttributesIsWalkedOnce) {
    std::string types;
    for (int level = 0; level < 8; ++level) {
        types += "<DOType id='t" + std::to_string(level) + "' cdc='WYE'>";
        for (const char *sdo : {"a", "b", "c", "d", "e", "f"}) {
            types += "<SDO name='" + std::string(sdo) + "' type='t" + std::to_string(level + 1) + "'/>";
        }
        types += "</DOType>";
    }
    SclSession session;
    const u64 before = nameComparisons;
    session.build(ln0File("<DO name='O' type='t0'/>", types + "<DOType id='t8' cdc='WYE'/>"));
    EXPECT_LT(nameComparisons - before, 10000U);
    EXPECT_EQ(childNames("IL/LLN0"), "");
}

// ---------------------------------------------------------------------------------- depth and ends

// A data object whose leaf lies `depth` levels below the logical node, by nested structures.
std::string nestedStructs(int depth) {
    std::string types;
    const int structs = depth - 3; // between the data object and the leaf
    for (int i = 0; i < structs; ++i) {
        types += "<DAType id='a" + std::to_string(i) + "'><BDA name='" + (i + 1 < structs ? "n" : "leaf") +
                 std::to_string(i) + "' bType='" + (i + 1 < structs ? "Struct" : "INT8") + "' type='a" +
                 std::to_string(i + 1) + "'/></DAType>";
    }
    return ln0File("<DO name='O' type='D'/>",
                   "<DOType id='D' cdc='SPS'><DA name='s' fc='ST' bType='Struct' type='a0'/></DOType>" +
                       types);
}

std::string nestedSdos(int depth) {
    std::string types;
    const int sdos = depth - 3;
    for (int i = 0; i <= sdos; ++i) {
        types += "<DOType id='t" + std::to_string(i) + "' cdc='WYE'>" +
                 (i < sdos ? "<SDO name='s" + std::to_string(i) + "' type='t" + std::to_string(i + 1) + "'/>"
                           : std::string("<DA name='leaf' fc='MX' bType='INT8'/>")) +
                 "</DOType>";
    }
    return ln0File("<DO name='O' type='t0'/>", types);
}

TEST(ModelBuild, TenLevelsBelowALogicalNodeAreBuilt) {
    for (const std::string &file : {nestedStructs(10), nestedSdos(10)}) {
        SclSession session;
        session.build(file);
        const GenNode *node = nodeAt("IL/LLN0");
        int depth = 0;
        for (; node->child != nullptr; node = node->child) {
            ++depth;
        }
        EXPECT_EQ(depth, 10);
        EXPECT_EQ(std::string(node->name).substr(0, 4), "leaf");
    }
}

struct FaultCase {
    const char *name;
    std::string file;
    const char *log;    // what went wrong
    const char *detail; // what a person mends the file by
};

class ModelBuildDeath : public testing::TestWithParam<FaultCase> {};

TEST_P(ModelBuildDeath, NamesTheCulprit) {
    EXPECT_EXIT(
        {
            SclSession session;
            ied::test::logToStderr();
            session.build(GetParam().file, 0x8000);
        },
        testing::ExitedWithCode(255), std::string(GetParam().log) + ".*/tffs0/test.icd" + GetParam().detail);
}

const std::string oneObject = "<DO name='O' type='D'/>";

std::string manyObjects(int n) {
    std::string dos;
    for (int i = 0; i < n; ++i) {
        dos += "<DO name='d" + std::to_string(i) + "' type='D'/>";
    }
    return dos;
}

const FaultCase faults[] = {
    {"lNodeType", sclDocument(sclDevice(""), ""), "modelGetLNAttr : Get LNodeType error! \n",
     ":3: logical node IL/LLN0: there is no LNodeType with id \"T0\""},
    {"noLN0", sclDocument("\n<LDevice inst='L'/>", ""), "modelGetLNAttr : Get LNodeType error! \n",
     ":4: LDevice IL has no LN0"},
    {"noLN0OfASecondDevice",
     sclDocument("\n" + sclDevice("") + "\n<LDevice inst='L'/>", "<LNodeType id='T0'/>"),
     "modelGetLNAttr : Get LNodeType error! \n", ":6: LDevice IL has no LN0"},
    {"twoDevicesOfOneName",
     sclDocument("\n" + sclDevice("") +
                     "\n<LDevice inst='L'><LN0 lnClass='LLN0' lnType='T0'/><LN lnClass='GGIO' inst='1' "
                     "lnType='T'/></LDevice>",
                 "<LNodeType id='T0'/><LNodeType id='T'>" + oneObject +
                     "</LNodeType><DOType id='D' cdc='SPS'/>"),
     "getDOI : Get LN error! \n",
     ":6: LDevice at line 6 has the same name \"IL\" as the one at line 4, which has no LN of the name "
     "\"GGIO1\""},
    {"doType", ln0File(oneObject, ""), "modelGetLNAttr : Get DOType error! \n",
     ":7: IL/LLN0\\.O: there is no DOType with id \"D\""},
    {"sdoType", ln0File(oneObject, "\n<DOType id='D' cdc='WYE'><SDO name='s'/></DOType>"),
     "modelGetSDO : Get DOType error! \n", ":8: IL/LLN0\\.O\\.s: there is no DOType with id \"\""},
    {"daType",
     ln0File(oneObject,
             "<DOType id='D' cdc='MV'>\n<DA name='mag' fc='MX' bType='Struct' type='AV'/></DOType>"),
     "modelGetDA : Get DAType error! \n", ":8: IL/LLN0\\$MX\\$O\\$mag: there is no DAType with id \"AV\""},
    {"bdaType",
     ln0File(oneObject,
             "<DOType id='D' cdc='MV'><DA name='mag' fc='MX' bType='Struct' type='AV'/></DOType><DAType "
             "id='AV'><BDA name='in' bType='Struct' type='no'/></DAType>"),
     "modelGetBDA : DAType for BDA not found!Exit\r\n",
     ":7: IL/LLN0\\$MX\\$O\\$mag\\$in: there is no DAType with id \"no\""},
    {"noCdc", ln0File(oneObject, "\n<DOType id='D'><DA name='x' fc='ST' bType='INT8'/></DOType>"), "",
     ":8: DOType \"D\", used by IL/LLN0\\.O, has no cdc\ngetCDCType : CDC type is NULL"},
    {"unknownCdc",
     ln0File(oneObject, "<DOType id='D' cdc='XYZ'><DA name='x' fc='ST' bType='INT8'/></DOType>"), "",
     ":7: DOType \"D\", used by IL/LLN0\\.O, has the unknown cdc \"XYZ\"\ngetCDCType : UNknown CDC type "
     "XYZ "},
    {"doTypeCircle",
     ln0File(oneObject, "<DOType id='D' cdc='WYE'><SDO name='a' type='E'/></DOType><DOType id='E' "
                        "cdc='WYE'><SDO name='b' type='D'/></DOType>"),
     "", ":7: IL/LLN0\\.O\\.a\\.b: DOType \"D\" refers to itself: D -> E -> D"},
    {"daTypeCircle",
     ln0File(oneObject, "<DOType id='D' cdc='MV'><DA name='m' fc='MX' bType='Struct' "
                        "type='A'/></DOType><DAType id='A'><BDA name='n' bType='Struct' type='A'/></DAType>"),
     "", ":7: IL/LLN0\\$MX\\$O\\$m\\$n: DAType \"A\" refers to itself: A -> A"},
    {"deepStructs", nestedStructs(11), "",
     ":7: IL/LLN0\\$ST\\$O\\$s\\$n0.*\\$leaf7 lies deeper than 10 levels"},
    {"deepSdos", nestedSdos(11), "", ":7: IL/LLN0\\$MX\\$O\\$s0.*\\$s7\\$leaf lies deeper than 10 levels"},
    {"deepSdosWithoutLeaves", nestedSdos(30), "", ":7: IL/LLN0\\.O\\.s0.*\\.s8 lies deeper than 10 levels"},
    {"instances", ln0File("", "", "\n<ReportControl name='rcb'><RptEnabled max='100'/></ReportControl>"), "",
     ":4: ReportControl \"rcb\" of IL/LLN0 has RptEnabled max=\"100\": at most 99 instances"},
    {"noDevice", "<html><body/></html>", "", ": no LDevice below"},
    {"poolInTheTree", ln0File(manyObjects(300), ""),
     "There's no space in the memory pool!\r\nNo more space for model gen!\r\n",
     ": the model does not fit its pool of 32768 bytes; raise it with --model-pool, for example --model-pool "
     "65536"},
    {"poolInTheModel",
     ln0File(manyObjects(50), "<DOType id='D' cdc='MV'><DA name='x' fc='MX' bType='INT8'/><DA name='y' "
                              "fc='CF' bType='INT8'/></DOType>"),
     "There's no space in the memory pool!\r\nNo more space for model gen!\r\n",
     ": the model does not fit its pool"},
};

INSTANTIATE_TEST_SUITE_P(ModelBuild, ModelBuildDeath, testing::ValuesIn(faults),
                         [](const auto &test) { return std::string(test.param.name); });

} // namespace
