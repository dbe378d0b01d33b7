// The confirmed services and the model as an MMS client sees it (ISO 9506, IEC 61850-8-1).
#include "asn1/mmsCodec.h"
#include "basicInterface/memory.h"
#include "basicInterface/simpleData.h"
#include "device/externGlbCfg.h"
#include "proto-process/c/client.h"
#include "proto-process/c/dataSet.h"
#include "proto-process/c/services.h"
#include "tests/support/hex.h"
#include "tests/support/smallModel.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace ied;
using namespace ied::test;

namespace {

std::string textOf(const AsnOcts &octs) {
    return {reinterpret_cast<char *>(octs.octs), octs.octetLen};
}

// Frees a response with its value, as the dispatch does.
struct Response {
    ConfirmedServiceResponse value{};
    Response() = default;
    ~Response() { FreeConfirmedServiceResponse(&value); }
    Response(const Response &) = delete;
    Response &operator=(const Response &) = delete;
};

// Client 0 with every service enabled.
struct MmsServices : testing::Test {
    MmsServices() {
        record = {};
        std::fill(std::begin(record.supportServ), std::end(record.supportServ), u8{1});
        clientStat = &record;
    }
    ~MmsServices() override { clientStat = nullptr; }

    i8 serve(const ConfirmedServiceRequest &request, Response *response) {
        return confirmedServiceProc(&request, &response->value, 0);
    }

