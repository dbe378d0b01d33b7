// References of IEC 61850 in the two forms that people write, as one record:
//   LD/LN.DO.DA[FC]        IEC 61850-7-2; the FC may be left out; an element or a range of an array
//                          is NAME[3], NAME(3) or NAME[2..10]
//   LD/LN$FC$DO$DA         IEC 61850-8-1, the name of the MMS variable; elements as above
#pragma once

#include "ied-client/mms.h"

#include <optional>
#include <string>
#include <vector>

namespace ied::client {

// One name of a path, with the elements wanted of the array that it names.
struct Step {
    std::string name;
    bool indexed = false;
    u32 first = 0;
    u32 last = 0;
    bool range = false; // written as first..last, even where both are equal
};

struct Reference {
    std::string device;
    std::string node; // logical node; empty: the whole device
    std::string fc;   // empty: not said
    std::vector<Step> path;
};

// Nothing for a text that is neither form; `why` then says what is wrong with it.
std::optional<Reference> parseReference(const std::string &text, std::string &why);

// The form for people of a reference, with its FC in brackets when it has one.
std::string personal(const Reference &reference);

// The MMS variable of a reference that has a device, a node and an FC. At most one step is
// indexed; the steps behind it go into the selection.
VariableName variableName(const Reference &reference);

// Reference of an MMS item name LN$FC$DO$DA.
Reference fromItem(const std::string &device, const std::string &item);

// Pieces of a text between separators, but for those inside square brackets.
std::vector<std::string> split(const std::string &text, char separator);

// Whether a text is the two capital letters of a functional constraint.
bool isFc(const std::string &text);

} // namespace ied::client
