// Binding of a model to the mirror: data objects to records, leaves to fields, arrays, substitution
// records and configured values.
#include "device/addressBinding.h"
#include "device/attributeTables.h"
#include "device/privateConfig.h"
#include "model-gen/c/modelConfig.h"
#include "model-gen/c/sclRecords.h"
#include "proto-process/c/client.h"
#include "proto-process/c/reportModel.h"
#include "proto-process/c/substitution.h"
#include "tests/support/deviceModel.h"
#include "tests/support/smallModel.h"

#include <set>

using namespace ied;
using namespace ied::test;

namespace {

const char *const types = R"(
<DOType id="sps" cdc="SPS"><DA name="stVal" fc="ST" bType="BOOLEAN"/><DA name="q" fc="ST" bType="Quality"/>
 <DA name="t" fc="ST" bType="Timestamp"/><DA name="subEna" fc="SV" bType="BOOLEAN"/>
 <DA name="subVal" fc="SV" bType="BOOLEAN"/><DA name="subQ" fc="SV" bType="Quality"/>
 <DA name="d" fc="DC" bType="VisString255"/><DA name="dU" fc="DC" bType="Unicode255"/></DOType>
<DOType id="wrong" cdc="SPS"><DA name="stVal" fc="ST" bType="INT32"><Val>3</Val></DA></DOType>
<DOType id="mv" cdc="MV"><DA name="mag" fc="MX" bType="Struct" type="an"/><DA name="q" fc="MX" bType="Quality"/>
 <DA name="units" fc="CF" bType="Struct" type="unit"/><DA name="other" fc="CF" bType="INT32"><Val>42</Val></DA></DOType>
<DOType id="wye" cdc="WYE"><SDO name="phsA" type="cmv"/><SDO name="phsB" type="cmv"/><SDO name="neut" type="cmvNoId"/>
 <DA name="d" fc="DC" bType="VisString255"/></DOType>
<DOType id="cmv" cdc="CMV"><DA name="cVal" fc="MX" bType="Struct" type="vec"/><DA name="q" fc="MX" bType="Quality"/>
 <DA name="subEna" fc="SV" bType="BOOLEAN"/><DA name="subCVal" fc="SV" bType="Struct" type="vec"/>
 <DA name="subQ" fc="SV" bType="Quality"/><DA name="subID" fc="SV" bType="VisString64"/>
 <DA name="units" fc="CF" bType="Struct" type="unit"/></DOType>
<DOType id="cmvNoId" cdc="CMV"><DA name="cVal" fc="MX" bType="Struct" type="vec"/>
 <DA name="subEna" fc="SV" bType="BOOLEAN"/><DA name="subCVal" fc="SV" bType="Struct" type="vec"/></DOType>
<DOType id="hwye" cdc="HWYE"><DA name="phsAHar" fc="MX" bType="Struct" type="vec" count="50"/>
 <DA name="phsBHar" fc="MX" bType="Struct" type="vec" count="40"/><DA name="q" fc="MX" bType="Quality"/>
 <DA name="numHar" fc="CF" bType="INT16U"><Val>64</Val></DA><DA name="evalTm" fc="CF" bType="INT16U"><Val>9</Val></DA></DOType>
<DOType id="hdel" cdc="HDEL"><DA name="phsCAHar" fc="MX" bType="Struct" type="vec" count="12"/>
 <DA name="numHar" fc="CF" bType="INT16U"><Val>12</Val></DA></DOType>
<DOType id="noElements" cdc="HWYE"><DA name="phsAHar" fc="MX" bType="Struct" type="vec" count="-5"/>
 <DA name="numHar" fc="CF" bType="INT16U"><Val>-1</Val></DA></DOType>
<DOType id="spc" cdc="SPC"><DA name="stVal" fc="ST" bType="BOOLEAN"/><DA name="Oper" fc="CO" bType="Struct" type="oper"/>
 <DA name="ctlModel" fc="CF" bType="INT8"><Val>4</Val></DA>
 <DA name="sboTimeout" fc="CF" bType="INT32U"><Val>30000</Val></DA></DOType>
<DOType id="ing" cdc="ING"><DA name="setVal" fc="SG" bType="INT32"/><DA name="maxVal" fc="CF" bType="INT32"><Val>60</Val></DA></DOType>
<DOType id="lpl" cdc="LPL"><DA name="vendor" fc="DC" bType="VisString255"/><DA name="lnNs" fc="EX" bType="VisString255"/></DOType>
<DAType id="an"><BDA name="f" bType="FLOAT32"/></DAType>
<DAType id="unit"><BDA name="SIUnit" bType="INT8U"/><BDA name="multiplier" bType="INT8"/></DAType>
<DAType id="vec"><BDA name="mag" bType="Struct" type="an"/><BDA name="ang" bType="Struct" type="an"/></DAType>
<DAType id="oper"><BDA name="ctlVal" bType="BOOLEAN"/><BDA name="T" bType="Timestamp"/><BDA name="Check" bType="Check"/></DAType>
)";

