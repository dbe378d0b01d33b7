// Access to words that more than one task reads or writes without a lock. Each access is one
// indivisible load or store of the field's own width. Nothing orders one field after another, so a
// reader may see a new value beside an old one; where that matters, a counter publishes the data:
// stored with release behind them and loaded with acquire before them.
#pragma once

#include "platform/types.h"

#include <atomic>
#include <type_traits>

namespace ied {

// Load of a word that another task may be storing.
template <class T>
requires std::is_trivially_copyable_v<T>
inline T loadShared(const T &word) {
    return std::atomic_ref<T>(const_cast<T &>(word)).load(std::memory_order_relaxed);
}

// Store of a word that another task may be loading.
template <class T>
requires std::is_trivially_copyable_v<T>
inline void storeShared(T &word, std::type_identity_t<T> value) {
    std::atomic_ref<T>(word).store(value, std::memory_order_relaxed);
}

// Load of a counter or flag behind which another task has published data.
template <class T>
requires std::is_trivially_copyable_v<T>
inline T loadPublished(const T &word) {
    return std::atomic_ref<T>(const_cast<T &>(word)).load(std::memory_order_acquire);
}

// Store of a counter or flag that publishes everything stored before it.
template <class T>
requires std::is_trivially_copyable_v<T>
inline void publish(T &word, std::type_identity_t<T> value) {
    std::atomic_ref<T>(word).store(value, std::memory_order_release);
}

// One more on a counter that a single task writes and others watch.
template <class T>
requires std::is_integral_v<T>
inline void countShared(T &word) {
    storeShared(word, static_cast<T>(loadShared(word) + 1));
}

// Copy of a time stamp that another task may be storing: three separate words, no snapshot.
inline TimeStamp loadShared(const TimeStamp &time) {
    return {loadShared(time.sec), loadShared(time.ms), loadShared(time.tq)};
}

// Store of a time stamp that another task may be loading, word by word.
inline void storeShared(TimeStamp &time, const TimeStamp &value) {
    storeShared(time.sec, value.sec);
    storeShared(time.ms, value.ms);
    storeShared(time.tq, value.tq);
}

} // namespace ied