    SmallModel model;
    ClientStat record;
};

ConfirmedServiceRequest requestFor(u32 service, const void *body) {
    ConfirmedServiceRequest request = {};
    request.choiceId = service;
    request.undecoded = static_cast<AsnOcts *>(const_cast<void *>(body));
    return request;
}

TEST_F(MmsServices, WhatIsNotServedIsRejected) {
    const u32 served[] = {0, 1, 2, 4, 5, 6, 11, 12, 13, 37, 65, 67, 68, 72, 73, 74, 77};
    for (u32 number = 0; number < 200; ++number) {
        Response response;
        const bool isServed = std::find(std::begin(served), std::end(served), number) != std::end(served);
        // Without a body there is nothing that a service could work on.
        const bool hasWord =
            number == SvcStatus || number == SvcIdentify || number == SvcFileRead || number == SvcFileClose;
        EXPECT_EQ(serve(requestFor(number, nullptr), &response) != serviceReject, isServed && hasWord)
            << number;
    }
    std::fill(std::begin(record.supportServ), std::end(record.supportServ), u8{0});
    Response response;
    EXPECT_EQ(serve(requestFor(SvcIdentify, nullptr), &response), serviceReject) << "not announced";
}

TEST_F(MmsServices, ABodyWithoutItsPartsIsRefused) {
    static const u8 zeros[256] = {};
    for (const u32 number :
         {SvcGetNameList, SvcRead, SvcWrite, SvcGetVariableAccessAttributes, SvcDefineNamedVariableList,
          SvcGetNamedVariableListAttributes, SvcGetDomainAttributes}) {
        Response response;
        EXPECT_NE(serve(requestFor(number, zeros), &response), serviceSuccess) << number;
    }
    Response response;
    EXPECT_EQ(serve(requestFor(SvcDeleteNamedVariableList, zeros), &response), serviceSuccess);
    EXPECT_EQ(response.value.deleteNamedVariableList_->numberMatched, 0U);
}

TEST_F(MmsServices, IdentifyStatusAndDomainAttributes) {
    Response identify, status, domain, unknown;
    ASSERT_EQ(serve(requestFor(SvcIdentify, nullptr), &identify), serviceSuccess);
    ASSERT_EQ(identify.value.choiceId, ConfirmedServiceResponse::identify);
    EXPECT_EQ(textOf(identify.value.identify_->vendorName), "ORV");
    EXPECT_EQ(textOf(identify.value.identify_->modelName), "QTM5-2");
    EXPECT_EQ(textOf(identify.value.identify_->revision), "V1.3150519");
    ASSERT_EQ(serve(requestFor(SvcStatus, nullptr), &status), serviceSuccess);
    EXPECT_EQ(status.value.status_->vmdLogicalStatus, 0);
    EXPECT_EQ(status.value.status_->localDetail.bits, nullptr);
    const std::string tiny = "Tiny", none = "None";
    const AsnOcts tinyOcts = octsOver(tiny), noneOcts = octsOver(none);
    ASSERT_EQ(serve(requestFor(SvcGetDomainAttributes, &tinyOcts), &domain), serviceSuccess);
    EXPECT_EQ(domain.value.getDomainAttributes_->state, 2);
    EXPECT_EQ(domain.value.getDomainAttributes_->listOfCapabilities->count, 0U);
    EXPECT_EQ(domain.value.getDomainAttributes_->listOfProgramInvocations->count, 0U);
    EXPECT_EQ(serve(requestFor(SvcGetDomainAttributes, &noneOcts), &unknown), 72);
}

// ---------------------------------------------------------------------------------- names

struct NamePage {
    i8 result;
    std::vector<std::string> names;
    bool moreFollows; // what the field says; absent is true
};

NamePage namePage(AsnInt objectClass, const char *domain, const std::string &continueAfter = "") {
    GetNameList_RequestChoice type = {0, objectClass};
    GetNameList_RequestChoice1 scope = {};
    const std::string domainText = domain == nullptr ? "" : domain;
    AsnOcts domainOcts = octsOver(domainText);
    if (domain != nullptr) {
        scope.choiceId = GetNameList_RequestChoice1::domainSpecific;
        scope.domainSpecific_ = &domainOcts;
    }
    const GetNameList_Request request = {&type, &scope, octsOver(continueAfter)};
    GetNameList_Response response = {};
    NamePage page = {getNameListProc(&request, &response), {}, response.moreFollows == nullptr};
    const AsnListElement *e =
        response.listOfIdentifier == nullptr ? nullptr : response.listOfIdentifier->first;
    for (; e != nullptr; e = e->next) {
        page.names.push_back(textOf(*asnListValue<AsnOcts>(e)));
    }
    EXPECT_TRUE(response.moreFollows == nullptr || *response.moreFollows == 0);
    FreeGetNameList_Response(&response);
    return page;
}

TEST_F(MmsServices, NamesAreListedInPreOrderWithArraysAsLeaves) {
    const NamePage page = namePage(0, "Meas");
    const std::vector<std::string> want =
        parts("MHAI1 MHAI1$MX MHAI1$MX$TotW MHAI1$MX$TotW$mag MHAI1$MX$TotW$mag$f MHAI1$MX$TotW$q "
              "MHAI1$MX$TotW$t MHAI1$MX$HPhV MHAI1$MX$HPhV$phsAHar MHAI1$MX$HPhV$phsBHar MHAI1$MX$HPhV$q "
              "MHAI1$MX$HA MHAI1$MX$HA$phsAHar MHAI1$MX$HA$phsBHar MHAI1$CF MHAI1$CF$TotW MHAI1$CF$TotW$db "
              "MHAI1$CF$TotW$smpRate MSTA1 MSTA1$ST MSTA1$ST$Hst MSTA1$ST$Hst$hstVal MSTA1$ST$Hst$q MSTA1$CF "
              "MSTA1$CF$Hst MSTA1$CF$Hst$hstRangeC",
              ' ');
    EXPECT_EQ(page.names, want);
    EXPECT_FALSE(page.moreFollows);
    for (std::size_t i = 0; i < want.size(); ++i) {
        EXPECT_EQ(namePage(0, "Meas", want[i]).names,
                  std::vector(want.begin() + static_cast<long>(i) + 1, want.end()));
    }
    EXPECT_FALSE(namePage(0, "Meas", want.back()).moreFollows);
    EXPECT_EQ(namePage(0, "Meas", "MHAI1$MX$Nope").result, 72);
    EXPECT_EQ(namePage(0, "None").result, 72);
}

TEST_F(MmsServices, APageEndsOnceItsOctetsPass2600) {
    // Names of 24 octets count 26 each: a hundred of them are 2600 and not above it.
    GenNode *ld = model.add(&lds, "Many", LevelLD, TypeInner);
    for (int i = 0; i < 100; ++i) {
        model.add(ld, ("LongNameOfANode123456_" + std::to_string(10 + i % 90)).c_str(), LevelLN, TypeInner);
    }
    EXPECT_EQ(namePage(0, "Many").names.size(), 100U);
    EXPECT_FALSE(namePage(0, "Many").moreFollows);
    model.add(ld, "AA", LevelLN, TypeInner);
    EXPECT_EQ(namePage(0, "Many").names.size(), 101U);
    EXPECT_TRUE(namePage(0, "Many").moreFollows) << "above the limit, though the walk has ended";
    model.add(ld, "BB", LevelLN, TypeInner);
    EXPECT_EQ(namePage(0, "Many").names.size(), 101U);
    const NamePage rest = namePage(0, "Many", "BB");
    EXPECT_TRUE(rest.names.empty());
    EXPECT_FALSE(rest.moreFollows);
}

TEST_F(MmsServices, APageEndsOnANameThatCanBeContinued) {
    // Seven names of a branch go down to eight items; the lookups take seven at the most.
    GenNode *ld = model.add(&lds, "Deep", LevelLD, TypeInner);
    for (int i = 0; i < 30; ++i) {
        GenNode *node = model.add(ld, ("Branch" + std::to_string(10 + i)).c_str(), LevelLN, TypeInner);
        for (const char *name : {"a", "b", "c", "d", "e", "f"}) {
            node = model.add(node, name, LevelInner, TypeInner);
        }
        model.leaf(node, "deepLeafOfANameThatIsThirtyLng", TypeBoolean);
    }
    std::vector<std::string> names;
    for (bool more = true; more;) {
        const NamePage page = namePage(0, "Deep", names.empty() ? "" : names.back());
        ASSERT_EQ(page.result, serviceSuccess) << names.back();
        names.insert(names.end(), page.names.begin(), page.names.end());
        more = page.moreFollows;
    }
    EXPECT_EQ(names.size(), 30U * 8U) << "every node once";
    EXPECT_EQ(names.back(), "Branch39$a$b$c$d$e$f$deepLeafOfANameThatIsThirtyLng");
}

TEST_F(MmsServices, OtherClassesOfObjects) {
    EXPECT_EQ(namePage(9, nullptr).names, (std::vector<std::string>{"Meas", "Tiny"}));
    EXPECT_EQ(namePage(9, "None").names.size(), 2U) << "devices in any scope";
    EXPECT_EQ(namePage(8, nullptr).result, 72);
    for (const AsnInt objectClass : {0, 1, 2, 3, 7, 10, -1}) {
        EXPECT_EQ(namePage(objectClass, nullptr).result, serviceSuccess) << objectClass;
    }
    EXPECT_EQ(namePage(2, "None").result, serviceSuccess) << "no data sets, no error";
    EXPECT_TRUE(namePage(2, "None").names.empty());
}

// ---------------------------------------------------------------------------------- types

std::string showType(const TypeSpecification *type) {
    if (type->choiceId == TypeSpecification::array) {
        return "array " + std::to_string(type->array_->numberOfElements) + " of " +
               showType(type->array_->elementType);
    }
    if (type->choiceId != TypeSpecification::structure) {
        return std::to_string(type->choiceId);
    }
    std::string text = "{";
    for (const AsnListElement *e = type->structure_->components->first; e != nullptr; e = e->next) {
        const auto *component = asnListValue<TypeSpecificationSeq1SeqOfSeq>(e);
        text += textOf(component->componentName) + " " + showType(component->componentType) +
                (e->next ? ", " : "");
    }
    return text + "}";
}

std::string typeOf(const char *domain, const char *item) {
    const Name name(domain, item);
    GetVariableAccessAttributes_Request request = {};
    request.name_ = const_cast<ObjectName *>(&name.name);
    GetVariableAccessAttributes_Response response = {};
    const i8 result = getVarAttrProc(&request, &response);
    const std::string text =
        result == serviceSuccess ? showType(response.typeSpecification) : std::to_string(result);
    FreeGetVariableAccessAttributes_Response(&response);
    return text;
}

TEST_F(MmsServices, TypesFollowTheTree) {
    EXPECT_EQ(typeOf("Tiny", "GGIO1$ST$Ind1"), "{stVal 3, q 4, t 17}");
    EXPECT_EQ(typeOf("Tiny", "GGIO1$ST$Deep"), "{a {b {c 3, d {e 5}}}, z 6}");
    EXPECT_EQ(typeOf("Meas", "MHAI1$MX$HPhV"),
              "{phsAHar array 5 of {mag {f 7}, ang {f 7}}, phsBHar array 5 of {mag {f 7}}, q 4}");
    EXPECT_EQ(typeOf("Meas", "MHAI1$MX$HA"), "{phsAHar array 2 of {mag {f 7}}, phsBHar array 2 of 17}");
    EXPECT_EQ(typeOf("Meas", "MSTA1"), "{ST {Hst {hstVal array 3 of 5, q 4}}, CF {Hst {hstRangeC array 3 of "
                                       "{xStart 7, xEnd 7, other 7, yStart 7, yEnd 7}}}}");
    EXPECT_EQ(typeOf("Tiny", "GGIO1$ST$Nope"), "72");
    GetVariableAccessAttributes_Request byAddress = {};
    byAddress.choiceId = GetVariableAccessAttributes_Request::address;
    GetVariableAccessAttributes_Response response = {};
    EXPECT_EQ(getVarAttrProc(&byAddress, &response), 71);
}

// ---------------------------------------------------------------------------------- read, write

std::string readList(const std::vector<std::string> &references) {
    VariableList variables(references);
    const Read_Request request = {nullptr, &variables.variableAccess};
    Read_Response response = {};
    const i8 result = readProc(&request, &response, 0);
    std::string text = result == serviceSuccess ? "" : "error " + std::to_string(result);
    const AsnListElement *e = result == serviceSuccess ? response.listOfAccessResult->first : nullptr;
    for (; e != nullptr; e = e->next) {
        const auto *access = asnListValue<AccessResult>(e);
        text += access->choiceId == AccessResult::success ? show(access->success_)
                                                          : "failure " + std::to_string(access->failure_);
        text += e->next != nullptr ? "; " : "";
    }
    EXPECT_EQ(response.variableAccessSpecification, nullptr);
    FreeRead_Response(&response);
    return text;
}

TEST_F(MmsServices, ReadAnswersEachVariableInItsPlace) {
    const LogLines log;
    EXPECT_EQ(
        readList({"Tiny/GGIO1$ST$Ind1$stVal", "Tiny/GGIO1$ST$Nope", "address", "Tiny/GGIO1$CO$Ctl$Oper"}),
        "bool 1; failure 10; failure 10; struct(bits 2:80)");
    EXPECT_EQ(log.count("OTH", "CRI", "readProc", "Not find Node \"Tiny/GGIO1$ST$Nope\"!"), 1);
    EXPECT_EQ(log.count("OTH", "INF", "readProc", "Current total enc len:3"), 1);
    EXPECT_EQ(log.count("OTH", "INF", "readProc", "Current total enc len:11"), 1);
    EXPECT_EQ(readList({}), "");
}

TEST_F(MmsServices, AReadIsHeldToTheSizeOfAPdu) {
    externGlbCfg.maxMmsPduSize = 70;
    const std::vector<std::string> ten(10, "Tiny/GGIO1$ST$All$float32");
    EXPECT_EQ(readList(ten).substr(0, 16), "float 083F800000");
    std::vector<std::string> more = ten;
    more.push_back("Tiny/GGIO1$ST$All$boolean");
    EXPECT_EQ(readList(more), "error 73");
    more.back() = "Tiny/GGIO1$ST$Nope";
    EXPECT_NE(readList(more), "error 73") << "a failure takes nothing";
}

TEST_F(MmsServices, TheEstimateCountsTypesStepsAndElements) {
    const std::pair<const char *, u32> types[] = {
        {"boolean", 3},    {"dbpos", 4},        {"bits5", 4},      {"trgOps", 4},     {"optFlds", 5},
        {"quality", 5},    {"int8", 3},         {"int16", 4},      {"int32", 6},      {"int8u", 3},
        {"int16u", 4},     {"int32u", 6},       {"float32", 7},    {"octet6", 8},     {"octet8", 10},
        {"octet64", 8},    {"visString64", 12}, {"unicode255", 7}, {"timestamp", 10}, {"entryTime", 8},
        {"enumeration", 3}};
    for (const auto &[leaf, want] : types) {
        EXPECT_EQ(getNodeReadEncLen(model.node("Tiny/GGIO1$ST$All$" + std::string(leaf)), nullptr), want)
            << leaf;
    }
    const std::pair<const char *, u32> rows[] = {{"Tiny/GGIO1$ST$None$octet64", 0},
                                                 {"Meas/MSTA1$ST$Hst$hstVal", 3},
                                                 {"Tiny/GGIO1$ST$Ind1", 12 + 3 + 5 + 10},
                                                 {"Tiny/GGIO1$ST$Deep", 6 * 4 + 3 + 3 + 4},
                                                 {"Meas/MHAI1$MX$HPhV", 3 * 4 + (4 + 110) + (4 + 55) + 5},
                                                 {"Meas/MHAI1$MX$HA", 2 * 4 + (4 + 22) + 4}};
    for (const auto &[reference, want] : rows) {
        EXPECT_EQ(getNodeReadEncLen(model.node(reference), nullptr), want) << reference;
    }
    AccessSel sel = {
        .kind = AccessSel::oneIndex, .arrayNode = nullptr, .index = 1, .firstIndex = 0, .count = 0};
    EXPECT_EQ(getNodeReadEncLen(model.node("Meas/MHAI1$MX$HPhV$phsAHar"), &sel), 26U);
    sel = {.kind = AccessSel::range, .arrayNode = nullptr, .index = 0, .firstIndex = 1, .count = 3};
    EXPECT_EQ(getNodeReadEncLen(model.node("Meas/MHAI1$MX$HPhV$phsBHar"), &sel), 37U);
}

TEST_F(MmsServices, ADataSetIsReadByItsName) {
    const Name name("Tiny", "LLN0$a"), unknown("Tiny", "LLN0$b");
    VariableList members({"Tiny/GGIO1$ST$Ind1", "Meas/MSTA1$ST$Hst"});
    const DefineNamedVariableList_Request define = {const_cast<ObjectName *>(&name.name),
                                                    members.variableAccess.listOfVariable_};
    ASSERT_EQ(defineVarListProc(&define), serviceSuccess);
    EXPECT_EQ(namePage(2, "Tiny", "LLN0$a").names, std::vector<std::string>{"LLN0$a"})
        << "all of them every time";
    VariableAccessSpecification list = {};
    list.choiceId = VariableAccessSpecification::variableListName;
    const Read_Request request = {nullptr, &list};
    externGlbCfg.maxMmsPduSize = 1;
    for (const auto &[asked, want] :
         {std::pair{&name, "struct(array(int -1, int 0, int 100000), bits 13:0000)"}, {&unknown, ""}}) {
        list.variableListName_ = const_cast<ObjectName *>(&asked->name);
        Read_Response response = {};
        ASSERT_EQ(readProc(&request, &response, 0), serviceSuccess);
        const auto *last = asnListValue<AccessResult>(response.listOfAccessResult->last);
        EXPECT_EQ(last->choiceId == AccessResult::success ? show(last->success_) : "", want);
        EXPECT_TRUE(last->choiceId == AccessResult::success || last->failure_ == 10);
        FreeRead_Response(&response);
    }
    GetNamedVariableListAttributes_Response attributes = {};
    EXPECT_EQ(getVarListAttrProc(name, &attributes), serviceSuccess);
    EXPECT_EQ(attributes.mmsDeletable, 1);
    const auto *second = asnListValue<VariableAccessSpecificationSeqOfSeq>(attributes.listOfVariable->last);
    EXPECT_TRUE(objectNameCmp(second->variableSpecification->name_, Name("Meas", "MSTA1$ST$Hst")));
    FreeGetNamedVariableListAttributes_Response(&attributes);
    EXPECT_EQ(getVarListAttrProc(unknown, &attributes), 21);
}

TEST_F(MmsServices, DefinitionsAreRefusedWithTheirCodes) {
    const auto define = [](const Name &name, const std::vector<std::string> &members) {
        VariableList list(members);
        const DefineNamedVariableList_Request request = {const_cast<ObjectName *>(&name.name),
                                                         list.variableAccess.listOfVariable_};
        return defineVarListProc(&request);
    };
    const std::string good = "Tiny/GGIO1$ST$Ind1", constraint = "Tiny/GGIO1$ST",
                      unknown = "Tiny/GGIO1$ST$Nope";
    const Name used("Tiny", "LLN0$a"), free("Tiny", "LLN0$b"), bad("Tiny", "dyn");
    EXPECT_EQ(define(used, {good, good}), serviceSuccess);
    EXPECT_EQ(define(used, {good}), 25);
    EXPECT_EQ(define(used, {unknown}), 25) << "the name weighs more";
    EXPECT_EQ(define(bad, {good}), 22);
    EXPECT_EQ(define(bad, {constraint}), 22);
    EXPECT_EQ(define(free, {good, unknown}), 22);
    EXPECT_EQ(define(free, {constraint}), 20);
    externGlbCfg.maxDsSize = 64;
    EXPECT_EQ(define(free, {good}), 20);
    externGlbCfg.maxDsNum = 1;
    EXPECT_EQ(define(bad, {unknown}), 20) << "the number of data sets comes first";
}

std::string writeList(const std::vector<std::string> &references, const std::vector<Data *> &values) {
    VariableList variables(references);
    Data *list = heapList(Data::structure, values);
    const Write_Request request = {&variables.variableAccess, list->list};
    Write_Response response = {};
    AsnListInit(&response, sizeof(void *));
    std::string text = writeProc(&request, &response, 0) == serviceSuccess ? "" : "refused";
    for (const AsnListElement *e = response.first; e != nullptr; e = e->next) {
        const auto *result = asnListValue<Write_ResponseChoice>(e);
        text += result->choiceId == Write_ResponseChoice::success ? "ok "
                                                                  : std::to_string(result->failure_) + " ";
    }
    FreeWrite_Response(&response);
    freeHeap(list);
    return text;
}

TEST_F(MmsServices, WritesAreAnsweredOneByOne) {
    const auto boolean = [] { return heapNumber(Data::boolean, 1); };
    EXPECT_EQ(writeList({"address", "Tiny/GGIO1$ST$Nope", "Tiny/GGIO1$ST$Ind1$stVal", "Tiny/GGIO1$ST$Ind1$q"},
                        {boolean(), boolean(), boolean(), boolean()}),
              "5 10 3 7 ");
    EXPECT_EQ(
        writeList({"Tiny/GGIO1", "Tiny/GGIO1$ST", "Tiny/GGIO1$ST$Ind1"}, {boolean(), boolean(), boolean()}),
        "3 3 8 ");
    EXPECT_EQ(writeList({"Tiny/GGIO1$ST$Ind1$stVal", "Tiny/Nope", "Tiny/Nope"}, {boolean(), boolean()}),
              "3 10 ");
    EXPECT_EQ(writeList({"Tiny/Nope"}, {boolean(), boolean()}), "10 ");
    EXPECT_EQ(writeList({}, {boolean()}), "");
}

TEST_F(MmsServices, OfTheConfigurationOnlyTheDeadbandIsWritten) {
    const auto unsignedInt = [](u32 value) { return heapNumber(Data::unsignedInt, value); };
    const std::string db = "Meas/MHAI1$CF$TotW$db";
    EXPECT_EQ(writeList({db, db, "Meas/MHAI1$CF$TotW$smpRate"},
                        {unsignedInt(100000), unsignedInt(100001), unsignedInt(1)}),
              "ok 11 3 ");
    EXPECT_EQ(model.power.db, 100000U);
    EXPECT_EQ(writeList({db}, {heapNumber(Data::integer, 5)}), "7 ");
}

TEST_F(MmsServices, AWriteWithoutValuesOrByListNameIsRefused) {
    VariableList variables({"Tiny/GGIO1$ST$Ind1"});
    AsnList values = {};
    AsnListInit(&values, sizeof(void *));
    Write_Response response = {};
    AsnListInit(&response, sizeof(void *));
    const Write_Request noValues = {&variables.variableAccess, nullptr}, noVariables = {nullptr, &values};
    EXPECT_EQ(writeProc(&noValues, &response, 0), 71);
    EXPECT_EQ(writeProc(&noVariables, &response, 0), 71);
    const Name name("Tiny", "LLN0$a");
    VariableAccessSpecification list = {};
    list.choiceId = VariableAccessSpecification::variableListName;
    list.variableListName_ = const_cast<ObjectName *>(&name.name);
    const Write_Request byList = {&list, &values};
    EXPECT_EQ(writeProc(&byList, &response, 0), serviceReject);
}

} // namespace