const char *const dos = R"(
<DO name="Beh" type="sps"/><DO name="Ind1" type="sps"/><DO name="Alm" type="sps"/><DO name="Odd" type="wrong"/>
<DO name="Hz" type="mv"/><DO name="A" type="wye"/><DO name="HA" type="hwye"/><DO name="HV" type="hdel"/><DO name="HNone" type="noElements"/>
<DO name="Cmd" type="spc"/><DO name="Per" type="ing"/><DO name="NamPlt" type="lpl"/>)";

const char *const dois = R"(
<DOI name="Ind1"><DAI name="q" sAddr="ST.DI3"/><DAI name="t" sAddr="ST.DI4"/></DOI>
<DOI name="Alm"><DAI name="stVal" sAddr="ST.SP12"/></DOI><DOI name="Odd"><DAI name="stVal" sAddr="ST.DI5"/></DOI>
<DOI name="Hz"><SDI name="mag"><DAI name="f" sAddr="RT.Hz"/></SDI>
 <SDI name="units"><DAI name="multiplier"><Val>3</Val></DAI></SDI></DOI>
<DOI name="A"><SDI name="phsA"><SDI name="cVal"><SDI name="mag"><DAI name="f" sAddr="RT.A"/></SDI></SDI></SDI></DOI>
<DOI name="HA"><DAI name="q" sAddr="RT.HAArr"/></DOI>
<DOI name="Cmd"><DAI name="stVal" sAddr="CTL.DO2"/></DOI>
<DOI name="Per"><DAI name="setVal" sAddr="SET.sys.DmdPeriod"/></DOI>
<DOI name="NamPlt"><DAI name="vendor" sAddr="MICS.NamPlt"/></DOI>)";

const char *const inDevice = R"(
<ReportControl name="urcb" rptID="u"><RptEnabled max="3"/></ReportControl>
<ReportControl name="brcb" rptID="b" buffered="true"/><LogControl name="lcb" logName="LD0"/>
<GSEControl name="gse"/><SettingControl numOfSGs="1"/>)";

const char *const inIed = R"(
<Private type="ORV_LocalConf"><x key="vvaFormat" val="1"/><x key="vvaFormat" val="7"/>
 <x key="beyond" val="4294967296"/></Private>)";

std::string faultyModel(const char *sAddr) {
    return ggioFile("<DO name=\"Ind1\" type=\"sps\"/>", types,
                    std::string("<DOI name=\"Ind1\"><DAI name=\"q\" sAddr=\"") + sAddr + "\"/></DOI>");
}

void bindFaulty(const char *sAddr) {
    const TextFile file(faultyModel(sAddr));
    modelInit(file.path.c_str(), hostModelOptions.modelPool);
    modelDataInit();
}

// Runs before any model exists in this process.
TEST(AddressBindingDeathTest, AWrongShortAddressIsNamedWithItsPlaceInTheFile) {
    EXPECT_EXIT(bindFaulty("ST.DI9"), testing::ExitedWithCode(0),
                "\"ST.DI9\" at \"QLD0/GGIO1.ST.Ind1.q\": no such row(.|\n)*\"ST.DI9\" item not find!");
    EXPECT_EXIT(bindFaulty("RT.Hz"), testing::ExitedWithCode(0),
                "the record is a MV, the data object a SPS(.|\n)*NodeType not Match!");
}

