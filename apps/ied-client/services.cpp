#include "ied-client/mms.h"

namespace ied::client {

namespace {

Bytes domainSpecific(const std::string &domain, const std::string &item) {
    return tlv(0xA1, tlv(0x1A, domain), tlv(0x1A, item));
}

// AlternateAccess that goes down through components, the last one by selectAccess.
Bytes componentAccess(const std::vector<std::string> &below, std::size_t at) {
    if (at + 1 == below.size()) {
        return tlv(0x81, below[at]);
    }
    return tlv(0xA0, tlv(0x80, below[at]), tlv(0x30, componentAccess(below, at + 1)));
}

Bytes alternateAccess(const Selection &selection) {
    if (selection.count > 0) {
        return tlv(0xA5, tlv(0xA3, integer(0x80, selection.first), integer(0x81, selection.count)));
    }
    if (selection.below.empty()) {
        return tlv(0xA5, integer(0x82, selection.first));
    }
    return tlv(0xA5,
               tlv(0xA0, integer(0x81, selection.first), tlv(0x30, componentAccess(selection.below, 0))));
}

// One entry of listOfVariable.
Bytes variableEntry(const VariableName &variable) {
    const Bytes access = variable.selection.indexed ? alternateAccess(variable.selection) : Bytes{};
    return tlv(0x30, tlv(0xA0, domainSpecific(variable.domain, variable.item)), access);
}

std::optional<Value> elementValue(Reader &reader) {
    const Element element = next(reader);
    return reader.failed ? std::nullopt : decodeValue(element);
}

} // namespace

Bytes identifyRequest() {
    return tlv(0x82);
}

Bytes getNameListRequest(ObjectClass objectClass, const std::string &domain, const std::string &after) {
    const Bytes scope = domain.empty() ? tlv(0x80) : tlv(0x81, domain);
    return tlv(0xA1, tlv(0xA0, integer(0x80, objectClass)), tlv(0xA1, scope),
               after.empty() ? Bytes{} : tlv(0x82, after));
}

Bytes getTypeRequest(const std::string &domain, const std::string &item) {
    return tlv(0xA6, tlv(0xA0, domainSpecific(domain, item)));
}

Bytes readRequest(const std::vector<VariableName> &variables) {
    Bytes list;
    for (const VariableName &variable : variables) {
        appendTo(list, View(variableEntry(variable)));
    }
    return tlv(0xA4, tlv(0xA1, tlv(0xA0, list)));
}

Bytes writeRequest(const VariableName &variable, const Value &value) {
    return tlv(0xA5, tlv(0xA0, variableEntry(variable)), tlv(0xA0, encodeValue(value)));
}

Bytes getListRequest(const std::string &domain, const std::string &list) {
    return tlv(0xAC, domainSpecific(domain, list));
}

std::size_t requestSize(const VariableName &variable) {
    return variableEntry(variable).size();
}

std::optional<Identity> identifyResponse(const Element &service) {
    Reader reader{service.content};
    Identity identity;
    identity.vendor = toText(expect(reader, 0x80));
    identity.model = toText(expect(reader, 0x81));
    identity.revision = toText(expect(reader, 0x82));
    return service.tag == 0xA2 && !reader.failed ? std::optional(identity) : std::nullopt;
}

std::optional<Names> getNameListResponse(const Element &service) {
    Reader reader{service.content};
    Reader list{expect(reader, 0xA0)};
    Names names;
    while (more(list)) {
        names.names.push_back(toText(expect(list, 0x1A)));
    }
    if (const std::optional<Element> follows = take(reader, 0x81)) {
        names.more = toBool(follows->content);
    }
    return service.tag == 0xA1 && !reader.failed && !list.failed ? std::optional(names) : std::nullopt;
}

std::optional<Type> getTypeResponse(const Element &service) {
    Reader reader{service.content};
    expect(reader, 0x80); // mmsDeletable
    take(reader, 0xA1);   // address
    Reader typeReader{expect(reader, 0xA2)};
    const Element element = next(typeReader);
    return service.tag == 0xA6 && !reader.failed && !typeReader.failed ? decodeType(element) : std::nullopt;
}

std::optional<std::vector<AccessResult>> accessResults(View content) {
    Reader list{content};
    std::vector<AccessResult> results;
    while (more(list)) {
        AccessResult result;
        if (const std::optional<Element> failure = take(list, 0x80)) {
            result.error = toInteger(failure->content).value_or(0);
        } else {
            result.value = elementValue(list);
            if (!result.value) {
                return std::nullopt;
            }
        }
        results.push_back(std::move(result));
    }
    return list.failed ? std::nullopt : std::optional(std::move(results));
}

std::optional<std::vector<AccessResult>> readResponse(const Element &service) {
    Reader reader{service.content};
    take(reader, 0xA0); // variableAccessSpecification
    const View list = expect(reader, 0xA1);
    return service.tag == 0xA4 && !reader.failed ? accessResults(list) : std::nullopt;
}

std::optional<i64> writeResponse(const Element &service) {
    Reader reader{service.content};
    if (service.tag != 0xA5) {
        return std::nullopt;
    }
    if (take(reader, 0x81)) {
        return -1;
    }
    return toInteger(expect(reader, 0x80));
}

std::optional<VariableList> getListResponse(const Element &service) {
    Reader reader{service.content};
    VariableList list;
    list.deletable = toBool(expect(reader, 0x80));
    Reader members{expect(reader, 0xA1)};
    while (more(members)) {
        Reader member{expect(members, 0x30)};
        Reader variableReader{expect(member, 0xA0)};
        Reader name{expect(variableReader, 0xA1)};
        VariableName variable;
        variable.domain = toText(expect(name, 0x1A));
        variable.item = toText(expect(name, 0x1A));
        if (name.failed) {
            return std::nullopt;
        }
        list.members.push_back(std::move(variable));
    }
    return service.tag == 0xAC && !reader.failed && !members.failed ? std::optional(list) : std::nullopt;
}

} // namespace ied::client
