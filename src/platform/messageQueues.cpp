#include "platform/messageRing.h"
#include "platform/platform.h"
#include "platform/shared.h"
#include "platform/waiting.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace ied {

// A queue of this process: its ring, and its place in the list of those that are open.
struct MessageQueue {
    MessageQueue *next;
    MessageRing *ring;
    char name[64]; // of a private queue; empty for a shared one
};

namespace {

struct Queues {
    pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;
    MessageQueue *first = nullptr;
};
Queues queues;

struct Geometry {
    u32 maxMessages;
    u32 maxLength;
};

void layOutRing(SharedHead *head, const void *context) {
    const auto *geometry = static_cast<const Geometry *>(context);
    auto *ring = reinterpret_cast<MessageRing *>(head);
    ring->maxMessages = geometry->maxMessages;
    ring->maxLength = geometry->maxLength;
}

MessageRing *privateRing(const Geometry &geometry, u32 size) {
    auto *ring = static_cast<MessageRing *>(std::calloc(1, size));
    if (ring != nullptr) {
        pthread_mutex_init(&ring->head.lock, nullptr);
        ring->head.size = size;
        layOutRing(&ring->head, &geometry);
    }
    return ring;
}

template <class Matches> MessageQueue *findQueue(Matches matches) {
    MessageQueue *queue = queues.first;
    while (queue != nullptr && !matches(queue)) {
        queue = queue->next;
    }
    return queue;
}

MessageQueue *addQueue(const char *privateName, MessageRing *ring) {
    if (ring == nullptr || !ringIsSound(ring)) {
        return nullptr;
    }
    auto *queue = new (std::nothrow) MessageQueue{queues.first, ring, {}};
    if (queue == nullptr) {
        return nullptr;
    }
    std::strncpy(queue->name, privateName, sizeof queue->name - 1);
    queues.first = queue;
    return queue;
}

MessageQueue *openShared(const char *name, const Geometry &geometry, u32 size) {
    auto *ring =
        reinterpret_cast<MessageRing *>(sharedObjectOpen(name, SharedQueue, size, layOutRing, &geometry));
    MessageQueue *open = findQueue([ring](const MessageQueue *q) { return q->ring == ring; });
    return open != nullptr ? open : addQueue("", ring);
}

MessageQueue *openPrivate(const char *name, const Geometry &geometry, u32 size) {
    MessageQueue *open = findQueue([name](const MessageQueue *q) { return std::strcmp(q->name, name) == 0; });
    return open != nullptr ? open : addQueue(name, privateRing(geometry, size));
}

// Repeats `attempt` whenever `word` moves, until it succeeds or the time is up.
template <class Attempt> int untilDeadline(const u32 *word, int ticks, Attempt attempt) {
    u32 seen = loadPublished(*word);
    int result = attempt();
    if (result != ERROR || ticks == NO_WAIT) {
        return result;
    }
    const Deadline deadline = deadlineInTicks(ticks);
    constexpr u64 longestSliceNs = 1'000'000'000;
    while (result == ERROR && !isPast(deadline)) {
        const u64 slice = deadline.forever ? longestSliceNs : waitSliceNs(deadline);
        ringWait(word, seen, std::min(slice, longestSliceNs));
        seen = loadPublished(*word);
        result = attempt();
        if (result == ERROR) {
            passSlice(deadline);
        }
    }
    return result;
}

} // namespace

MsgQId msgQOpen(const char *name, int maxMessages, int maxLength, u32 /*options*/, u32 /*mode*/,
                int /*context*/) {
    if (name == nullptr || name[0] == 0 || std::strlen(name) >= sizeof(MessageQueue::name) ||
        maxMessages < 1 || maxLength < 1) {
        return nullptr;
    }
    const Geometry geometry{static_cast<u32>(maxMessages), static_cast<u32>(maxLength)};
    const u32 size = ringSize(geometry.maxMessages, geometry.maxLength);
    if (size == 0) {
        return nullptr;
    }
    pthread_mutex_lock(&queues.lock);
    MessageQueue *queue =
        name[0] == '/' ? openShared(name, geometry, size) : openPrivate(name, geometry, size);
    pthread_mutex_unlock(&queues.lock);
    return queue;
}

int msgQSend(MsgQId queue, const void *record, u32 length, int ticks, int /*priority*/) {
    if (queue == nullptr || length > queue->ring->maxLength) {
        return ERROR;
    }
    MessageRing *ring = queue->ring;
    const int result =
        untilDeadline(&ring->taken, ticks, [&] { return ringSend(ring, record, length) ? OK : ERROR; });
    if (result == OK) {
        ringWake(&ring->sent);
    }
    return result;
}

int msgQReceive(MsgQId queue, void *record, u32 maxLength, int ticks) {
    if (queue == nullptr) {
        return ERROR;
    }
    MessageRing *ring = queue->ring;
    const int length =
        untilDeadline(&ring->sent, ticks, [&] { return ringReceive(ring, record, maxLength); });
    if (length != ERROR) {
        ringWake(&ring->taken);
    }
    return length;
}

} // namespace ied