class AddressBinding : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        const TextFile file(ggioFile(dos, types, dois, inDevice, inIed));
        modelInit(file.path.c_str(), hostModelOptions.modelPool);
        log = new LogLines;
        cbNumInit();
        ASSERT_TRUE(modelDataInit());
    }
    static void TearDownTestSuite() { delete log; }
    static LogLines *log;
};
LogLines *AddressBinding::log;

void *dataOf(const std::string &item) {
    return nodeOf(item)->data;
}

TEST_F(AddressBinding, TheFirstLeafWithAnAddressBindsTheWholeObject) {
    SPS &di = record<SPS>("ST.DI3");
    EXPECT_EQ(dataOf("GGIO1$ST$Ind1"), &di);
    EXPECT_EQ(dataOf("GGIO1$ST$Ind1$stVal"), &di.stVal);
    EXPECT_EQ(dataOf("GGIO1$ST$Ind1$q"), &di.q);
    EXPECT_EQ(dataOf("GGIO1$ST$Ind1$t"), &di.t);
    EXPECT_STREQ(nodeOf("GGIO1$ST$Ind1")->sAddr, "ST.DI3");
}

TEST_F(AddressBinding, TheSameObjectSharesItsRecordUnderEveryConstraint) {
    for (const char *fc : {"MX", "SV", "CF", "DC"}) {
        EXPECT_EQ(dataOf("GGIO1$" + std::string(fc) + "$A"), &record<WYE>("RT.A")) << fc;
    }
    EXPECT_EQ(dataOf("GGIO1$CF$A$phsB$units$multiplier"), &record<WYE>("RT.A").phs[PhsB].units.multiplier);
    EXPECT_EQ(dataOf("GGIO1$SG$Per$setVal"), &record<ING>("SET.sys.DmdPeriod").setVal[SetSG]);
    EXPECT_EQ(dataOf("GGIO1$SE$Per$setVal"), &record<ING>("SET.sys.DmdPeriod").setVal[SetSE]);
}

TEST_F(AddressBinding, AnObjectWithoutAddressAndAnAttributeWithoutRowStayUnbound) {
    EXPECT_EQ(dataOf("GGIO1$ST$Beh"), nullptr);
    EXPECT_EQ(dataOf("GGIO1$ST$Beh$stVal"), nullptr);
    EXPECT_EQ(*static_cast<i32 *>(dataOf("GGIO1$CF$Hz$other")), 42) << "a constant of the file";
    EXPECT_EQ(dataOf("GGIO1$DC$Ind1$d"), nullptr) << "descriptions have places of their own";
    EXPECT_EQ(dataOf("GGIO1$DC$NamPlt$vendor"), record<LPL>("MICS.NamPlt").vendor);
    EXPECT_EQ(dataOf("GGIO1$EX$NamPlt$lnNs"), record<LPL>("MICS.NamPlt").lnNs);
}

TEST_F(AddressBinding, ConfiguredValuesGoIntoTheRecords) {
    EXPECT_EQ(record<MV>("RT.Hz").units.multiplier, 3);
    EXPECT_EQ(record<CtlObj>("CTL.DO2").ctlModel, 4);
    EXPECT_EQ(record<CtlObj>("CTL.DO2").sboTimeout, 30000U);
    EXPECT_EQ(record<ING>("SET.sys.DmdPeriod").maxVal, 60);
    EXPECT_EQ(record<HWYE>("RT.HAArr").evalTm, 9);
}

TEST_F(AddressBinding, AnAttributeOfATypeThatDoesNotFitIsLeftOut) {
    EXPECT_NE(dataOf("GGIO1$ST$Odd$stVal"), static_cast<void *>(&record<SPS>("ST.DI5").stVal));
    EXPECT_EQ(record<SPS>("ST.DI5").q, 0) << "nothing ran over";
    EXPECT_EQ(LogLines::count("GEN", "ERR", "modelDataInit",
                              "Type of \"QLD0/GGIO1$ST$Odd$stVal\" does not fit its attribute, not bound!"),
              1);
}

