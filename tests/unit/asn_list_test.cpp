#include "asn1/berTypes.h"
#include "basicInterface/memory.h"

#include <gtest/gtest.h>

namespace ied {
namespace {

void put(void *payload, int value) {
    *static_cast<int *>(payload) = value;
}

int get(void *payload) {
    return payload ? *static_cast<int *>(payload) : -1;
}

// Payloads from the first to the last, then from the last to the first.
std::vector<int> bothWays(AsnList *list) {
    std::vector<int> values;
    for (void *p = AsnListFirst(list); p; p = AsnListNext(list)) {
        values.push_back(get(p));
    }
    for (void *p = AsnListLast(list); p; p = AsnListPrev(list)) {
        values.push_back(get(p));
    }
    return values;
}

TEST(AsnList, ElementsGoWhereTheCursorSays) {
    AsnList *list = AsnListNew(sizeof(int));
    EXPECT_EQ(AsnListAdd(list), nullptr);
    EXPECT_EQ(AsnListInsert(list), nullptr);
    put(AsnListAppend(list), 3);
    put(AsnListPrepend(list), 1); // current
    put(AsnListAdd(list), 2);
    put(AsnListInsert(list), 15); // before 2
    put(AsnListAppend(list), 4);
    EXPECT_EQ(bothWays(list), (std::vector{1, 15, 2, 3, 4, 4, 3, 2, 15, 1}));
    EXPECT_EQ(AsnListCount(list), 5U);
    AsnListFree(list);
}

TEST(AsnList, TheCursorStartsAtTheFirstAndEndsInNothing) {
    AsnList *list = AsnListNew(sizeof(int));
    EXPECT_EQ(AsnListFirst(list), nullptr);
    EXPECT_EQ(AsnListNext(list), nullptr);
    put(AsnListAppend(list), 7);
    EXPECT_EQ(get(AsnListCurr(list)), 7);
    EXPECT_EQ(AsnListNext(list), nullptr);
    EXPECT_EQ(AsnListCurr(list), nullptr);
    EXPECT_EQ(get(AsnListNext(list)), 7);
    AsnListFree(list);
    AsnListFree(nullptr);
}

TEST(AsnList, TheSuccessorOfARemovedElementBecomesTheCurrentOne) {
    AsnList *list = AsnListNew(sizeof(int));
    for (int i = 1; i <= 4; ++i) {
        put(AsnListAppend(list), i);
    }
    AsnListFirst(list);
    AsnListRemove(list);
    EXPECT_EQ(get(AsnListCurr(list)), 2);
    AsnListNext(list);
    AsnListRemove(list); // 3, in the middle
    EXPECT_EQ(get(AsnListCurr(list)), 4);
    AsnListRemove(list); // the last
    EXPECT_EQ(AsnListCurr(list), nullptr);
    AsnListRemove(list); // nothing is current
    EXPECT_EQ(bothWays(list), (std::vector{2, 2}));
    AsnListFirst(list);
    AsnListRemove(list);
    EXPECT_EQ(list->first, nullptr);
    EXPECT_EQ(list->last, nullptr);
    EXPECT_EQ(AsnListCount(list), 0U);
    AsnListFree(list);
}

TEST(AsnList, AListOfAPoolIsDroppedWithIt) {
    MemoryPool pool{};
    mpAlloc(4096, &pool);
    AsnList *list = asnListNew(sizeof(int), &pool);
    put(asnListAppend(list, &pool), 5);
    put(asnListAppend(list, &pool), 6);
    EXPECT_EQ(bothWays(list), (std::vector{5, 6, 6, 5}));
    mpFree(&pool);
}

} // namespace
} // namespace ied
