#include "tests/support/rawMms.h"

#include <stdexcept>

namespace ied::test {

namespace {

std::string numberHex(std::size_t value, std::size_t width) {
    std::string text;
    for (std::size_t i = width; i-- > 0;) {
        text.push_back(static_cast<char>(value >> (8 * i)));
    }
    return hex(text);
}

// Position behind the header of the element at `at` of a hex text.
std::size_t contentAt(const std::string &text, std::size_t at) {
    const std::string length = text.substr(at + 2, 2);
    const std::size_t value = std::stoul(length, nullptr, 16);
    return at + 4 + (value < 0x80 ? 0 : 2 * (value - 0x80));
}

} // namespace

std::string ascii(const std::string &text) {
    return hex(text);
}

std::string tlv(const std::string &tag, const std::string &content) {
    const std::string body = canonical(content);
    const std::size_t length = body.size() / 2;
    const std::string form = length < 128 ? "" : length < 256 ? "81" : length < 65536 ? "82" : "83";
    return canonical(tag) + form + numberHex(length, length < 256 ? 1 : length < 65536 ? 2 : 3) + body;
}

std::string tpkt(const std::string &tpdu) {
    const std::string body = canonical(tpdu);
    return "0300" + numberHex(body.size() / 2 + 4, 2) + body;
}

std::string dataFrame(const std::string &mmsPdu) {
    return tpkt("02F080 01000100" + tlv("61", tlv("30", "020103" + tlv("A0", mmsPdu))));
}

std::string associateRequest(const std::string &initiatePdu) {
    const std::string external = tlv("28", "06 02 51 01 02 01 03" + tlv("A0", initiatePdu));
    const std::string aarq = tlv("60", "A1 07 06 05 28 CA 22 02 03" + tlv("BE", external));
    const std::string user = tlv("61", tlv("30", "02 01 01" + tlv("A0", aarq)));
    const std::string contexts = "A4 23 30 0F 02 01 01 06 04 52 01 00 01 30 04 06 02 51 01"
                                 "30 10 02 01 03 06 05 28 CA 22 02 01 30 04 06 02 51 01";
    const std::string cp = tlv("31", "A0 03 80 01 01" + tlv("A2", "81 04 00 00 00 01 82 04 00 00 00 01" +
                                                                      contexts + "88 02 06 00" + user));
    const std::string spdu =
        "05 06 13 01 00 16 01 02 14 02 00 02 33 02 00 01 34 02 00 01 C1" + numberHex(cp.size() / 2, 1) + cp;
    return tpkt("02 F0 80 0D" + numberHex(canonical(spdu).size() / 2, 1) + spdu);
}

std::string confirmedRequest(int invokeId, const std::string &service) {
    return tlv("A0", "0201" + numberHex(static_cast<std::size_t>(invokeId), 1) + service);
}

std::string objectName(const std::string &domain, const std::string &item) {
    return tlv("A1", tlv("1A", ascii(domain)) + tlv("1A", ascii(item)));
}

std::string getNameList(int invokeId, int objectClass, const std::string &domain, const std::string &after) {
    const std::string scope = domain.empty() ? "8000" : tlv("81", ascii(domain));
    const std::string list =
        tlv("A0", "8001" + numberHex(static_cast<std::size_t>(objectClass), 1)) + tlv("A1", scope);
    return confirmedRequest(invokeId, tlv("A1", list + (after.empty() ? "" : tlv("82", ascii(after)))));
}

std::string getTypeOf(int invokeId, const std::string &domain, const std::string &item) {
    return confirmedRequest(invokeId, tlv("A6", tlv("A0", objectName(domain, item))));
}

std::string read(int invokeId, const std::string &domain, const std::string &item,
                 const std::string &access) {
    const std::string variable = tlv("30", tlv("A0", objectName(domain, item)) + access);
    return confirmedRequest(invokeId, tlv("A4", tlv("A1", tlv("A0", variable))));
}

std::string write(int invokeId, const std::string &domain, const std::string &item, const std::string &data) {
    const std::string variable = tlv("30", tlv("A0", objectName(domain, item)));
    return confirmedRequest(invokeId, tlv("A5", tlv("A0", variable) + tlv("A0", data)));
}

bool associate(RawClient &client, std::uint16_t port, Milliseconds limit) {
    connectTo(client, port, limit);
    return associateOn(client, limit);
}

bool associateOn(RawClient &client, Milliseconds limit) {
    sendHex(client, connectionRequestHex);
    if (receiveFrame(client, limit) != canonical(connectionConfirmHex)) {
        return false;
    }
    sendHex(client, associateRequestHex);
    return receiveFrame(client, limit) == canonical(expectedAssociateResponse);
}

std::optional<std::string> mmsOf(const std::vector<std::string> &frames) {
    std::string spdu;
    for (const std::string &frame : frames) {
        if (frame.size() < 14 || frame.substr(8, 4) != "02F0") {
            return std::nullopt;
        }
        spdu += frame.substr(14);
    }
    if (!spdu.starts_with("0100010061")) {
        return std::nullopt;
    }
    std::size_t at = contentAt(spdu, 8);
    at = contentAt(spdu, at);
    if (spdu.substr(at, 8) != "020103A0") {
        return std::nullopt;
    }
    return spdu.substr(contentAt(spdu, at + 6));
}

std::optional<std::string> receiveMms(RawClient &client, Milliseconds limit) {
    std::vector<std::string> frames;
    do {
        std::optional<std::string> frame = receiveFrame(client, limit);
        if (!frame) {
            return std::nullopt;
        }
        frames.push_back(*frame);
    } while (frames.back().size() >= 14 && frames.back().substr(12, 2) == "00");
    return mmsOf(frames);
}

std::optional<std::string> ask(RawClient &client, const std::string &mmsPdu, Milliseconds limit) {
    sendHex(client, dataFrame(mmsPdu));
    return receiveMms(client, limit);
}

bool servesHonestClient(std::uint16_t port, Milliseconds limit) {
    RawClient client;
    if (!associate(client, port, limit)) {
        return false;
    }
    const std::optional<std::string> answer = ask(client, confirmedRequest(1, "8200"), limit);
    return answer && answer->find(ascii("ORV")) != std::string::npos;
}

} // namespace ied::test
