// Report control blocks of a server (IEC 61850-7-2 17.2): where they are, their attributes as last
// read, and writing one. A call that gives nothing has said why in the connection's `failure`.
#pragma once

#include "ied-client/readings.h"

#include <optional>
#include <string>
#include <vector>

namespace ied::client {

struct ReportBlock {
    Variable variable; // its reference with FC BR (buffered) or RP (unbuffered), and its type
    Value state;       // the attributes, as last read
};

inline bool isBuffered(const ReportBlock &block) {
    return block.variable.reference.fc == "BR";
}
inline std::string blockName(const ReportBlock &block) {
    return personal(block.variable.reference);
}

// All blocks of the server, or those of a device, of a logical node, or the one that a reference
// names; the FC may be left out.
std::optional<std::vector<Variable>> findBlocks(Model &model);
std::optional<std::vector<Variable>> findBlocks(Model &model, const Reference &within);

// Reads the attributes of blocks, in as few requests as may be.
std::optional<std::vector<ReportBlock>> readBlocks(Model &model, const std::vector<Variable> &variables);
bool readAgain(Model &model, ReportBlock &block);

// An attribute as last read, or null if the block has none of this name.
const Value *attribute(const ReportBlock &block, const std::string &name);
bool isTrue(const ReportBlock &block, const std::string &name);
// Text of a string, bits of a bit string, octets of an octet string; empty without the attribute.
std::string attributeOctets(const ReportBlock &block, const std::string &name);
// The attribute for people; empty without it.
std::string attributeText(const ReportBlock &block, const std::string &name);

// "free", "reserved" or "enabled", with the owner where the server tells it.
std::string stateText(const ReportBlock &block);

// DataAccessError object-value-invalid: the attribute does not take this value.
constexpr i64 valueInvalid = 11;

// Writes one attribute, from the text that a person writes for its type: the DataAccessError, or
// -1 when it was written.
std::optional<i64> writeAttribute(Connection &connection, const ReportBlock &block, const std::string &name,
                                  const std::string &text);

} // namespace ied::client
