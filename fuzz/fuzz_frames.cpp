// Octets as they come from a socket of a new connection: the first octet says how they are cut into
// segments (0: one segment, n: segments of n octets), the rest goes to packetReply. After that an
// honest client of the same slot still associates.
#include "tests/support/conversation.h"
#include "tests/support/smallModel.h"

#include <algorithm>
#include <cstdlib>

using namespace ied;

extern "C" int LLVMFuzzerTestOneInput(const u8 *data, std::size_t size) {
    static test::SmallModel *const model = new test::SmallModel;
    static test::Conversation *const conversation = new test::Conversation;
    static_cast<void>(model);
    if (size == 0) {
        return 0;
    }
    conversation->restart();
    const std::size_t step = data[0] == 0 ? size : data[0];
    for (std::size_t at = 1; at < size; at += step) {
        conversation->sendOctets({data + at, std::min(step, size - at)});
    }
    conversation->restart();
    conversation->associate();
    return 0;
}
