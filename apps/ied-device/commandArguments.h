// The words of a line command, taken with their limits.
#pragma once

#include "platform/types.h"

#include <algorithm>
#include <string>
#include <vector>

namespace ied::instrument {

using Words = std::vector<std::string>;

// Words that must be there and make sense; the first failure is kept. Word 0 is the command. Before it
// takes effect, a command asks for all the words that it knows and then whether they are sound.
class Arguments {
  public:
    explicit Arguments(const Words &words) : words_(words) {}
    std::size_t size() const { return words_.size(); }
    // False if a word was wrong or missing, or if there are more than have been asked for.
    bool sound() const { return sound_ && words_.size() <= asked_; }
    bool has(std::size_t index) {
        asked_ = std::max(asked_, index + 1);
        return index < words_.size();
    }
    // The word, empty if there is none.
    std::string text(std::size_t index) { return has(index) ? words_[index] : ""; }
    // A number from `low` to `high`; `low` if it is none.
    f64 number(std::size_t index, f64 low, f64 high);
    f64 number(std::size_t index, f64 low, f64 high, f64 absent) {
        return has(index) ? number(index, low, high) : absent;
    }
    u32 whole(std::size_t index, u32 low, u32 high);
    u32 whole(std::size_t index, u32 low, u32 high, u32 absent) {
        return has(index) ? whole(index, low, high) : absent;
    }
    // A ratio from percent, with or without the sign: "40%" is 0.4.
    f64 ratio(std::size_t index, f64 lowPercent, f64 highPercent);
    // Microseconds from a number with "us", "ms" or "s" behind it, more than 0 and at most an hour;
    // without a unit it is of milliseconds.
    u64 duration(std::size_t index);
    // Bit set of the phases of a word as "A" or "BC" that may stand at `index`, which moves on behind it
    // then; else all phases.
    u8 phases(std::size_t *index);
    // True for the first of two words, false for the second.
    bool among(std::size_t index, const char *first, const char *second);
    // Index of a word in a list, 0 if it is not there.
    std::size_t oneOf(std::size_t index, const std::vector<std::string> &list);

  private:
    f64 prefixed(std::size_t index, f64 low, f64 high, std::string *unit);
    const Words &words_;
    std::size_t asked_ = 1; // words
    bool sound_ = true;
};

} // namespace ied::instrument
