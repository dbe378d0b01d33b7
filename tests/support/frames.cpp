#include "tests/support/frames.h"

namespace ied::test {

namespace {

std::size_t count(std::string_view hex) {
    return octets(hex).size();
}

std::string berLength(std::size_t length) {
    const std::size_t width = length < 0x100 ? 1 : length < 0x10000 ? 2 : 3;
    return (length < 128 ? "" : hexNumber(0x80 + width, 1)) + hexNumber(length, width);
}

} // namespace

std::string tlv(std::string_view tag, std::string_view content) {
    return canonical(tag) + berLength(count(content)) + canonical(content);
}

std::string tpkt(std::string_view tpdu) {
    return "0300" + hexNumber(count(tpdu) + 4, 2) + canonical(tpdu);
}

std::string frame(std::string_view tsdu, bool endOfTsdu) {
    return tpkt((endOfTsdu ? "02F080" : "02F000") + canonical(tsdu));
}

std::string dataTsdu(std::string_view mmsPdu, std::string_view context) {
    return "01000100" + tlv("61", tlv("30", canonical(context) + tlv("A0", mmsPdu)));
}

std::string dataFrame(std::string_view mmsPdu, std::string_view context) {
    return frame(dataTsdu(mmsPdu, context));
}

std::string connectSpdu(std::string_view cpType) {
    const std::string body =
        "0506130100160102 14020002 33020001 34020001 C1" + hexNumber(count(cpType), 1) + canonical(cpType);
    return "0D" + hexNumber(count(body), 1) + canonical(body);
}

std::string cpType(std::string_view acseApdu) {
    const std::string contexts = tlv("A4", "300F 020101 0604 52010001 3004 0602 5101"
                                           "3010 020103 0605 28CA220201 3004 0602 5101");
    const std::string userData = tlv("61", tlv("30", "020101" + tlv("A0", acseApdu)));
    return tlv("31", "A003800101" + tlv("A2", "8104 00000001 8204 00000001" + contexts + userData));
}

std::string aarq(std::string_view mmsPdu, std::string_view fields) {
    const std::string external = tlv("28", "0602 5101 020103" + tlv("A0", mmsPdu));
    return tlv("60", "A107 0605 28CA220203" + std::string(fields) + tlv("BE", external));
}

std::string connectFrame(std::string_view mmsPdu) {
    return frame(connectSpdu(cpType(aarq(mmsPdu))));
}

std::string releaseFrame() {
    return frame("0910 C10E 610C 300A 020101 A005 6203 800100");
}

std::string confirmedRequest(int invokeId, std::string_view service) {
    return tlv("A0", "0201" + hexNumber(static_cast<std::size_t>(invokeId), 1) + std::string(service));
}

std::string request(int invokeId, std::string_view service) {
    return dataFrame(confirmedRequest(invokeId, service));
}

std::string identifyReply(int invokeId) {
    // vendor "ORV", model "QTM5-2", revision "V1.3150519"
    const std::string names = "80034F5256 810651544D352D32 820A56312E33313530353139";
    return dataFrame(tlv("A1", "0201" + hexNumber(static_cast<std::size_t>(invokeId), 1) + tlv("A2", names)));
}

} // namespace ied::test
