// The words of a line command, taken with their limits.
#pragma once

#include "platform/types.h"

#include <string>
#include <vector>

namespace ied::instrument {

using Words = std::vector<std::string>;

// Words that must be there and make sense; the first failure is kept. Word 0 is the command.
class Arguments {
  public:
    explicit Arguments(const Words &words) : words_(words) {}
    std::size_t size() const { return words_.size(); }
    bool sound() const { return sound_; }
    bool has(std::size_t index) const { return index < words_.size(); }
    const std::string &text(std::size_t index) const { return words_[index]; }
    // A number from `low` to `high`; `low` if it is none.
    f64 number(std::size_t index, f64 low, f64 high);
    f64 number(std::size_t index, f64 low, f64 high, f64 absent) {
        return has(index) ? number(index, low, high) : absent;
    }
    u32 whole(std::size_t index, u32 low, u32 high);
    // A ratio from percent, with or without the sign: "40%" is 0.4.
    f64 ratio(std::size_t index, f64 lowPercent, f64 highPercent);
    // Microseconds from a number with "us", "ms" or "s" behind it, at most an hour; without a unit it
    // is of milliseconds.
    u64 duration(std::size_t index);
    // Bit set of phases from a word as "A" or "BC", or no value if the word is another one.
    u8 phases(std::size_t index) const;
    // True for the first of two words, false for the second.
    bool among(std::size_t index, const char *first, const char *second);
    // Index of a word in a list, 0 if it is not there.
    std::size_t oneOf(std::size_t index, const std::vector<std::string> &list);

  private:
    f64 prefixed(std::size_t index, f64 low, f64 high, std::string *unit);
    const Words &words_;
    bool sound_ = true;
};

} // namespace ied::instrument
