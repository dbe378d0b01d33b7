// The ring of records behind a message queue, in memory that tasks or processes share. One word
// commits a record and one takes it away, so that whoever dies at any point leaves the ring whole.
#pragma once

#include "platform/sharedObject.h"

namespace ied {

struct MessageRing {
    SharedHead head; // head.lock guards what follows
    u32 maxMessages;
    u32 maxLength; // octets of a record
    u32 taken;     // records received, modulo 2 * maxMessages; written under the lock, watched without
    u32 sent;      // records sent; the same
};
// Behind it lie maxMessages slots, each a length word and maxLength octets, rounded up to a word.

// Octets of a ring, 0 when they leave 31 bits.
u32 ringSize(u32 maxMessages, u32 maxLength);
// Whether the ring's own numbers agree with its size.
bool ringIsSound(const MessageRing *ring);
// Puts a record behind the others. False: full, longer than a slot, or held up by a stopped process.
bool ringSend(MessageRing *ring, const void *record, u32 length);
// Takes the oldest record, cut at `maxLength` octets. Its length, or -1 when there is none.
int ringReceive(MessageRing *ring, void *record, u32 maxLength);
// Waits until `word` (taken or sent) is no longer `seen`, for at most `ns` nanoseconds of host
// time; may return early.
void ringWait(const u32 *word, u32 seen, u64 ns);
// Wakes who waits on `word`, in whatever process.
void ringWake(const u32 *word);

} // namespace ied
