#include "ied-client/mms.h"

#include <iterator>

namespace ied::client {

namespace {

struct Code {
    i64 number;
    const char *name;
};

// ServiceError classes and, for the classes that a reader of this file meets, their codes.
constexpr const char *errorClasses[] = {
    "vmd-state",       "application-reference",
    "definition",      "resource",
    "service",         "service-preempt",
    "time-resolution", "access",
    "initiate",        "conclude",
    "cancel",          "file",
    "others",
};
constexpr Code definitionErrors[] = {
    {0, "other"},
    {1, "object-undefined"},
    {2, "invalid-address"},
    {3, "type-unsupported"},
    {4, "type-inconsistent"},
    {5, "object-exists"},
    {6, "object-attribute-inconsistent"},
};
constexpr Code accessErrors[] = {
    {0, "other"},
    {1, "object-access-unsupported"},
    {2, "object-non-existent"},
    {3, "object-access-denied"},
    {4, "object-invalidated"},
};
constexpr const char *rejectReasons[] = {
    "",
    "confirmed-request",
    "confirmed-response",
    "confirmed-error",
    "unconfirmed",
    "pdu-error",
    "cancel-request",
    "cancel-response",
    "cancel-error",
    "conclude-request",
    "conclude-response",
    "conclude-error",
};
constexpr const char *dataAccessErrors[] = {
    "object-invalidated",        "hardware-fault",      "temporarily-unavailable",
    "object-access-denied",      "object-undefined",    "invalid-address",
    "type-unsupported",          "type-inconsistent",   "object-attribute-inconsistent",
    "object-access-unsupported", "object-non-existent", "object-value-invalid",
};

template <std::size_t N> std::string nameOf(const Code (&table)[N], i64 number) {
    for (const Code &row : table) {
        if (row.number == number) {
            return row.name;
        }
    }
    return "code " + std::to_string(number);
}

template <std::size_t N> std::string nameOf(const char *const (&table)[N], i64 number) {
    return number >= 0 && number < static_cast<i64>(N) ? table[number] : "code " + std::to_string(number);
}

// Text of a ServiceError's content: class and code by name.
std::string serviceError(View content) {
    Reader reader{content};
    Reader choice{expect(reader, 0xA0)};
    const Element element = next(choice);
    const std::optional<i64> code = toInteger(element.content);
    if (reader.failed || choice.failed || element.tag < 0x80 || !code) {
        return "service error";
    }
    const i64 number = element.tag - 0x80;
    const std::string text = number == 2   ? nameOf(definitionErrors, *code)
                             : number == 7 ? nameOf(accessErrors, *code)
                                           : "code " + std::to_string(*code);
    return text + " (" + nameOf(errorClasses, number) + ")";
}

void takeInvokeId(Answer &answer, const std::optional<Element> &element) {
    const std::optional<u64> id = element ? toUnsigned(element->content) : std::nullopt;
    answer.hasInvokeId = id.has_value();
    answer.invokeId = static_cast<u32>(id.value_or(0));
}

Answer response(Reader reader) {
    Answer answer;
    takeInvokeId(answer, take(reader, 0x02));
    answer.service = next(reader);
    answer.kind = answer.hasInvokeId && !reader.failed ? Answer::Kind::response : Answer::Kind::malformed;
    return answer;
}

Answer error(Reader reader) {
    Answer answer;
    takeInvokeId(answer, take(reader, 0x80));
    take(reader, 0x81); // modifierPosition
    answer.text = serviceError(expect(reader, 0xA2));
    answer.kind = answer.hasInvokeId && !reader.failed ? Answer::Kind::error : Answer::Kind::malformed;
    return answer;
}

Answer rejected(Reader reader) {
    Answer answer;
    takeInvokeId(answer, take(reader, 0x80));
    const Element reason = next(reader);
    answer.text = "rejected (" + nameOf(rejectReasons, static_cast<i64>(reason.tag) - 0x80) + ")";
    answer.kind = reader.failed ? Answer::Kind::malformed : Answer::Kind::rejected;
    return answer;
}

} // namespace

std::string dataAccessError(i64 code) {
    return nameOf(dataAccessErrors, code);
}

Bytes initiateRequest(i64 pduSize) {
    // Five levels of nesting, str1 str2 vnam valt vlis, and the services that this client calls.
    const Bytes services = {3, 0xEE, 0x08, 0, 0, 0, 0, 0, 0, 0, 0x01, 0x10};
    return tlv(0xA8, integer(0x80, pduSize), integer(0x81, 1), integer(0x82, 5), integer(0x83, 5),
               tlv(0xA4, integer(0x80, 1), tlv(0x81, Bytes{5, 0xF1, 0}), tlv(0x82, services)));
}

std::optional<Negotiated> initiateResponse(View pdu) {
    Reader outer{pdu};
    Reader reader{expect(outer, 0xA9)};
    Negotiated negotiated;
    if (const std::optional<Element> size = take(reader, 0x80)) {
        negotiated.pduSize = toInteger(size->content).value_or(0);
    }
    negotiated.outstanding = toInteger(expect(reader, 0x81)).value_or(1);
    expect(reader, 0x82);
    take(reader, 0x83);
    Reader detail{expect(reader, 0xA4)};
    expect(detail, 0x80);
    expect(detail, 0x81);
    const View bits = expect(detail, 0x82);
    for (std::size_t i = 0; i + 1 < bits.size(); ++i) {
        for (int bit = 0; bit < 8; ++bit) {
            if (bits[i + 1] >> (7 - bit) & 1) {
                negotiated.services.push_back(static_cast<int>(i) * 8 + bit);
            }
        }
    }
    return outer.failed || reader.failed || detail.failed ? std::nullopt : std::optional(negotiated);
}

Bytes concludeRequest() {
    return tlv(0x8B);
}

Bytes confirmedRequest(u32 invokeId, View service) {
    return tlv(0xA0, integer(0x02, invokeId), service);
}

Answer parseAnswer(View pdu) {
    Reader outer{pdu};
    const Element element = next(outer);
    const Reader content{element.content};
    switch (element.tag) {
    case 0xA1:
        return response(content);
    case 0xA2:
        return error(content);
    case 0xA3:
        return {Answer::Kind::unconfirmed, 0, false, element, ""};
    case 0xA4:
        return rejected(content);
    case 0x8C:
        return {Answer::Kind::concluded, 0, false, element, ""};
    default:
        return {outer.failed ? Answer::Kind::malformed : Answer::Kind::other, 0, false, element, ""};
    }
}

} // namespace ied::client
