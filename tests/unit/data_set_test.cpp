// Data sets: predefined and dynamic ones, their sizes and limits, and many clients at once.
#include "asn1/mmsCodec.h"
#include "basicInterface/memory.h"
#include "basicInterface/simpleData.h"
#include "device/externGlbCfg.h"
#include "model-gen/c/modelConfig.h"
#include "proto-process/c/dataSet.h"
#include "proto-process/c/services.h"
#include "tests/support/smallModel.h"

#include <gtest/gtest.h>
#include <thread>

using namespace ied;
using namespace ied::test;

namespace {

// A data set as the SCL file declares it.
struct Declared {
    Declared(const char *ld, const char *item, const std::vector<const char *> &references)
        : members(references.size()) {
        initListHead(&entry.members);
        entry.members.last = &entry.members;
        entry.ldName = const_cast<char *>(ld);
        entry.itemName = const_cast<char *>(item);
        for (std::size_t i = 0; i < members.size(); ++i) {
            members[i].name = const_cast<char *>(references[i]);
            listAddTail(&members[i].link, &entry.members);
        }
    }
    std::vector<PreDefDsMember> members;
    PreDefDs entry{};
};

// The model without predefined data sets.
struct DataSetModel : SmallModel {
    DataSetModel() { initListHead(&PreDefDsHead); }
    ~DataSetModel() {
        initListHead(&PreDefDsHead);
        semDelete(semDataSets);
        semDataSets = nullptr;
    }
};

std::string names(const char *domain) {
    const std::string domainText = domain;
    const AsnOcts octs = octsOver(domainText);
    AsnList *list = asnListNewPtr();
    std::string text = getDsList(list, &octs, nullptr) ? "" : "none";
    for (AsnListElement *e = list->first; e != nullptr; e = e->next) {
        auto *name = asnListValue<AsnOcts>(e);
        text += std::string(reinterpret_cast<char *>(name->octs), name->octetLen) + " ";
        Free(name->octs);
        Free(name);
    }
    AsnListFree(list);
    return text;
}

TEST(DataSets, PredefinedOnesAreMadeAtTheStart) {
    const DataSetModel model;
    const LogLines log;
    Declared har("Meas", "MHAI1$dsHar", {"Meas/MHAI1$MX$HPhV", "Meas/MHAI1$MX$TotW$q"});
    Declared empty("Meas", "MHAI1$dsEmpty", {});
    listAddTail(&har.entry.link, &PreDefDsHead);
    listAddTail(&empty.entry.link, &PreDefDsHead);
    ASSERT_TRUE(initPreDefDS());
    DataSet *found = nullptr;
    ASSERT_TRUE(searchDsByStr("Meas/MHAI1$dsHar", &found));
    EXPECT_EQ(found->memberNum, 2);
    EXPECT_EQ(found->daiNum, 4) << "an array counts as one leaf";
    EXPECT_EQ(found->isDynamic, 0U);
    EXPECT_EQ(found->refCount, 0);
    DataSet *again = nullptr;
    EXPECT_TRUE(searchDsByObjName(Name("Meas", "MHAI1$dsHar"), &again) && again == found);
    EXPECT_FALSE(searchDsByStr("MHAI1$dsHar", &found));
    EXPECT_FALSE(searchDsByStr("Tiny/MHAI1$dsHar", &found));
    EXPECT_FALSE(searchDsByStr("None/MHAI1$dsHar", &found));
    EXPECT_EQ(names("Meas"), "MHAI1$dsHar MHAI1$dsEmpty ");
    EXPECT_EQ(names("Tiny"), "none");
    EXPECT_EQ(names("None"), "none");
    EXPECT_EQ(getTotalDSNum(), 2U);
    EXPECT_EQ(log.count("DAT", "INF", "createPreDefDs", "Member num of DataSet \"Meas/MHAI1$dsHar\" is: 2!"),
              1);
    EXPECT_EQ(log.count("DAT", "INF", "createPreDefDs", "DAI num of DataSet \"Meas/MHAI1$dsHar\" is: 4!"), 1);
    EXPECT_EQ(log.count("DAT", "INF", "createPreDefDs",
                        "Size of DataSet \"Meas/MHAI1$dsHar\" is: " + std::to_string(again->size) + "!"),
              1);
}

TEST(DataSets, AWrongDeclarationEndsTheStartWithItsMessageAndItsLine) {
    const std::tuple<Declared, const char *, const char *> rows[] = {
        {Declared("None", "LLN0$a", {}), "No such ld \"None\"!", "the model has no device of that name"},
        {Declared("Tiny", "LLN0$a", {"LLN0$SP$Int"}), "Member \"LLN0$SP$Int\" have no /!",
         "no device in member LLN0$SP$Int"},
        {Declared("Tiny", "LLN0$a", {"Tiny/LLN0$SP$Nope"}), "Member \"Tiny/LLN0$SP$Nope\" dosen't exist!",
         "the model has no Tiny/LLN0$SP$Nope"},
        {Declared("Tiny", "LLN0$a", {"AVeryLongDeviceNameThatFitsNoBufferAtAll/LLN0$SP$Int"}),
         "Member \"AVeryLongDeviceNameThatFitsNoBufferAtAll/LLN0$SP$Int\" dosen't exist!",
         "the model has no AVeryLongDeviceNameThatFitsNoBufferAtAll/LLN0$SP$Int"},
        {Declared("Meas", "LLN0$a", {"Meas/MHAI1$MX$HPhV"}), "Fail to get size of \"Meas/LLN0$a\"!",
         "a report entry of it is longer than maxDsSize allows: raise it or give it fewer members"}};
    for (const auto &[declared, text, detail] : rows) {
        const DataSetModel model;
        externGlbCfg.maxDsSize = 64;
        const LogLines log;
        Declared copy = declared;
        copy.entry.members.next = copy.members.empty() ? nullptr : &copy.members[0].link;
        copy.entry.line = 47;
        listAddTail(&copy.entry.link, &PreDefDsHead);
        const std::string name = std::string(copy.entry.ldName) + "/LLN0$a\"";
        testing::internal::CaptureStderr();
        EXPECT_FALSE(initPreDefDS());
        EXPECT_NE(testing::internal::GetCapturedStderr().find(":47: DataSet \"" + name + ": " + detail),
                  std::string::npos)
            << detail;
        EXPECT_EQ(log.count("DAT", "ERR", "createPreDefDs", text), 1) << text;
        EXPECT_EQ(
            log.count("DAT", "ERR", "initPreDefDS", "Fail to create predefined data set \"" + name + "!"), 1);
    }
}

TEST(DataSets, ASizeIsThatOfOneEntryAndLimited) {
    const DataSetModel model;
    externGlbCfg.maxDsNum = 10;
    const VariableList members({"Tiny/GGIO1$ST$Ind1$stVal", "Tiny/GGIO1$ST$Ind1$q"});
    ASSERT_TRUE(createDynDs(Name("Tiny", "LLN0$a"), members.list));
    DataSet *found = nullptr;
    ASSERT_TRUE(searchDsByStr("Tiny/LLN0$a", &found));
    // Entry record, two arrays of two octets, two Data; a quality has a record and two octets.
    const auto word = [](std::size_t size) {
        return (size + sizeof(void *) - 1) / sizeof(void *) * sizeof(void *);
    };
    const u32 want =
        static_cast<u32>(word(sizeof(RptEntry)) + 2 * word(2) + 2 * sizeof(Data) + sizeof(AsnBits) + word(2));
    EXPECT_EQ(found->size, want);
    EXPECT_EQ(dsSizeLimit(), 0xFA000 * sizeof(void *) / 4);
    externGlbCfg.maxDsSize = want / static_cast<u32>(sizeof(void *) / 4);
    EXPECT_EQ(getDsSize(found), want) << "exactly at the limit";
    externGlbCfg.maxDsSize -= 4;
    EXPECT_EQ(getDsSize(found), -1);
    const LogLines log;
    EXPECT_FALSE(createDynDs(Name("Tiny", "LLN0$b"), members.list));
    EXPECT_EQ(log.count("DAT", "ERR", "createDynDs", "Fail to get size of \"Tiny/LLN0$b\"!"), 1);
    EXPECT_EQ(names("Tiny"), "LLN0$a ") << "nothing is left of it";
}

TEST(DataSets, NamesAreFreeUsedOrInvalid) {
    const DataSetModel model;
    ASSERT_TRUE(createDynDs(Name("Tiny", "LLN0$a"), nullptr));
    const LogLines log;
    const std::tuple<const char *, const char *, int, const char *> rows[] = {
        {"Tiny", "LLN0$b", 1, ""},
        {"Tiny", "LLN0$a", 0, "The data set name \"Tiny/LLN0$a\" has been used!"},
        {"Tiny", "dyn", -1, "Invalid data set name: Tiny/dyn!"},
        {"Tiny", "GGIO9$a", -1, "Fail to find LN: GGIO9!"},
        {"None", "LLN0$a", -1, "Fail to find LD of \"None/LLN0$a\"!"}};
    for (const auto &[domain, item, want, text] : rows) {
        EXPECT_EQ(checkDsName(Name(domain, item)), want) << item;
        EXPECT_EQ(log.count("DAT", "ERR", "checkDsName", text), want == 1 ? 0 : 1) << text;
    }
    for (const std::string item : {"", "$", "$$", "$LLN0", "LLN0", "A"}) {
        EXPECT_EQ(checkDsName(Name("Tiny", item)), -1) << item;
    }
    for (const std::string &item : {std::string("LLN0$"), std::string("LLN0$$"), std::string("LLN0$a$b"),
                                    "LLN0$" + std::string(250, '$'), "LLN0$" + std::string(250, 'n')}) {
        const Name name("Tiny", item);
        EXPECT_EQ(checkDsName(name), 1) << item;
        DataSet *found = nullptr;
        EXPECT_TRUE(createDynDs(name, nullptr) && searchDsByObjName(name, &found)) << item;
    }
    EXPECT_EQ(checkDsName(Name("Tiny", "LLN0$" + std::string(251, 'n'))), -1) << "longer than a reference";
    EXPECT_EQ(checkDsName(Name("Tiny", std::string(5000, 'n') + "$")), -1);
    Name vmd("Tiny", "LLN0$b");
    vmd.name.choiceId = ObjectName::vmdSpecific;
    EXPECT_EQ(checkDsName(vmd), -1);
    EXPECT_EQ(checkDsName(nullptr), -1);
}

TEST(DataSets, MembersAreDataObjectsOrWhatIsBelow) {
    const DataSetModel model;
    const LogLines log;
    EXPECT_EQ(checkDsMember(VariableList({"Tiny/GGIO1$ST$Ind1", "Meas/MHAI1$MX$HPhV$phsAHar$mag"}).list), 1);
    EXPECT_EQ(checkDsMember(VariableList({"Tiny/GGIO1$ST", "Tiny/GGIO1$ST$Nope"}).list), -1);
    EXPECT_EQ(log.count("DAT", "ERR", "checkDsMember", "\"Tiny/GGIO1$ST\" is not a FCD or FCDA!"), 1);
    EXPECT_EQ(checkDsMember(VariableList({"Tiny/GGIO1$ST$Nope", "Tiny/GGIO1$ST"}).list), 0);
    EXPECT_EQ(log.count("DAT", "ERR", "checkDsMember", "Fail to find node by \"Tiny/GGIO1$ST$Nope\"!"), 1);
    EXPECT_EQ(checkDsMember(VariableList({"address"}).list), 0);
    EXPECT_EQ(log.count("DAT", "ERR", "checkDsMember", "Fail to find node by \"unknown member\"!"), 1);
    EXPECT_EQ(checkDsMember(nullptr), 1);
}

TEST(DataSets, OnlyUnheldDynamicOnesAreDeleted) {
    const DataSetModel model;
    Declared fixed("Tiny", "LLN0$fixed", {"Tiny/GGIO1$ST$Ind1"});
    listAddTail(&fixed.entry.link, &PreDefDsHead);
    ASSERT_TRUE(initPreDefDS());
    const VariableList members({"Tiny/GGIO1$ST$All", "Meas/MHAI1$MX$HPhV"});
    for (const char *item : {"LLN0$a", "LLN0$held", "LLN0$b"}) {
        ASSERT_TRUE(createDynDs(Name("Tiny", item), members.list));
    }
    DataSet *held = nullptr;
    ASSERT_TRUE(searchDsByStr("Tiny/LLN0$held", &held));
    held->refCount = 1;
    u32 matched = 0, deleted = 0;
    EXPECT_TRUE(deleteDs(Name("Tiny", "LLN0$fixed"), &matched, &deleted));
    EXPECT_TRUE(deleteDs(Name("Tiny", "LLN0$held"), &matched, &deleted));
    EXPECT_TRUE(deleteDs(Name("Tiny", "LLN0$nope"), &matched, &deleted));
    EXPECT_EQ(std::pair(matched, deleted), std::pair(2U, 0U));
    EXPECT_TRUE(deleteDs(Name("Tiny", "LLN0$a"), &matched, &deleted));
    EXPECT_EQ(std::pair(matched, deleted), std::pair(3U, 1U));
    EXPECT_FALSE(deleteDs(Name("None", "LLN0$a"), &matched, &deleted));
    EXPECT_EQ(names("Tiny"), "LLN0$fixed LLN0$held LLN0$b ");
}

TEST(DataSets, AListDeletedByOneClientIsNeverFreedUnderAnothersHands) {
    const DataSetModel model;
    externGlbCfg.maxDsSize = 0x4000;
    externGlbCfg.maxDsNum = 3;
    ASSERT_TRUE(initPreDefDS());
    const auto client = [](int own) {
        const Name name("Tiny", "LLN0$shared"), ownName("Tiny", "LLN0$own" + std::to_string(own));
        const VariableList members({"Tiny/GGIO1$ST$Ind1", "Meas/MHAI1$MX$HPhV"});
        const DefineNamedVariableList_Request define = {const_cast<ObjectName *>(&name.name), members.list};
        VariableAccessSpecification list = {};
        list.choiceId = VariableAccessSpecification::variableListName;
        list.variableListName_ = const_cast<ObjectName *>(&name.name);
        const Read_Request readRequest = {nullptr, &list};
        for (int i = 0; i < 200; ++i) {
            const i8 defined = defineVarListProc(&define);
            EXPECT_TRUE(defined == serviceSuccess || defined == 25) << int{defined};
            Read_Response answer = {};
            EXPECT_EQ(readProc(&readRequest, &answer, 0), serviceSuccess);
            const u32 results = answer.listOfAccessResult->count;
            EXPECT_TRUE(results == 1 || results == 2);
            FreeRead_Response(&answer);
            GetNamedVariableListAttributes_Response attributes = {};
            if (getVarListAttrProc(name, &attributes) == serviceSuccess) {
                EXPECT_EQ(attributes.listOfVariable->count, 2U);
            }
            FreeGetNamedVariableListAttributes_Response(&attributes);
            u32 matched = 0, deleted = 0;
            const DataSetsWrite heldList;
            deleteDs(name, &matched, &deleted);
        }
    };
    std::thread clients[] = {std::thread(client, 0), std::thread(client, 1), std::thread(client, 2)};
    for (std::thread &thread : clients) {
        thread.join();
    }
    EXPECT_EQ(getTotalDSNum(), 0U);
}

} // namespace
