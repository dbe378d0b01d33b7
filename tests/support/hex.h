// Octets as hexadecimal texts, in which blanks mean nothing.
#pragma once

#include "platform/types.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ied::test {

// "03 00 00 16" to octets; raises invalid_argument at anything but pairs of digits and blanks.
std::vector<u8> octets(std::string_view hex);
// Octets to "03000016".
std::string hexText(std::span<const u8> octets);
// The text that hexText gives for the octets of a text, so that expectations compare: without blanks,
// in capitals.
std::string canonical(std::string_view hex);
// A number in `width` octets, the most significant first.
std::string hexNumber(std::size_t value, std::size_t width);

// The characters of a text as hex, and the text of such a hex text.
std::string ascii(std::string_view text);
std::string characters(std::string_view hex);

// The parts of a text between its separators; empty ones are left out.
std::vector<std::string> parts(std::string_view text, char separator);

} // namespace ied::test
