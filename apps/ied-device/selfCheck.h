// Self-check of the instrument: one bit of the word a part that may be at fault.
#pragma once

#include "ied-device/instrument.h"

#include <span>
#include <string_view>

namespace ied::instrument {

struct CheckRow {
    const char *name;
    u32 bit;
};
std::span<const CheckRow> checkRows();

// Sets or clears a bit of the word; the time of the word is that of the change.
void setCheck(Instrument *instrument, u32 bit, bool faulty);

} // namespace ied::instrument
