// MMS PDUs written by hand from ISO 9506-2, one of each kind that is served or sent.
#pragma once

#include "asn1/mmsTypes.h"
#include "tests/support/frames.h"

#include <vector>

namespace ied::test {

struct KnownPdu {
    const char *what;
    u32 choiceId; // of the MMSpdu
    u32 service;  // choiceId of the service inside, where there is one
    std::string hex;
};

// A name in a domain, as the content of its explicit tag: LD0, A$B.
inline const std::string nameHex = "A10A 1A034C4430 1A03412442";
inline const std::string variableHex = tlv("30", tlv("A0", nameHex));

inline std::string requestHex(const std::string &service) {
    return confirmedRequest(7, service);
}
inline std::string responseHex(const std::string &service) {
    return tlv("A1", "020107" + service);
}
// A read of one variable with the alternate access `access`.
inline std::string readHex(const std::string &access) {
    return requestHex(tlv("A4", tlv("A1", tlv("A0", tlv("30", tlv("A0", nameHex) + tlv("A5", access))))));
}

inline std::vector<KnownPdu> requestPdus() {
    const u32 pdu = MMSpdu::confirmedRequestPDU;
    const std::string time = "8006 000102030405", entry = "8108 0000000000000009";
    return {
        {"status", pdu, 0, requestHex("800101")},
        {"names_of_a_domain", pdu, 1, requestHex(tlv("A1", "A003800102 A105 8103 4C4430 8203 412442"))},
        {"names_of_the_vmd", pdu, 1, requestHex(tlv("A1", "A003800109 A1028000"))},
        {"names_of_the_association", pdu, 1, requestHex(tlv("A1", "A003800102 A1028200"))},
        {"identify", pdu, 2, requestHex("8200")},
        {"read", pdu, 4, requestHex(tlv("A4", "800101" + tlv("A1", tlv("A0", variableHex + variableHex))))},
        {"read_list", pdu, 4, requestHex(tlv("A4", tlv("A1", tlv("A1", nameHex))))},
        {"read_vmd_list", pdu, 4, requestHex(tlv("A4", tlv("A1", tlv("A1", "8003 414243"))))},
        {"read_association_list", pdu, 4, requestHex(tlv("A4", tlv("A1", tlv("A1", "8203 414243"))))},
        {"read_component", pdu, 4, readHex("8103 6D6167")},
        {"read_index", pdu, 4, readHex("820103")},
        {"read_range", pdu, 4, readHex("A306 800102 810105")},
        {"read_all", pdu, 4, readHex("8400")},
        {"read_named", pdu, 4, readHex("A506 8001 41 820103")},
        {"read_nested", pdu, 4, readHex("A00A 810103 3005 8103 6D6167")},
        {"read_component_nested", pdu, 4, readHex("A008 8001 41 3003 820107")},
        {"read_range_nested", pdu, 4, readHex("A00C A206 800101 810104 3002 8400")},
        {"read_all_nested", pdu, 4, readHex("A007 8300 3003 820107")},
        {"read_address", pdu, 4, requestHex(tlv("A4", "A10B A009 3007 A105 8103 414243"))},
        {"read_described", pdu, 4, requestHex(tlv("A4", "A10C A00A 3008 A206 800105 850120"))},
        {"read_scattered", pdu, 4, requestHex(tlv("A4", "A108 A006 3004 A302 3000"))},
        {"read_invalidated", pdu, 4, requestHex(tlv("A4", "A106 A004 3002 8400"))},
        {"write", pdu, 5, requestHex(tlv("A5", tlv("A0", variableHex) + "A003 830101"))},
        {"type_of", pdu, 6, requestHex(tlv("A6", tlv("A0", nameHex)))},
        {"type_at", pdu, 6, requestHex("A605 A103 800105")},
        {"define_list", pdu, 11, requestHex(tlv("AB", nameHex + tlv("A0", variableHex)))},
        {"list_attributes", pdu, 12, requestHex(tlv("AC", nameHex))},
        {"delete_lists", pdu, 13, requestHex(tlv("AD", "800100" + tlv("A1", nameHex) + "8203 4C4430"))},
        {"delete_all_lists", pdu, 13, requestHex(tlv("AD", "800102 8203 4C4430"))},
        {"domain_attributes", pdu, 37, requestHex("9F25 03 4C4430")},
        {"read_journal", pdu, 65,
         requestHex(tlv("BF41", tlv("A0", nameHex) + tlv("A1", time) + "A203 810164" + "A405 1A03414243" +
                                    tlv("A5", time + entry)))},
        {"read_journal_by_entry", pdu, 65,
         requestHex(tlv("BF41", tlv("A0", nameHex) + tlv("A1", entry) + tlv("A2", time)))},
        {"initialize_journal", pdu, 67,
         requestHex(tlv("BF43", tlv("A0", nameHex) + tlv("A1", time + entry)))},
        {"journal_status", pdu, 68, requestHex(tlv("BF44", nameHex))},
        {"file_open", pdu, 72, requestHex(tlv("BF48", "A005 1903 612E62 8101 00"))},
        {"file_read", pdu, 73, requestHex("9F49 01 05")},
        {"file_close", pdu, 74, requestHex("9F4A 01 05")},
        {"file_directory", pdu, 77, requestHex(tlv("BF4D", "A006 1901 61 1901 62 A103 1901 63"))},
        {"with_modifier", pdu, 2, tlv("A0", "020107 3007 A005 A003 800141 8200")},
        {"with_extension", pdu, 2, tlv("A0", "020107 8200 BF4F02 8000")},
        {"cancel", MMSpdu::cancelRequestPDU, 0, "8502 0100"},
        {"conclude", MMSpdu::concludeRequestPDU, 0, "8B00"},
        {"initiate", MMSpdu::initiateRequestPDU, 0,
         tlv("A8", "8003 00FDE8 8101 05 8202 0100 8301 0A" +
                       tlv("A4", "8001 01 8103 05F100 820C 03 EE1C00000408000079EF18"))},
        {"initiate_without_options", MMSpdu::initiateRequestPDU, 0,
         tlv("A8", "8101 05 8201 05" + tlv("A4", "8001 01 8102 05E0 8203 03EE18"))},
    };
}

// All that a server sends, and what else a client may have to read.
inline std::vector<KnownPdu> responsePdus() {
    const u32 pdu = MMSpdu::confirmedResponsePDU;
    const std::string failure = "800103", floating = "8705 083F800000";
    const std::string attributes = tlv("A1", "8002 0080 810F 32303234303130323033303430355A");
    const std::string entryContent =
        "8002 0001" + tlv("A1", tlv("30", "A004 06022901 A103 020105 A203 02010C A303 020106")) +
        tlv("A2", "8006 000102030405" + tlv("A2", tlv("A1", tlv("30", "8001 41 A103 830101"))));
    const std::string eventContent =
        "8002 0001 A102 3000" +
        tlv("A2", "8006 000102030405 A102 0500" + tlv("A2", tlv("A0", tlv("A0", nameHex) + "8101 02")));
    return {
        {"status", pdu, 0, responseHex("A00A 8001 00 8101 00 8202 0480")},
        {"names", pdu, 1, responseHex(tlv("A1", "A00A 1A03 414243 1A03 444546 8101 00"))},
        {"names_none", pdu, 1, responseHex("A102 A000")},
        {"identify", pdu, 2, responseHex(tlv("A2", "8001 41 8101 42 8201 43 A304 06022901"))},
        {"read", pdu, 4, responseHex(tlv("A4", tlv("A1", failure + floating + "8301 01")))},
        {"read_with_specification", pdu, 4,
         responseHex(tlv("A4", tlv("A0", tlv("A1", nameHex)) + tlv("A1", "8301 01")))},
        {"write", pdu, 5, responseHex("A505 800103 8100")},
        {"type_of", pdu, 6, responseHex(tlv("A6", "8001 00 A203 850120"))},
        {"type_at", pdu, 6, responseHex(tlv("A6", "8001 00 A103 800105 A202 8300"))},
        {"define_list", pdu, 11, responseHex("8B00")},
        {"list_attributes", pdu, 12, responseHex(tlv("AC", "8001 01" + tlv("A1", variableHex)))},
        {"delete_lists", pdu, 13, responseHex("AD07 8002 0080 8101 01")},
        {"domain_attributes", pdu, 37,
         responseHex(tlv("BF25", "A003 1A01 41 8101 02 8201 00 8301 01 A400 8501 03"))},
        {"read_journal", pdu, 66,
         responseHex(tlv("BF41", tlv("A0", tlv("30", entryContent) + tlv("30", eventContent)) + "8101 01"))},
        {"initialize_journal", pdu, 68, responseHex("9F43 01 07")},
        {"journal_status", pdu, 69, responseHex("BF44 06 800105 810100")},
        {"file_open", pdu, 47, responseHex(tlv("BF48", "8001 05" + attributes))},
        {"file_read", pdu, 73, responseHex("BF49 07 8002 4142 8101 00")},
        {"file_close", pdu, 74, responseHex("9F4A 00")},
        {"file_directory", pdu, 77,
         responseHex(tlv("BF4D", tlv("A0", tlv("30", tlv("30", "A003 1901 61" + attributes))) + "8101 01"))},
        {"error", MMSpdu::confirmedErrorPDU, 0, "A20A 8001 07 A205 A003 870102"},
        {"error_in_full", MMSpdu::confirmedErrorPDU, 0,
         "A218 8001 07 8101 00 A210 A003 8B0107 8101 02 8201 41 A303 800105"},
        {"report", MMSpdu::unconfirmedPDU, 0,
         tlv("A3", tlv("A0", "A105 8003 525054" + tlv("A0", "8301 01 800101")))},
        {"report_of_variables", MMSpdu::unconfirmedPDU, 0,
         tlv("A3", tlv("A0", tlv("A0", variableHex) + tlv("A0", "8301 01")))},
        {"unsolicited_status", MMSpdu::unconfirmedPDU, 1, "A308 A106 800100 810100"},
        {"event_notification", MMSpdu::unconfirmedPDU, 2,
         "A314 A212 A003 800141 A103 800142 8201 40 A403 8201 05"},
        {"reject", MMSpdu::rejectPDU, 0, "A406 8001 07 8101 00"},
        {"reject_without_id", MMSpdu::rejectPDU, 4, "A403 8501 01"},
        {"cancel", MMSpdu::cancelResponsePDU, 0, "8601 07"},
        {"cancel_error", MMSpdu::cancelErrorPDU, 0, "A70A 8001 07 A105 A003 8A0102"},
        {"initiate", MMSpdu::initiateResponsePDU, 0,
         "A926 8003 00FDE8 8101 01 8201 05 8301 05 A416 8001 01 8103 05F100 820C 03EE0C0000040000 0048E518"},
        {"initiate_error", MMSpdu::initiateErrorPDU, 0, "AA05 A003 880101"},
        {"conclude", MMSpdu::concludeResponsePDU, 0, "8C00"},
        {"conclude_error", MMSpdu::concludeErrorPDU, 0, "AD05 A003 890101"},
    };
}

} // namespace ied::test