TEST_F(AddressBinding, ArraysHaveTheConfiguredNumberOfElements) {
    HWYE &har = record<HWYE>("RT.HAArr");
    EXPECT_EQ(dataOf("GGIO1$MX$HA$phsAHar"), &har.har[PhsA]);
    ASSERT_NE(har.har[PhsA], nullptr);
    ASSERT_NE(har.har[PhsB], nullptr);
    EXPECT_EQ(har.har[PhsC], nullptr) << "the file does not show it";
    EXPECT_EQ(har.numHar, 40) << "as long as the shortest";
    EXPECT_EQ(LogLines::count("GEN", "ERR", "modelDataInit", "QLD0/GGIO1$CF$HA$numHar is big than count!"),
              1);
    for (u16 i = 0; i < har.numHar; i++) {
        har.har[PhsB][i].ang = 1; // within its block
    }
}

TEST_F(AddressBinding, AnArrayWithoutAddressGetsARecordOfItsOwn) {
    auto *har = static_cast<HWYE *>(dataOf("GGIO1$MX$HV"));
    ASSERT_NE(har, nullptr);
    EXPECT_EQ(dataOf("GGIO1$CF$HV"), har);
    EXPECT_EQ(har->numHar, 12);
    EXPECT_EQ(dataOf("GGIO1$MX$HV$phsCAHar"), &har->har[PhsC]);
    EXPECT_EQ(LogLines::count("GEN", "ERR", "modelDataInit", "QLD0/GGIO1$CF$HV$numHar is big than count!"),
              0);
}

TEST_F(AddressBinding, ANegativeNumberOfElementsMakesNoArray) {
    auto *har = static_cast<HWYE *>(dataOf("GGIO1$MX$HNone"));
    ASSERT_NE(har, nullptr);
    EXPECT_EQ(har->har[PhsA], nullptr);
    EXPECT_EQ(har->numHar, 0);
    EXPECT_EQ(LogLines::count("GEN", "ERR", "modelDataInit", "QLD0/GGIO1$CF$HNone$numHar is big than count!"),
              0);
}

TEST_F(AddressBinding, ControlsShowStatusRequestsAndConfigurationOfOneRecord) {
    CtlObj &ctl = record<CtlObj>("CTL.DO2");
    EXPECT_EQ(dataOf("GGIO1$ST$Cmd$stVal"), &ctl.stVal);
    EXPECT_EQ(dataOf("GGIO1$CO$Cmd$Oper$ctlVal"), &ctl.Oper.ctlVal8);
    EXPECT_EQ(dataOf("GGIO1$CO$Cmd$Oper$T"), &ctl.Oper.T);
    EXPECT_EQ(dataOf("GGIO1$CO$Cmd$Oper$Check"), &ctl.Oper.Check);
}

TEST_F(AddressBinding, EveryComponentHasASubstitutionRecordOfItsOwn) {
    // Beh, Ind1 and Alm; phsA, phsB and neut of A, the last one without a subID.
    EXPECT_EQ(gCBNum.subsNum, 6);
    const auto index = [](const std::string &item) {
        return static_cast<std::size_t>(static_cast<u8 *>(dataOf(item)) - reinterpret_cast<u8 *>(aSubsObj)) /
               sizeof(SubsObj);
    };
    std::set<std::size_t> used;
    for (const char *component : {"phsA", "phsB", "neut"}) {
        const std::string path = "GGIO1$SV$A$" + std::string(component);
        const std::size_t own = index(path + "$subEna");
        EXPECT_TRUE(used.insert(own).second) << component;
        ASSERT_LT(own, gCBNum.subsNum);
        EXPECT_EQ(dataOf(path + "$subCVal$mag$f"), &aSubsObj[own].subMag) << component;
        EXPECT_EQ(dataOf(path + "$subCVal$ang$f"), &aSubsObj[own].subAng) << component;
    }
    EXPECT_EQ(dataOf("GGIO1$SV$A$phsB$subID"), aSubsObj[index("GGIO1$SV$A$phsB$subEna")].subID);
    const std::size_t ind = index("GGIO1$SV$Ind1$subEna");
    EXPECT_TRUE(used.insert(ind).second);
    EXPECT_TRUE(used.insert(index("GGIO1$SV$Alm$subEna")).second);
    EXPECT_EQ(dataOf("GGIO1$SV$Ind1$subVal"), &aSubsObj[ind].subVal8);
    EXPECT_EQ(dataOf("GGIO1$SV$Ind1$subQ"), &aSubsObj[ind].subQ);
    EXPECT_EQ(dataOf("GGIO1$SV$Beh$subEna"), nullptr) << "its object has no record";
    for (u16 i = 0; i < gCBNum.subsNum; i++) {
        EXPECT_EQ(aSubsObj[i].clientId, clientNone);
    }
}

