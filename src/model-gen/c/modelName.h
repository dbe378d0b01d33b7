// Names of model nodes and the texts that are composed of them, and numbers read from SCL texts.
#pragma once

#include "platform/types.h"

#include <initializer_list>

namespace ied {

// A node's name, as GenNode holds it: at most 30 octets by joining.
struct NodeName {
    char text[32];
};

// The pieces one behind the other; null and any piece with which the text would not stay under 31
// octets are left out whole.
NodeName joinName(std::initializer_list<const char *> pieces);

// The name of instance `instance` (from 1) of a control block of `count` instances: with several
// and a name two digits follow it, and the text is cut at 31 octets; else by the joining rule.
NodeName blockName(const char *name, int instance, int count);

// A decimal number with an optional sign, up to the first other character; null is 0. Saturates at
// 32 bits.
i32 decimalI32(const char *text);
u32 decimalU32(const char *text);

// True for the text "true".
bool isTrue(const char *text);
// True for a text that is there and not empty.
bool isGiven(const char *text);

} // namespace ied
