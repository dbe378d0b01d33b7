#include "tests/support/hex.h"

#include <algorithm>
#include <stdexcept>

namespace ied::test {

namespace {

constexpr std::string_view digits = "0123456789ABCDEF";

int digitValue(char c) {
    return c >= '0' && c <= '9'   ? c - '0'
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                  : -1;
}

} // namespace

std::vector<u8> octets(std::string_view hex) {
    std::vector<u8> out;
    out.reserve(hex.size() / 2);
    int high = -1;
    for (const char c : hex) {
        if (c == ' ' || c == '\n') {
            continue;
        }
        const int value = digitValue(c);
        if (value < 0) {
            throw std::invalid_argument("no hex text: " + std::string(hex));
        }
        if (high >= 0) {
            out.push_back(static_cast<u8>(high << 4 | value));
        }
        high = high >= 0 ? -1 : value;
    }
    if (high >= 0) {
        throw std::invalid_argument("half an octet: " + std::string(hex));
    }
    return out;
}

std::string hexText(std::span<const u8> octets) {
    std::string out;
    out.reserve(2 * octets.size());
    for (const u8 octet : octets) {
        out += digits[octet >> 4];
        out += digits[octet & 15];
    }
    return out;
}

std::string canonical(std::string_view hex) {
    return hexText(octets(hex));
}

std::string hexNumber(std::size_t value, std::size_t width) {
    std::vector<u8> out;
    for (std::size_t i = width; i-- > 0;) {
        out.push_back(static_cast<u8>(value >> (8 * i)));
    }
    return hexText(out);
}

std::string ascii(std::string_view text) {
    return hexText(std::vector<u8>(text.begin(), text.end()));
}

std::string characters(std::string_view hex) {
    const std::vector<u8> text = octets(hex);
    return {text.begin(), text.end()};
}

std::vector<std::string> parts(std::string_view text, char separator) {
    std::vector<std::string> found;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(separator, at), text.size());
        if (end != at) {
            found.emplace_back(text.substr(at, end - at));
        }
        at = end + 1;
    }
    return found;
}

} // namespace ied::test
