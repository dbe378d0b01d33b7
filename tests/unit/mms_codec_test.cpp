#include "asn1/mmsCodec.h"
#include "basicInterface/memory.h"
#include "tests/support/asnTesting.h"
#include "tests/support/mmsPdus.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace ied::test {
namespace {

DecodeEnv callingSide() {
    DecodeEnv env;
    env.acceptRejectPdu = true;
    return env;
}

u32 serviceOf(const MMSpdu &pdu) {
    switch (pdu.choiceId) {
    case MMSpdu::confirmedRequestPDU:
        return pdu.confirmed_RequestPDU->service->choiceId;
    case MMSpdu::confirmedResponsePDU:
        return pdu.confirmed_ResponsePDU->service->choiceId;
    case MMSpdu::unconfirmedPDU:
        return pdu.unconfirmed_PDU->service->choiceId;
    case MMSpdu::rejectPDU:
        return pdu.rejectPDU_->rejectReason->choiceId;
    default:
        return 0;
    }
}

// Journal entries are read by field and written as they are stored: gives each its stored form.
void storeEntries(const MMSpdu &pdu) {
    if (pdu.choiceId != MMSpdu::confirmedResponsePDU ||
        serviceOf(pdu) != ConfirmedServiceResponse::readJournal) {
        return;
    }
    AsnList *entries = pdu.confirmed_ResponsePDU->service->readJournal_->listOfJournalEntry;
    for (AsnListElement *element = entries->first; element; element = element->next) {
        auto *entry = asnListValue<JournalEntry>(element);
        const std::vector<u8> content = octets(encoded<JournalEntry>(BEncJournalEntryContent, *entry));
        entry->rawLen = static_cast<u32>(content.size());
        entry->rawData = static_cast<u8 *>(Malloc(content.size()));
        std::copy(content.begin(), content.end(), entry->rawData);
    }
}

class EveryPdu : public testing::TestWithParam<KnownPdu> {};

TEST_P(EveryPdu, IsReadAndWrittenAsTheStandardHasIt) {
    MMSpdu pdu{};
    EXPECT_EQ(decodeError<MMSpdu>(BDecMMSpdu, GetParam().hex, pdu, callingSide()), 0);
    EXPECT_EQ(pdu.choiceId, GetParam().choiceId);
    EXPECT_EQ(serviceOf(pdu), GetParam().service);
    storeEntries(pdu);
    EXPECT_EQ(encoded<MMSpdu>(BEncMMSpduContent, pdu), canonical(GetParam().hex));
    FreeMMSpdu(&pdu);
}

const auto nameOf = [](const auto &one) { return std::string(one.param.what); };
INSTANTIATE_TEST_SUITE_P(Requests, EveryPdu, testing::ValuesIn(requestPdus()), nameOf);
INSTANTIATE_TEST_SUITE_P(Responses, EveryPdu, testing::ValuesIn(responsePdus()), nameOf);

// Decodes a PDU that the standard allows, for its fields.
MMSpdu decoded(const std::string &hex) {
    MMSpdu pdu{};
    EXPECT_EQ(decodeError<MMSpdu>(BDecMMSpdu, hex, pdu, callingSide()), 0) << hex;
    return pdu;
}

const char *text(const AsnOcts &octs) {
    return reinterpret_cast<const char *>(octs.octs);
}

TEST(MmsFields, OfAReadStandWhereTheStandardPutsThem) {
    MMSpdu pdu = decoded(readHex("A00C A206 800101 810104 3002 8400"));
    EXPECT_EQ(pdu.confirmed_RequestPDU->invokeID, 7);
    const Read_Request *read = pdu.confirmed_RequestPDU->service->read;
    EXPECT_EQ(read->specificationWithResult, nullptr);
    const auto *variable = asnListValue<VariableAccessSpecificationSeqOfSeq>(
        read->variableAccessSpecification->listOfVariable_->first);
    const ObjectName *name = variable->variableSpecification->name_;
    EXPECT_EQ(name->choiceId, ObjectName::domainSpecific);
    EXPECT_STREQ(text(name->domain_specific->domainId), "LD0");
    EXPECT_STREQ(text(name->domain_specific->itemId), "A$B");
    const auto *access = asnListValue<AlternateAccessChoice>(variable->alternateAccess->first);
    EXPECT_EQ(access->choiceId, AlternateAccessChoice::unnamed);
    EXPECT_EQ(access->unnamed_->choiceId, AlternateAccessSelection::selectAlternateAccess);
    const AlternateAccessSelectionSeq *nested = access->unnamed_->selectAlternateAccess_;
    EXPECT_EQ(nested->accessSelection->choiceId, AlternateAccessSelectionChoice::indexRange);
    EXPECT_EQ(nested->accessSelection->indexRange_->lowIndex, 1U);
    EXPECT_EQ(nested->accessSelection->indexRange_->numberOfElements, 4U);
    const auto *inner = asnListValue<AlternateAccessChoice>(nested->alternateAccess->first);
    EXPECT_EQ(inner->unnamed_->selectAccess_->choiceId, AlternateAccessSelectionChoice::allElements);
    FreeMMSpdu(&pdu);
}

TEST(MmsFields, OfTheSameTypeAreNotMistakenForEachOther) {
    MMSpdu pdu = decoded(responseHex("AD07 8002 0080 8101 01"));
    EXPECT_EQ(pdu.confirmed_ResponsePDU->service->deleteNamedVariableList_->numberMatched, 128U);
    EXPECT_EQ(pdu.confirmed_ResponsePDU->service->deleteNamedVariableList_->numberDeleted, 1U);
    FreeMMSpdu(&pdu);
    pdu = decoded(responseHex("A209 8001 41 8101 42 8201 43"));
    EXPECT_STREQ(text(pdu.confirmed_ResponsePDU->service->identify_->vendorName), "A");
    EXPECT_STREQ(text(pdu.confirmed_ResponsePDU->service->identify_->modelName), "B");
    EXPECT_STREQ(text(pdu.confirmed_ResponsePDU->service->identify_->revision), "C");
    EXPECT_EQ(pdu.confirmed_ResponsePDU->service->identify_->listOfAbstractSyntaxes, nullptr);
    FreeMMSpdu(&pdu);
    pdu = decoded(responseHex(tlv("BF25", "A003 1A01 41 8101 02 8201 00 8301 01 A400 8501 03")));
    const GetDomainAttributes_Response *domain = pdu.confirmed_ResponsePDU->service->getDomainAttributes_;
    EXPECT_EQ(domain->listOfCapabilities->count, 1U);
    EXPECT_EQ(domain->state, 2);
    EXPECT_EQ(domain->mmsDeletable, 0);
    EXPECT_EQ(domain->sharable, 1);
    EXPECT_EQ(domain->uploadInProgress, 3);
    FreeMMSpdu(&pdu);
    pdu = decoded("A913 8101 01 8201 05 A40B 8001 02 8103 05F100 8201 00");
    EXPECT_EQ(pdu.initiate_ResponsePDU->localDetailCalled, nullptr);
    EXPECT_EQ(pdu.initiate_ResponsePDU->negociatedMaxServOutstandingCalling, 1);
    EXPECT_EQ(pdu.initiate_ResponsePDU->negociatedMaxServOutstandingCalled, 5);
    EXPECT_EQ(pdu.initiate_ResponsePDU->mmsInitResponseDetail->negociatedVersionNumber, 2);
    EXPECT_EQ(pdu.initiate_ResponsePDU->mmsInitResponseDetail->negociatedParameterCBB.bitLen, 11U);
    EXPECT_EQ(pdu.initiate_ResponsePDU->mmsInitResponseDetail->servicesSupportedCalled.bitLen, 0U);
    FreeMMSpdu(&pdu);
}

// Wire tags of ObjectClass, ErrorClass, RejectReason: choice n has tag n, of reject reasons n + 1.
TEST(MmsChoices, EveryErrorClassAndRejectReasonHasItsTag) {
    for (u32 n = 0; n <= ServiceErrorChoice::others; ++n) {
        const std::string element = hexText(std::vector<u8>{static_cast<u8>(0x80 | n), 1, 9});
        EXPECT_EQ(encoded<ServiceErrorChoice>(BEncServiceErrorChoiceContent, {n, 9}), element);
        MMSpdu pdu = decoded("A20A 8001 07 A205 A003" + element);
        EXPECT_EQ(pdu.confirmed_ErrorPDU->serviceError->errorClass->choiceId, n);
        EXPECT_EQ(pdu.confirmed_ErrorPDU->serviceError->errorClass->code, 9);
        FreeMMSpdu(&pdu);
    }
    for (u32 n = 0; n <= RejectPDUChoice::concludeErrorPDU; ++n) {
        const std::string element = hexText(std::vector<u8>{static_cast<u8>(0x81 + n), 1, 1});
        EXPECT_EQ(encoded<RejectPDUChoice>(BEncRejectPDUChoiceContent, {n, 1}), element);
        MMSpdu pdu = decoded("A403" + element);
        EXPECT_EQ(pdu.rejectPDU_->rejectReason->choiceId, n);
        EXPECT_EQ(pdu.rejectPDU_->originalInvokeID, nullptr);
        FreeMMSpdu(&pdu);
    }
    EXPECT_EQ(encoded<ServiceErrorChoice>(BEncServiceErrorChoiceContent, {13, 9}), "");
}

std::string serviceTag(u32 number, bool constructed) {
    const u8 first = static_cast<u8>(0x80 | (constructed ? 0x20 : 0));
    if (number < 31) {
        return hexText(std::vector<u8>{static_cast<u8>(first | number)});
    }
    return hexText(std::vector<u8>{static_cast<u8>(first | 31), static_cast<u8>(number)});
}

enum class ServedAs {
    not_,
    primitive,
    constructed,
    either
};

ServedAs servedAs(u32 tag) {
    constexpr u32 words[] = {0, 2, 73, 74}; // status, identify, fileRead, fileClose
    constexpr u32 lists[] = {1, 4, 5, 6, 11, 12, 13, 65, 67, 68, 72, 77};
    const auto isIn = [tag](const auto &tags) { return std::ranges::find(tags, tag) != std::end(tags); };
    if (tag == 37) { // getDomainAttributes: a string may come in segments
        return ServedAs::either;
    }
    return isIn(words) ? ServedAs::primitive : isIn(lists) ? ServedAs::constructed : ServedAs::not_;
}

TEST(MmsServices, OneThatIsNotServedKeepsItsNumberAndItsOctets) {
    for (u32 tag = 0; tag <= 78; ++tag) {
        for (const bool constructed : {false, true}) {
            if (servedAs(tag) != ServedAs::not_) {
                continue;
            }
            const std::string element =
                serviceTag(tag, constructed) + (constructed ? "05A003020105" : "03414243");
            MMSpdu pdu = decoded(requestHex(element));
            const ConfirmedServiceRequest *request = pdu.confirmed_RequestPDU->service;
            EXPECT_EQ(request->choiceId, tag);
            EXPECT_EQ(hexText({request->undecoded->octs, request->undecoded->octetLen}), element);
            EXPECT_EQ(encoded<MMSpdu>(BEncMMSpduContent, pdu), canonical(requestHex(element)));
            FreeMMSpdu(&pdu);
            pdu = decoded(responseHex(element));
            EXPECT_EQ(serviceOf(pdu), tag >= 47 && tag <= 71 ? tag + 1 : tag);
            EXPECT_EQ(encoded<MMSpdu>(BEncMMSpduContent, pdu), canonical(responseHex(element)));
            FreeMMSpdu(&pdu);
        }
    }
}

TEST(MmsServices, ContentOfIndefiniteLengthIsKeptWithADefiniteOne) {
    MMSpdu pdu = decoded("A080 020107 BF2E80 3080 040141 0000 0000 0000");
    const ConfirmedServiceRequest *request = pdu.confirmed_RequestPDU->service;
    EXPECT_EQ(request->choiceId, 46U);
    EXPECT_EQ(hexText({request->undecoded->octs, request->undecoded->octetLen}), "BF2E073080040141"
                                                                                 "0000");
    FreeMMSpdu(&pdu);
}

TEST(MmsServices, ANumberThatIsNoneAndAServedOneInTheOtherFormAreRefused) {
    for (u32 tag = 0; tag <= 127; ++tag) {
        for (const bool constructed : {false, true}) {
            const bool otherForm =
                servedAs(tag) == (constructed ? ServedAs::primitive : ServedAs::constructed);
            if (tag <= 78 && !otherForm) {
                continue;
            }
            MMSpdu pdu{};
            const std::string service = serviceTag(tag, constructed) + "03020105";
            EXPECT_EQ(decodeError<MMSpdu>(BDecMMSpdu, requestHex(service), pdu), -820) << service;
            FreeMMSpdu(&pdu);
        }
    }
}

} // namespace
} // namespace ied::test
