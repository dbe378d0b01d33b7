// The readers of the SCL file: what they keep, and what they say of what they do not know.
#include "model-gen/c/modelBuild.h"
#include "model-gen/c/sclReaders.h"
#include "tests/support/sclText.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace ied;
using namespace ied::test;

namespace {

scl::LDevice &firstDevice() {
    return *records<&scl::LDevice::link>(LDeviceHead).begin();
}

template <auto link> int count(const ListHead &head) {
    int n = 0;
    for ([[maybe_unused]] auto &record : records<link>(head)) {
        ++n;
    }
    return n;
}

template <auto link> auto &first(const ListHead &head) {
    return *records<link>(head).begin();
}

// ------------------------------------------------------------------------- what is not understood

struct MessageCase {
    const char *name;
    std::string file;
    const char *log; // all of it but the line on the time
};

std::string inDevice(const char *content) {
    return sclDocument("<LDevice inst='L'>" + std::string(content) + "</LDevice>", "");
}
std::string inLN0(const char *content) {
    return sclDocument(sclDevice(content), "");
}
std::string inLN(const char *content) {
    return inDevice(("<LN lnClass='GGIO'>" + std::string(content) + "</LN>").c_str());
}
std::string inIed(const char *content) {
    return sclDocument("", "", content);
}
std::string inTypes(const char *content) {
    return sclDocument("", content);
}
std::string inComm(const char *content) {
    return "<SCL><Communication><SubNetwork>" + std::string(content) + "</SubNetwork></Communication></SCL>";
}

class ReaderMessage : public testing::TestWithParam<MessageCase> {};

TEST_P(ReaderMessage, IsWrittenAndTheWalkGoesOn) {
    SclSession session;
    session.read(GetParam().file);
    const std::string log = session.log();
    EXPECT_EQ(log.substr(log.find('\n') + 1), GetParam().log);
}

const MessageCase messages[] = {
    {"section", "<SCL><Header/><x/><Private type='a'>t</Private><Private/></SCL>",
     "getICD : Unknown el : x\ngetICD : We ignore type = a t \n\n"},
    {"header", "<SCL><Header id='h' a='' b=''><y/><History u=''><z/><Hitem c=''/></History></Header></SCL>",
     "getInfoHead : Unknown attr[2] : a\ngetInfoHead : Unknown attr[4] : b\ngetInfoHead : Unknown attr[0] : "
     "c\n"},
    {"ied", inIed("<x/><Private/><Private type='other'/>"),
     "getIED : Unknown el : x\ngetPrivate : We ignore type = other \n"},
    {"services",
     inIed("<Services><SGEdit q=''><x/></SGEdit><GOOSE max='1' q=''/><x/><Private p='1'/></Services>"),
     "getServices : Unknown attr[2] : q\ngetServices : Unknown el : x\ngetServices : We ignore p = 1 \n"},
    {"accessPoint",
     "<SCL><IED><AccessPoint q=''><Private/><Server><LDevice/></Server></AccessPoint></IED></SCL>",
     "getAP : Unknown attr[0] : q\ngetAP : Unknown el : Private\n"},
    {"server", sclDocument("<x/><Private/><Association kind='k' z=''/><Authentication y=''/>", ""),
     "getAP : Unknown el : x\n\ngetAP : Unknown attr[2] : z\ngetAP : Unknown attr[0] : y\n"},
    {"device", inDevice("<Private type='x'>t</Private><Private>u</Private><DOI/>"),
     "getLDeviceList : We ignore type = x t \nu \ngetLDeviceList : Unknown el : DOI\n"},
    {"ln", inLN("<GSEControl/><SampledValueControl/><SettingControl/><Private a='b'/>"),
     "getLDeviceList : Unknown el : GSEControl\ngetLDeviceList : Unknown el : SampledValueControl\n"
     "getLDeviceList : Unknown el : SettingControl\ngetLDeviceList : We ignore a = b \n"},
    {"ln0", sclDocument("<LDevice><LN0 prefix='p'><x/></LN0></LDevice>", ""),
     "getLDeviceList : Unknown attr[0] : prefix\ngetLDeviceList : Unknown el : x\n"},
    {"dataSet", inLN0("<DataSet a=''><FCDA ix=''/><Private/><x/></DataSet>"),
     "getDataSet : Unknown attr[0] : a\ngetDataSet : Unknown attr[0] : ix\n\ngetDataSet : Unknown el : x\n"},
    {"report",
     inLN0("<ReportControl a=''><TrgOps b=''/><OptFields c=''/><RptEnabled "
           "d=''><e/></RptEnabled><x/></ReportControl>"),
     "getReportControl : Unknown attr[0] : a\ngetReportControl : Unknown attr[0] : b\n"
     "getReportControl : Unknown attr[0] : c\ngetReportControl : Unknown attr[0] : d\n"
     "getReportControl : Unknown el : x\n"},
    {"log",
     inLN0("<LogControl><TrgOps gi='true'/><x/></LogControl><LogControl><Private/><TrgOps/></LogControl>"),
     "getLogContrl : Unknown attr[0] : gi\ngetLogContrl : Unknown el : Private\n"},
    {"inputs", inLN0("<Inputs z=''><Private/><ExtRef/></Inputs>"),
     "getInputs : Unknown attr[0] : z\ngetInputs : Unknown el : Private\n"},
    {"instances", inLN0("<DOI a=''><SDI b=''><x/><Private/></SDI><DAI c=''><y/></DAI><z/></DOI>"),
     "getDOI : Unknown attr[0] : a\ngetSDI : Unknown attr[0] : b\ngetSDI : Unknown el : x\n\n"
     "getDAI : Unknown attr[0] : c\ngetDOI : Unknown el : z\n"},
    {"templates", inTypes("<x/><Private/><LNodeType a=''/><DOType desc=''/><DAType desc=''/>"),
     "getTemplateList : Unknown el : x\n\ngetLNodeType : Unknown attr[0] : a\n"
     "getDOType : Unknown attr[0] : desc\ngetDAType : Unknown attr[0] : desc\n"},
    {"enumeration", inTypes("<EnumType z=''><EnumVal y=''/><Private a='b'>t</Private></EnumType>"),
     "getEnumType : Unknown attr[0] : z\r\ngetEnumType : Unknown attr[0] : y\r\ngetEnumType : We ignore a = "
     "b t \n"},
    {"incompleteTypes",
     inTypes("<LNodeType><Private a='b'/><DO name='Mod'/></LNodeType><DOType><DA name='q' "
             "x=''/></DOType><DAType><BDA name='f'/></DAType>"),
     "getLNodeType : We ignore a = b \ngetLNodeType : We ignore DO without type : Mod (line 6)\n"
     "getDOType : We ignore DA without bType : q (line 6)\ngetDAType : We ignore BDA without bType : f (line "
     "6)\n"},
    {"subNetwork", inComm("<x/><ConnectedAP><y/><Private a='b'/><GSE><z/></GSE></ConnectedAP>"),
     "getCommList : Unknown el : y\ngetCommList : We ignore a = b \n"},
    {"addresses",
     inComm("<ConnectedAP><Address><P type='IPX'/></Address><PhysConn type='c'><P "
            "type='plug'/></PhysConn><SMV><Address><P type='IP'/></Address></SMV></ConnectedAP>"),
     "getCommList : Unknown attr[1] : IPX\ngetCommList : Unknown attr[1] : plug\ngetCommList : Unknown "
     "attr[1] : IP\n"},
    {"doubleSections",
     inIed("<Private type='ORV_LocalConf'/><Private type='ORV_LocalConf'/><Private "
           "type='ORV_IniConf'/><Private type='ORV_IniConf'/>"),
     "getPrivate : Double occure : ORV_LocalConf, ignore!\ngetPrivate : Double occure : ORV_IniConf, "
     "ignore!\n"},
    {"privates",
     inIed("<Private type='ORV_IedResources'><eorv:GooseRx q=''/><x/></Private><Private "
           "type='ORV_GooseSubscription'><s z=''><y/></s></Private>"),
     "getIedResources : Unknown attr[0] : q\ngetIedResources : Unknown el : x\n"
     "getGooseSubscription : Unknown attr[0] : z\ngetGooseSubscription : Unknown el : y\n"},
};

INSTANTIATE_TEST_SUITE_P(SclReaders, ReaderMessage, testing::ValuesIn(messages),
                         [](const auto &test) { return std::string(test.param.name); });

TEST(SclReaders, AnUnknownChildOfADOTypeIsNamedOnTheErrorStreamAndTheNextOnesAreRead) {
    SclSession session;
    testing::internal::CaptureStderr();
    session.read(inTypes("<DOType><Private/><DA bType='INT8'/></DOType>"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "getDOType : Unkown type!\r\n");
    EXPECT_EQ(count<&scl::DA::link>(first<&scl::DOType::link>(DOTypeHead).das), 1);
}

// -------------------------------------------------------------------------------- what is kept

TEST(SclReaders, SectionsMayComeInAnyOrderAndBeAbsent) {
    const std::string comm = "<Communication><SubNetwork name='n'/></Communication>";
    const std::string header =
        "<Header id='h'><History><Hitem who='me'/><Hitem who='you'/></History></Header>";
    const std::string ied = "<IED name='I' type='t'><AccessPoint router='r'><Server timeout='30'><LDevice "
                            "inst='1'/></Server></AccessPoint><AccessPoint><Server><LDevice "
                            "inst='2'/></Server></AccessPoint></IED>";
    for (const std::string &file : {comm + header + ied, ied + comm + header}) {
        SclSession session;
        session.read("<SCL>" + file + "</SCL>");
        EXPECT_STREQ(icd.Header->id, "h");
        EXPECT_STREQ(first<&scl::Hitem::link>(Header.history).who, "me");
        EXPECT_EQ(icd.Comm->subNetworks, &SubNetworkHead);
        EXPECT_STREQ(first<&scl::SubNetwork::link>(SubNetworkHead).name, "n");
        EXPECT_STREQ(icd.IED->name, "I");
        EXPECT_EQ(count<&scl::LDevice::link>(LDeviceHead), 2) << "of both access points";
        EXPECT_EQ(IED.iedResources, &IedResources);
    }
    SclSession session;
    session.read("<SCL/>");
    EXPECT_EQ(icd.Header, &Header);
    EXPECT_EQ(icd.Header->id, nullptr);
    EXPECT_EQ(icd.Comm->subNetworks, nullptr);
}

TEST(SclReaders, AnEmptyAuthenticationMeansNone) {
    for (const auto &[attributes, want] :
         {std::pair{"", "true"}, {"none='false'", "false"}, {"weak='true'", "(null)"}}) {
        SclSession session;
        session.read(sclDocument("<Authentication " + std::string(attributes) + "/>", ""));
        EXPECT_EQ(shown(IED.accessPoint.none), want);
    }
}

TEST(SclReaders, ServicesAreThoseOfDirectChildren) {
    SclSession session;
    session.read(inIed("<Services><SettingGroups><SGEdit/></SettingGroups><ConfDataSet/><ConfReportControl "
                       "max='5'/><ReportSettings bufTime='Dyn'/><FileHandling/></Services>"));
    const scl::Services &services = IED.services;
    EXPECT_EQ(services.SettingGroups, 1);
    EXPECT_EQ(services.SGEdit, 0);
    EXPECT_EQ(services.FileHandling, 1);
    ASSERT_NE(services.ConfDataSet, nullptr);
    EXPECT_EQ(services.ConfDataSet->max, nullptr);
    EXPECT_EQ(services.DynDataSet, nullptr);
    EXPECT_STREQ(services.ConfReportControl->max, "5");
    EXPECT_STREQ(services.ReportSettings->bufTime, "Dyn");
}

TEST(SclReaders, ALogicalDeviceKeepsItsPartsInDocumentOrder) {
    SclSession session;
    session.read(
        sclDocument("<LDevice inst='L'><Private type='iedName'>X</Private><LN lnClass='A' prefix='p'/><LN "
                    "lnClass='B'/><LN0 lnClass='LLN0'><GSEControl name='g' appID='1'/><SettingControl "
                    "numOfSGs='2'/><SettingControl actSG='1'/><SampledValueControl name='s'><any "
                    "refreshTime='true'/></SampledValueControl><ReportControl name='r'/><ReportControl "
                    "name='q'><TrgOps dchg='true'/><OptFields entryID='true'/><RptEnabled "
                    "max='3'/></ReportControl><LogControl name='l'><Private/><TrgOps "
                    "dchg='true'/></LogControl><Inputs><ExtRef daName='x'/></Inputs></LN0></LDevice>",
                    ""));
    scl::LDevice &device = firstDevice();
    EXPECT_STREQ(device.iedName, "X");
    EXPECT_EQ(device.iedVersion, nullptr);
    EXPECT_STREQ(first<&scl::LN::link>(device.lns).lnClass, "A");
    EXPECT_EQ(count<&scl::LN::link>(device.lns), 2);
    EXPECT_EQ(device.LN0.prefix, nullptr);
    EXPECT_STREQ(first<&scl::GSEControl::link>(device.gse).appID, "1");
    EXPECT_STREQ(device.SettingControl.numOfSGs, "2");
    EXPECT_STREQ(device.SettingControl.actSG, "1");
    EXPECT_STREQ(device.SampledValueControl.refreshTime, "true");
    auto report = records<&scl::ReportControl::link>(device.LN0.reportControls).begin();
    EXPECT_EQ((*report).TrgOps.dchg, nullptr);
    EXPECT_EQ((*report).max, nullptr);
    ++report;
    EXPECT_STREQ((*report).TrgOps.dchg, "true");
    EXPECT_STREQ((*report).entryID, "true");
    EXPECT_STREQ((*report).max, "3");
    EXPECT_EQ(first<&scl::LogControl::link>(device.LN0.logControls).TrgOps.dchg, nullptr);
    EXPECT_STREQ(first<&scl::ExtRef::link>(first<&scl::Inputs::link>(device.LN0.inputs).extRefs).daName, "x");
}

TEST(SclReaders, InstancesKeepTheirNestingAndTheFirstVal) {
    SclSession session;
    session.read(inLN0("<DOI name='PhV'><SDI name='phsA'><SDI name='cVal'><DAI "
                       "name='f'><Val>1</Val><Val>2</Val></DAI></SDI><DAI "
                       "name='q'><Private/><Val>3</Val></DAI></SDI></DOI>"));
    const scl::Instances &doi = first<&scl::DOI::link>(firstDevice().LN0.dois).below;
    const scl::Instances &phsA = first<&scl::SDI::link>(doi.sdi).below;
    EXPECT_TRUE(listEmpty(&doi.dai));
    EXPECT_EQ(shown(first<&scl::DAI::link>(phsA.dai).val), "(null)");
    EXPECT_EQ(shown(first<&scl::DAI::link>(first<&scl::SDI::link>(phsA.sdi).below.dai).val), "1");
}

TEST(SclReaders, TypesKeepSdosAndDasApartAndDoubleIds) {
    SclSession session;
    session.read(inTypes(
        "<DOType id='d' cdc='WYE'><DA name='a' bType='INT8'><Val>7</Val></DA><SDO name='s' type='t'/><DA "
        "name='b' bType='INT8'/></DOType><EnumType id='e'/><EnumType id='e'><EnumVal ord='1'/></EnumType>"));
    const scl::DOType &type = first<&scl::DOType::link>(DOTypeHead);
    EXPECT_EQ(count<&scl::SDO::link>(type.sdos), 1);
    EXPECT_EQ(count<&scl::DA::link>(type.das), 2);
    EXPECT_STREQ(first<&scl::DA::link>(type.das).val, "7");
    EXPECT_EQ(count<&scl::EnumType::link>(EnumTypeHead), 2);
}

TEST(SclReaders, CommunicationIsKept) {
    SclSession session;
    session.read(
        inComm("<Text>t</Text><BitRate>10</BitRate><ConnectedAP iedName='I'><Address><P "
               "type='IP'>1.2.3.4</P><P type='OSI-AE-Invoke'>9</P></Address><PhysConn type='Connection'><P "
               "type='Plug'>RJ45</P></PhysConn><SMV ldInst='s'><x/><Address><P "
               "type='APPID'>1</P></Address></SMV><GSE cbName='g'><MinTime unit='s' "
               "multiplier='m'>4</MinTime><Address><P type='VLAN-ID'>5</P></Address></GSE></ConnectedAP>"));
    const scl::SubNetwork &network = first<&scl::SubNetwork::link>(SubNetworkHead);
    EXPECT_STREQ(network.text, "t");
    EXPECT_STREQ(network.bitRate, "10");
    const scl::ConnectedAP &ap = first<&scl::ConnectedAP::link>(network.connectedAPs);
    EXPECT_STREQ(ap.ip, "1.2.3.4");
    EXPECT_STREQ(ap.osiAeInvoke, "9");
    EXPECT_STREQ(ap.connectionType, "Connection");
    EXPECT_STREQ(ap.plug, "RJ45");
    EXPECT_STREQ(ap.SMV.ldInst, "s");
    EXPECT_EQ(ap.SMV.appID, nullptr) << "its first child is no Address";
    const scl::GSE &gse = first<&scl::GSE::link>(ap.gse);
    EXPECT_STREQ(gse.MinTime.multiplier, "m");
    EXPECT_STREQ(gse.MinTime.value, "4");
    EXPECT_EQ(gse.MaxTime.value, nullptr);
    EXPECT_STREQ(gse.vlanID, "5");
}

TEST(SclReaders, PrivateSectionsAreFoundByKey) {
    SclSession session;
    session.read(inIed(
        "<Private type='ORV_LocalConf'><Item key='vvaFormat' val='1' extend='e'/></Private><Private "
        "type='ORV_LocalConf'><Item key='other'/></Private><Private type='ORV_IniConf'><s><k "
        "key='lost'/></s><s name='net'><k key='a' val='b'/></s></Private><Private "
        "type='ORV_IedResources'><eorv:VisualDI num='3'/><eorv:GooseTx maxBoolData='9'/></Private><Private "
        "type='ORV_IedResources'><eorv:VisualDI num='4'/><eorv:Reports maxDataSetSize='7'/></Private>"));
    EXPECT_EQ(count<&scl::OrvConfig_t::link>(OrvPrivate.localConf), 1);
    EXPECT_STREQ(first<&scl::OrvConfig_t::link>(OrvPrivate.localConf).extend, "e");
    EXPECT_EQ(getConfSection(nullptr), nullptr);
    EXPECT_EQ(getConfSection("s"), nullptr);
    ASSERT_NE(getConfSection("net"), nullptr);
    EXPECT_STREQ(first<&scl::OrvConfig_t::link>(getConfSection("net")->entries).val, "b");
    EXPECT_EQ(count<&scl::VisualDI::link>(IedResources.visualDIs), 2);
    EXPECT_STREQ(IedResources.GooseTx.maxBoolData, "9");
    EXPECT_STREQ(IedResources.Reports.maxDataSetSize, "7");
}

TEST(SclReaders, TheGooseMapTakesHexadecimalNumbersAndSixOctets) {
    SclSession session;
    session.read(inIed("<Private type='ORV_GooseSubscription'><s APPID='123fFF' mAddr='01-0C-cd-01-00-10' "
                       "goCbRef='cb' VLAN-ID='2'><eorv:GooseRxEntry tdlString='12' ref='r'/><other "
                       "tdlString='13'/></s><s mAddr='01:0C:CD:01:00:10'><eorv:GooseRxEntry/></s><s "
                       "mAddr='01-0C-CD-01-00-1'><eorv:GooseRxEntry/></s></Private>"));
    testing::internal::CaptureStderr();
    modelGetGooseMap();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "modelGetGooseMap : Mac len error!\r\n");
    auto map = records<&scl::GooseMapInit::link>(GooseMapInitHead).begin();
    const u8 mac[] = {0x01, 0x0C, 0xCD, 0x01, 0x00, 0x10};
    const u8 none[6] = {};
    EXPECT_EQ((*map).appid, 0x3FFF) << "the last four digits";
    EXPECT_EQ(std::memcmp((*map).mac, mac, 6), 0);
    EXPECT_STREQ((*map).gocbRef, "cb");
    EXPECT_EQ((*map).apduIndex, 12U);
    EXPECT_STREQ((*map).refPath, "r");
    ++map;
    EXPECT_EQ((*map).apduIndex, 0U) << "an entry of another name has no number";
    EXPECT_EQ((*map).refPath, nullptr);
    ++map;
    EXPECT_EQ(std::memcmp((*map).mac, mac, 6), 0) << "separators are not looked at";
    ++map;
    EXPECT_EQ(std::memcmp((*map).mac, none, 6), 0);
    EXPECT_EQ(ctoi('f') + ctoi('F') + ctoi('9') + ctoi('g'), 15 + 15 + 9);
    EXPECT_EQ(strtoint("1g2"), 0x102);
}

// ------------------------------------------------------------------- names that no node can hold

TEST(SclReadersDeath, ANameOfMoreThan30OctetsEndsTheStartAndIsNamed) {
    const std::string fits(30, 'n'), tooLong(31, 'n');
    const auto type = [](const char *owner, const char *element, const std::string &name) {
        return sclDocument("", "<" + std::string(owner) + " id='typeX'>\n<" + element + " name='" + name +
                                   "' type='t' bType='INT8'/></" + owner + ">");
    };
    const std::pair<const char *, const char *> kinds[] = {
        {"LNodeType", "DO"}, {"DOType", "SDO"}, {"DOType", "DA"}, {"DAType", "BDA"}};
    for (const auto &[owner, element] : kinds) {
        SclSession().read(type(owner, element, fits));
        EXPECT_EXIT(SclSession().read(type(owner, element, tooLong)), testing::ExitedWithCode(255),
                    "/tffs0/test.icd:7: " + std::string(element) + " name \"" + tooLong +
                        "\" of type \"typeX\" has 31 octets, 30 are the most");
    }
}

} // namespace
