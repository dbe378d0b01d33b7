#include "tests/support/rawMms.h"

namespace ied::test {

namespace {

// Position behind the header of the element at `at` of a hex text.
std::size_t contentAt(const std::string &text, std::size_t at) {
    const std::string length = text.substr(at + 2, 2);
    const std::size_t value = std::stoul(length, nullptr, 16);
    return at + 4 + (value < 0x80 ? 0 : 2 * (value - 0x80));
}

} // namespace

std::string objectName(const std::string &domain, const std::string &item) {
    return tlv("A1", tlv("1A", ascii(domain)) + tlv("1A", ascii(item)));
}

std::string getNameList(int invokeId, int objectClass, const std::string &domain, const std::string &after) {
    const std::string scope = domain.empty() ? "8000" : tlv("81", ascii(domain));
    const std::string list =
        tlv("A0", "8001" + hexNumber(static_cast<std::size_t>(objectClass), 1)) + tlv("A1", scope);
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
