// The server's information model as this client has come to know it: names by GetNameList, types
// by GetVariableAccessAttributes of whole logical nodes. What was asked once is kept. A call that
// gives nothing has said why in the connection's `failure`.
#pragma once

#include "ied-client/connection.h"
#include "ied-client/reference.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace ied::client {

struct Model {
    Connection &connection;
    std::optional<std::vector<std::string>> devices;
    std::map<std::string, std::vector<std::string>> items; // of a device: LN$FC$DO$DA ...
    std::map<std::string, Type> nodes;                     // of "LD/LN": FC, then DO, then attributes
};

// All names of a class in a domain, asked for until the server has no more.
std::optional<std::vector<std::string>> nameList(Connection &connection, ObjectClass objectClass,
                                                 const std::string &domain);

const std::vector<std::string> *deviceNames(Model &model);
const std::vector<std::string> *itemNames(Model &model, const std::string &device);
std::optional<std::vector<std::string>> nodeNames(Model &model, const std::string &device);
const Type *nodeType(Model &model, const std::string &device, const std::string &node);

// A reference with an FC, and the type of what it selects; the type lives in the model.
struct Variable {
    Reference reference;
    const Type *type = nullptr;
};

// The variables that a reference stands for. With an FC: the one. Without: those of the views that
// hold values (MX, ST, SP, SG); if it is in none of these, every other view that has it. A logical
// device stands for all its nodes.
std::optional<std::vector<Variable>> resolve(Model &model, const Reference &reference);

// A data set by its MMS name, and its members as variables, one for each.
std::optional<VariableList> dataSet(Model &model, const std::string &device, const std::string &item);
std::optional<std::vector<Variable>> memberVariables(Model &model, const VariableList &list);

// Type below a logical node, or null; an index selects the element, a range the array itself.
const Type *typeAt(const Type &node, const std::string &fc, const std::vector<Step> &path);

} // namespace ied::client
