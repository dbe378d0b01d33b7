#include "model-gen/c/modelIndex.h"

#include <functional>
#include <unordered_map>
#include <unordered_set>

namespace ied {

u64 nameComparisons;

namespace {

struct Key {
    const void *list;
    std::string_view name;
    bool operator==(const Key &) const = default;
};

struct KeyHash {
    std::size_t operator()(const Key &key) const {
        return std::hash<std::string_view>()(key.name) ^ (std::hash<const void *>()(key.list) * 31);
    }
};

struct Index {
    std::unordered_set<const void *> lists;
    std::unordered_map<Key, void *, KeyHash> entries;
};

Index *index; // null until the first long list is searched

} // namespace

bool indexHas(const void *list) {
    return index != nullptr && index->lists.contains(list);
}

void indexOpen(const void *list) {
    if (index == nullptr) {
        index = new Index;
    }
    index->lists.insert(list);
}

void indexPut(const void *list, std::string_view name, void *entry) {
    index->entries.try_emplace(Key{list, name}, entry);
}

void *indexGet(const void *list, std::string_view name) {
    ++nameComparisons;
    const auto found = index->entries.find(Key{list, name});
    return found != index->entries.end() ? found->second : nullptr;
}

void indexForget() {
    delete index;
    index = nullptr;
}

GenNode *findChild(GenNode *parent, const char *name) {
    return findIn(
        parent, parent->child, [](GenNode *child) { return child->sibling; },
        [](const GenNode *child) { return static_cast<const char *>(child->name); }, name);
}

GenNode *makeChild(GenNode *parent, const char *name, const char *fc, u8 nodeType, u8 level) {
    GenNode *child = modelFillElem(parent, name, fc, nodeType);
    child->level = level;
    if (indexHas(parent)) {
        indexPut(parent, child->name, child);
    }
    return child;
}

} // namespace ied