TEST_F(AddressBinding, DescriptionsOfSetpointAlarmsAreFound) {
    EXPECT_EQ(setPointDesc[11].dNode, nodeOf("GGIO1$DC$Alm$d"));
    EXPECT_EQ(setPointDesc[11].dUNode, nodeOf("GGIO1$DC$Alm$dU"));
    for (u32 i = 0; i < setPointNum; i++) {
        EXPECT_TRUE(i == 11 || (setPointDesc[i].dNode == nullptr && setPointDesc[i].dUNode == nullptr));
    }
    DescNodes list[2] = {{"ST.SP12", nullptr, nullptr}, {}};
    EXPECT_FALSE(searchTargetDescNode(nodeOf("GGIO1$ST$Alm"), "ST.SP", list)) << "only FC DC";
    EXPECT_FALSE(searchTargetDescNode(nodeOf("GGIO1$DC$Alm"), "RT.SP", list));
    EXPECT_TRUE(searchTargetDescNode(nodeOf("GGIO1$DC$Alm"), nullptr, list));
}

TEST_F(AddressBinding, ControlBlocksAreCounted) {
    EXPECT_EQ(gCBNum.rcbNum, 4);
    EXPECT_EQ(gCBNum.brcbNum, 1);
    EXPECT_EQ(gCBNum.lcbNum, 1);
    EXPECT_EQ(gCBNum.gseNum, 1);
    EXPECT_EQ(gCBNum.sgcbNum, 1);
}

TEST_F(AddressBinding, PathsBelowAnObjectAreDotted) {
    char path[maxPathText];
    getDAStr(nodeOf("GGIO1$MX$A$phsA$cVal$mag$f"), path);
    EXPECT_STREQ(path, "phsA.cVal.mag.f");
    getDAStr(nodeOf("GGIO1$ST$Ind1$q"), path);
    EXPECT_STREQ(path, "q");
}

// ---------------------------------------------------------------------------- attribute tables

TEST(AttributeTables, AttributesAreFoundByPathAndConstraintTogether) {
    EXPECT_EQ(getDAOfs(CdcWYE, "res.cVal.ang.f", FcMX),
              static_cast<int>(offsetof(WYE, phs[PhsRes].cVal.ang)));
    EXPECT_EQ(getDAOfs(CdcDEL, "phsCA.rangeC.llLim.f", FcCF),
              static_cast<int>(offsetof(WYE, phs[PhsC].rangeC.llLim)));
    EXPECT_EQ(getDAOfs(CdcRCB, "SqNum", FcRP), static_cast<int>(offsetof(RCB, SqNum8)));
    EXPECT_EQ(getDAOfs(CdcRCB, "SqNum", FcBR), static_cast<int>(offsetof(RCB, SqNum)));
    const struct {
        u8 cdc;
        const char *path;
        u8 fc;
    } absent[] = {
        {CdcWYE, "phsA.cVal.mag.f", FcCF},
        {CdcWYE, "phsA", FcMX},
        {CdcWYE, "PhsA.q", FcMX},
        {CdcDEL, "phsA.q", FcMX},
        {CdcSPS, "t", FcMX},
        {CdcGOCB, "GoEna", FcGO},
        {CdcSPC, "Cancel.Check", FcCO},
        {CdcCSD, "x", FcCF},
        {38, "q", FcMX},
        {255, "q", FcMX},
        {CdcRCB, "PurgeBuf", FcRP},
        {CdcHMV, "numHar", FcCF},
    };
    for (const auto &each : absent) {
        EXPECT_EQ(getDAOfs(each.cdc, each.path, each.fc), -1) << each.path;
    }
}

