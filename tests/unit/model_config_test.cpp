// The configuration lists with every reference composed, and copying and removing whole devices.
#include "model-gen/c/modelConfig.h"
#include "model-gen/c/sclRecords.h"
#include "tests/support/sclText.h"

#include <gtest/gtest.h>

using namespace ied;
using namespace ied::test;

namespace {

std::string dataSets() {
    std::string out;
    for (const PreDefDs &ds : records<&PreDefDs::link>(PreDefDsHead)) {
        out += shown(ds.ldName) + " " + ds.itemName + ":";
        for (const PreDefDsMember &member : records<&PreDefDsMember::link>(ds.members)) {
            out += std::string(" ") + member.name;
        }
        out += "\n";
    }
    return out;
}

std::string reports() {
    std::string out;
    for (const ReportCfg &report : records<&ReportCfg::link>(ReportCfgHead)) {
        out += shown(report.name) + " " + shown(report.rtpID) + " " + shown(report.dsName) + "\n";
    }
    return out;
}

std::string logs() {
    std::string out;
    for (const LCBCfg &log : records<&LCBCfg::link>(LCBHead)) {
        out += shown(log.name) + " " + shown(log.datSet) + " " + shown(log.logName) + "\n";
    }
    return out;
}

std::string devices() {
    std::string out;
    for (const scl::LDevice &device : records<&scl::LDevice::link>(LDeviceHead)) {
        out += shown(device.inst) + (listEmpty(&device.gse) ? "" : "+gse") +
               (device.SettingControl.numOfSGs != nullptr ? "+sg" : "") + " ";
    }
    return out;
}

const std::string types = "<LNodeType id='T0'><DO name='Beh' type='D'/></LNodeType><DOType id='D' "
                          "cdc='ENS'><DA name='stVal' fc='ST' bType='INT8'><Val>1</Val></DA></DOType>";

TEST(ModelConfig, DataSetMembersAreReferencesWithDollars) {
    SclSession session;
    session.build(sclDocument(
        "<LDevice inst='L'><LN prefix='p' lnClass='MMXU' inst='1' lnType='T0'><DataSet "
        "name='last'/></LN><LN0 lnClass='LLN0' lnType='T0'><DataSet name='ds'><FCDA ldInst='L' prefix='p' "
        "lnClass='MMXU' lnInst='1' doName='A.phsA' daName='cVal.mag' fc='MX'/><FCDA ldInst='X' "
        "lnClass='GGIO' lnInst='2' doName='Ind' daName='' fc='xx'/></DataSet></LN0></LDevice>",
        types));
    EXPECT_EQ(dataSets(), "IL LLN0$ds: IL/pMMXU1$MX$A$phsA$cVal$mag IX/GGIO2$xx$Ind\n"
                          "IL pMMXU1$last:\n");
}

TEST(ModelConfig, ReportsHaveAnEntryAnInstanceUnderTheNameOfItsNode) {
    SclSession session;
    const std::string longName(30, 'r'), tooLong(31, 't');
    session.build(sclDocument(
        sclDevice("<ReportControl name='a' rptID='id' datSet='ds' bufTime='500' intgPd='99999999999' "
                  "confRev='7' buffered='true'><TrgOps dchg='true' qchg='false' dupd='true' "
                  "gi='true'/><OptFields seqNum='true' reasonCode='true' dataRef='true' entryID='true' "
                  "segmentation='true'/><RptEnabled max='2'/></ReportControl><ReportControl name='b' "
                  "rptID='' datSet=''><RptEnabled max='1'/></ReportControl><ReportControl "
                  "name='none'><RptEnabled max='-1'/></ReportControl><ReportControl name='" +
                  longName + "' rptID='x'><RptEnabled max='2'/></ReportControl><ReportControl name='" +
                  tooLong + "'/>"),
        types));
    EXPECT_EQ(reports(),
              "IL/LLN0$BR$a01 id01 IL/LLN0$ds\nIL/LLN0$BR$a02 id02 IL/LLN0$ds\nIL/LLN0$RP$b (null) (null)\n"
              "IL/LLN0$RP$" +
                  longName + "0 x01 (null)\nIL/LLN0$RP$" + longName +
                  "0 x02 (null)\n"
                  "IL/LLN0$RP$ (null) (null)\n");
    for (const ReportCfg &report : records<&ReportCfg::link>(ReportCfgHead)) {
        EXPECT_NE(nodeAt(report.name), nullptr) << report.name;
    }
    const ReportCfg &a = *records<&ReportCfg::link>(ReportCfgHead).begin();
    EXPECT_EQ(a.trgOps, 64 + 16 + 4);
    EXPECT_EQ(a.optFlds, 0x4000 + 0x1000 + 0x0400 + 0x0100 + 0x0040);
    EXPECT_EQ(a.bufTm, 500U);
    EXPECT_EQ(a.intgPd, 0xFFFFFFFFU);
    EXPECT_EQ(a.confRev, 7U);
    EXPECT_EQ(a.buffered, 1);
    EXPECT_EQ(a.bufferSize, 0U);
}

TEST(ModelConfig, LogsKeepTheirNameAndTriggers) {
    SclSession session;
    session.build(sclDocument(
        sclDevice(
            "<LogControl name='l' datSet='ds' intgPd='60000' logName='LOG' logEna='true' "
            "reasonCode='true'><TrgOps qchg='true' period='true'/></LogControl><LogControl name='bare'/>"),
        types));
    EXPECT_EQ(logs(), "IL/LLN0$LG$l IL/LLN0$ds LOG\nIL/LLN0$LG$bare IL/LLN0$ (null)\n");
    const LCBCfg &log = *records<&LCBCfg::link>(LCBHead).begin();
    EXPECT_EQ(log.trgOps, 32 + 8);
    EXPECT_EQ(log.period, 1);
    EXPECT_EQ(log.logEna, 1);
    EXPECT_EQ(log.reasonCode, 1);
    EXPECT_EQ(log.intgPd, 60000U);
}

// ---------------------------------------------------------------------------- devices as a whole

std::string twoDevices() {
    return sclDocument(
        sclDevice("<DataSet name='ds'><FCDA ldInst='b' lnClass='LLN0' doName='Beh' fc='ST'/></DataSet><DOI "
                  "name='Beh'><DAI name='stVal' sAddr='MICS.Beh'/></DOI><ReportControl name='r' rptID='b/r' "
                  "datSet='ds'/><ReportControl name='s' rptID='plain'/><LogControl name='l' datSet='ds' "
                  "logName='b'/><GSEControl name='g'/><SettingControl numOfSGs='1'/>",
                  "b") +
            sclDevice("<DataSet name='other'/><ReportControl name='o'/><LogControl name='p'/>", "bb"),
        types);
}

TEST(ModelConfig, ACopiedDeviceHasTheTreeAndTheListsOfItsSource) {
    SclSession session;
    session.build(twoDevices());
    const std::string source = treeText(nodeAt("Ib"));
    GenNode *copy = copyLogicDevice("b", "a");
    ASSERT_EQ(copy, searchLogicDevice("a"));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(lds.child, copy) << "in name order";
    EXPECT_EQ(treeText(copy).substr(2), source.substr(2)) << "but for the name";
    EXPECT_STREQ(copy->name, "Ia");
    EXPECT_EQ(nodeAt("Ia/LLN0$ST$Beh$stVal")->sAddr, nodeAt("Ib/LLN0$ST$Beh$stVal")->sAddr)
        << "texts are shared";
    EXPECT_EQ(dataSets(), "Ib LLN0$ds: Ib/LLN0$ST$Beh\nIbb LLN0$other:\nIa LLN0$ds: Ia/LLN0$ST$Beh\n");
    EXPECT_EQ(reports(),
              "Ib/LLN0$RP$r b/r Ib/LLN0$ds\nIb/LLN0$RP$s plain (null)\nIbb/LLN0$RP$o (null) (null)\n"
              "Ia/LLN0$RP$r a/r Ia/LLN0$ds\nIa/LLN0$RP$s plain (null)\n");
    EXPECT_EQ(logs(),
              "Ib/LLN0$LG$l Ib/LLN0$ds b\nIbb/LLN0$LG$p Ibb/LLN0$ (null)\nIa/LLN0$LG$l Ia/LLN0$ds a\n");
    EXPECT_EQ(devices(), "b+gse+sg bb a+gse+sg ");
}

TEST(ModelConfig, ACopyOntoAnExistingDeviceOrFromNoneChangesNothing) {
    SclSession session;
    session.build(twoDevices());
    const std::string before = treeText(&lds) + dataSets() + reports() + logs() + devices();
    testing::internal::CaptureStderr();
    EXPECT_EQ(copyLogicDevice("b", "bb"), nullptr);
    EXPECT_EQ(copyLogicDevice("nobody", "c"), nullptr);
    removeLogicDevice("nobody");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "copyLogicDevice: there is no LD: b!copyLogicDevice: there is no LD: nobody!"
              "removeLogicDevice: there is no LD: nobody!");
    EXPECT_EQ(treeText(&lds) + dataSets() + reports() + logs() + devices(), before);
}

TEST(ModelConfig, ARemovedDeviceLeavesNothingAndCanBeCopiedAgain) {
    SclSession session;
    session.build(twoDevices());
    const std::string before = treeText(&lds);
    for (int round = 0; round < 2; ++round) {
        ASSERT_NE(copyLogicDevice("b", "c"), nullptr);
        EXPECT_EQ(searchLogicDevice("c"), lds.lastChild);
        removeLogicDevice("c");
        EXPECT_EQ(treeText(&lds), before);
        EXPECT_EQ(dataSets(), "Ib LLN0$ds: Ib/LLN0$ST$Beh\nIbb LLN0$other:\n");
        EXPECT_EQ(devices(), "b+gse+sg bb ");
    }
    removeLogicDevice("b");
    EXPECT_EQ(lds.child, searchLogicDevice("bb"));
    EXPECT_EQ(reports(), "Ibb/LLN0$RP$o (null) (null)\n");
    EXPECT_EQ(logs(), "Ibb/LLN0$LG$p Ibb/LLN0$ (null)\n");
    removeLogicDevice("bb");
    EXPECT_EQ(lds.child, nullptr);
    EXPECT_EQ(lds.lastChild, nullptr);
}

} // namespace