TEST(AttributeTables, OnlyKindsWithoutARecordHaveNoTable) {
    for (u8 cdc = 0; cdc < aDONum; cdc++) {
        const bool none = cdc == 5 || cdc == 9 || cdc == 13 || (cdc >= 19 && cdc <= 21) || cdc == 28;
        EXPECT_EQ(aDOTable[cdc].rows == nullptr, none || cdc == CdcGOCB) << int{cdc};
    }
}

TEST(AttributeTables, RowsOfARecordNeitherRepeatNorOverlap) {
    for (u8 cdc = 0; cdc < aDONum; cdc++) {
        for (u32 i = 0; i < aDOTable[cdc].count; i++) {
            for (u32 j = i + 1; j < aDOTable[cdc].count; j++) {
                const AttrRow &a = aDOTable[cdc].rows[i], &b = aDOTable[cdc].rows[j];
                EXPECT_FALSE(a.fc == b.fc && std::strcmp(a.path, b.path) == 0) << int{cdc} << " " << a.path;
                if (cdc == CdcRCB || (a.fc == FcSV) != (b.fc == FcSV) || a.fc == FcSV) {
                    continue;
                }
                EXPECT_TRUE(a.offset + a.size <= b.offset || b.offset + b.size <= a.offset)
                    << int{cdc} << " " << a.path << " " << b.path;
            }
        }
    }
}

// ------------------------------------------------------------------------ private configuration

TEST_F(AddressBinding, TheLocalConfigurationTakesTheFirstMatchingKey) {
    EXPECT_EQ(localConfInit(), 0);
    EXPECT_EQ(localConfig, 1U);
    EXPECT_STREQ(searchKey(&OrvPrivate.localConf, "vvaFormat"), "1");
    EXPECT_EQ(searchKey(&OrvPrivate.localConf, "vvaforma"), nullptr);
}

TEST_F(AddressBinding, PrivateConfigurationFaultsAreNamed) {
    char text[31];
    f32 number = 0;
    u32 kept = 5;
    const LocalConfRow table[] = {
        {"vvaFormat", text, 2}, {"vvaFormat", &number, 1}, {"absent", &kept, 0}, {"", nullptr, 0}};
    EXPECT_EQ(localConfLoad(table, &OrvPrivate.localConf), 0);
    EXPECT_STREQ(text, "1");
    EXPECT_EQ(number, 1);
    EXPECT_EQ(kept, 5U);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "privateConfigProcess", "absent is not in Private Element!"), 1);
    u32 saturated = 0;
    const LocalConfRow beyond[] = {{"beyond", &saturated, 0}, {"", nullptr, 0}};
    EXPECT_EQ(localConfLoad(beyond, &OrvPrivate.localConf), 0);
    EXPECT_EQ(saturated, 0xFFFFFFFF);
    const LocalConfRow wrong[] = {{"vvaFormat", &kept, 3}, {"", nullptr, 0}};
    EXPECT_EQ(localConfLoad(wrong, &OrvPrivate.localConf), -1);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "privateConfigProcess", "The Invalid Config Data Type!"), 1);
    EXPECT_EQ(privateConfigProcess(0), 0);
    EXPECT_EQ(privateConfigProcess(2), 0);
    EXPECT_EQ(privateConfigProcess(3), -1);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "privateConfigProcess", "privateType ERROR!"), 1);
    EXPECT_EQ(searchKey(nullptr, "x"), nullptr);
    EXPECT_EQ(searchKey(&OrvPrivate.localConf, nullptr), nullptr);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "searchKey", "Input param ERROR!"), 2);
}

} // namespace
