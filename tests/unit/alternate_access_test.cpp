// Alternate access (ISO 9506-2 14.5): what of an array or structure a Read asks for.
#include "asn1/mmsCodec.h"
#include "basicInterface/complexData.h"
#include "basicInterface/memory.h"
#include "basicInterface/simpleData.h"
#include "tests/support/smallModel.h"

#include <gtest/gtest.h>

using namespace ied;
using namespace ied::test;

namespace {

using Choice = AlternateAccessSelectionChoice;

// One selection: a component by name, or elements.
struct Select {
    u32 choice;
    std::string name = {};
    u32 first = 0;
    u32 count = 0;
};

Select component(const char *name) {
    return {Choice::component, name};
}
Select index(u32 i) {
    return {Choice::index, {}, i};
}
Select range(u32 first, u32 count) {
    return {Choice::indexRange, {}, first, count};
}
Select all() {
    return {Choice::allElements};
}

void fill(Choice *choice, const Select &select) {
    choice->choiceId = select.choice;
    if (select.choice == Choice::component) {
        choice->component_ = MallocOf<AsnOcts>();
        const AsnOcts name = octsOver(select.name);
        octsCopy(choice->component_, &name);
    } else if (select.choice == Choice::index) {
        choice->index_ = select.first;
    } else if (select.choice == Choice::indexRange) {
        choice->indexRange_ = MallocOf<AlternateAccessSelectionChoiceSeq>();
        *choice->indexRange_ = {select.first, select.count};
    }
}

// An access that goes through `selections`, the last of which ends it.
AlternateAccess *makeAccess(const std::vector<Select> &selections, std::size_t from = 0) {
    auto *access = asnListNewPtr();
    auto *entry = asnListPush(access, MallocOf<AlternateAccessChoice>());
    entry->choiceId = AlternateAccessChoice::unnamed;
    auto *selection = entry->unnamed_ = MallocOf<AlternateAccessSelection>();
    if (from + 1 == selections.size()) {
        selection->choiceId = AlternateAccessSelection::selectAccess;
        selection->selectAccess_ = MallocOf<Choice>();
        fill(selection->selectAccess_, selections[from]);
        return access;
    }
    selection->choiceId = AlternateAccessSelection::selectAlternateAccess;
    auto *nested = selection->selectAlternateAccess_ = MallocOf<AlternateAccessSelectionSeq>();
    nested->accessSelection = MallocOf<AlternateAccessSelectionSeqChoice>();
    fill(nested->accessSelection, selections[from]);
    nested->alternateAccess = makeAccess(selections, from + 1);
    return access;
}

struct Access {
    explicit Access(const std::vector<Select> &selections) : list(makeAccess(selections)) {}
    ~Access() {
        FreeAlternateAccess(list);
        Free(list);
    }
    Access(const Access &) = delete;
    Access &operator=(const Access &) = delete;
    AlternateAccess *list;
};

// What a Read of `reference` with that access gives; "none" where it leads nowhere.
std::string readWith(const SmallModel &model, const char *reference, const std::vector<Select> &selections) {
    const Access access(selections);
    GenNode *node = model.node(reference);
    AccessSel sel = {};
    if (!searchAlterContent(&node, access.list, &sel)) {
        return "none";
    }
    HeapData data;
    getNodeData(&data.data, node, &sel);
    return show(&data.data);
}

constexpr const char *array = "Meas/MHAI1$MX$HPhV$phsAHar"; // 1 to 5 at 10 to 50 degrees
constexpr const char *magnitudes = "Meas/MHAI1$MX$HPhV$phsBHar";
constexpr const char *counts = "Meas/MSTA1$ST$Hst$hstVal"; // -1, 0, 100000
constexpr const char *cells = "Meas/MSTA1$CF$Hst$hstRangeC";

TEST(AlternateAccess, SelectsElementsAndTheirComponents) {
    const SmallModel model;
    const std::tuple<const char *, std::vector<Select>, const char *> rows[] = {
        {array, {index(1)}, "struct(struct(float 0840000000), struct(float 0841A00000))"},
        {array, {index(4), component("mag")}, "struct(float 0840A00000)"},
        {array, {index(0), component("ang")}, "struct(float 0841200000)"},
        {array, {index(2), component("mag"), component("f")}, "float 0840400000"},
        {array, {index(2), component("ang"), component("f")}, "float 0841F00000"},
        {array, {range(1, 2)}, "vectors 2 mag(0840000000, 0840400000) ang(0841A00000, 0841F00000)"},
        {array, {range(3, 1), component("mag")}, "array(struct(float 0840800000))"},
        {array, {range(1, 2), component("ang"), component("f")}, "array(float 0841A00000, float 0841F00000)"},
        {array, {range(0, 0)}, "vectors 0 mag() ang()"},
        {magnitudes, {index(0)}, "struct(struct(float 083FC00000))"},
        {magnitudes, {range(3, 1)}, "vectors 1 mag(0840900000) ang(-)"},
        {magnitudes,
         {all()},
         "vectors 5 mag(083FC00000, 0840200000, 0840600000, 0840900000, 0840B00000) ang(-)"},
        {"Meas/MHAI1$MX$HPhV",
         {component("phsBHar"), index(1), component("mag"), component("f")},
         "float 0840200000"},
        {"Meas/MHAI1", {component("MX"), component("TotW"), component("q")}, "bits 13:0000"},
        {counts, {index(2)}, "int 100000"},
        {counts, {range(0, 2)}, "array(int -1, int 0)"},
        {counts, {all()}, "array(int -1, int 0, int 100000)"},
        {cells, {index(1)}, "struct(float 083F800000, float 0840000000, float 0841A00000, float 0841A80000)"},
        {cells, {index(2), component("yEnd")}, "float 0841F80000"},
        {cells, {range(0, 2), component("xEnd")}, "array(float 083F800000, float 0840000000)"},
        {cells,
         {range(0, 1)},
         "array(struct(float 0800000000, float 083F800000, float 0841200000, float 0841300000))"}};
    for (const auto &[reference, selections, want] : rows) {
        EXPECT_EQ(readWith(model, reference, selections), want) << reference;
    }
}

TEST(AlternateAccess, HoldsIndicesWithinTheArray) {
    const SmallModel model;
    for (const std::vector<Select> &fits :
         {std::vector{index(4)}, {range(0, 4)}, {range(4, 0)}, {range(3, 1)}}) {
        EXPECT_NE(readWith(model, array, fits), "none") << fits[0].first << " " << fits[0].count;
    }
    for (const u32 outside : {5U, 65535U, 65536U, 0x80000000U, ~0U}) {
        EXPECT_EQ(readWith(model, array, {index(outside)}), "none") << outside;
    }
    EXPECT_EQ(readWith(model, array, {index(5), component("mag")}), "none");
    const std::pair<u32, u32> ranges[] = {
        {0, 5}, {5, 0}, {4, 1}, {2, 0x80000000}, {2, ~0U}, {~0U, 2}, {0x80000000, 0x80000000}, {~0U, ~0U}};
    for (const auto &[first, count] : ranges) {
        EXPECT_EQ(readWith(model, array, {range(first, count)}), "none") << first << " " << count;
    }
    model.node("Meas/MHAI1$MX$HPhV")->data = nullptr;
    EXPECT_EQ(readWith(model, array, {index(0)}), "none") << "an array of no elements";
}

TEST(AlternateAccess, LeadsNowhereOutsideStructuresAndArrays) {
    const SmallModel model;
    EXPECT_EQ(readWith(model, "Tiny/GGIO1$ST$All$int32", {all()}), "none");
    EXPECT_EQ(readWith(model, "Tiny/GGIO1$ST$All$int32", {component("x")}), "none");
    EXPECT_EQ(readWith(model, "Tiny/GGIO1$ST$Ind1", {component("stVa")}), "none");
    EXPECT_EQ(readWith(model, "Tiny/GGIO1$ST$Ind1", {component("stVall")}), "none");
    EXPECT_EQ(readWith(model, "Tiny/GGIO1$ST$Ind1", {component("stVal"), component("x")}), "none");
    EXPECT_EQ(readWith(model, "Tiny/GGIO1$ST$Ind1", {index(0), component("stVal")}), "none");
    EXPECT_EQ(readWith(model, array, {index(1), component("nope")}), "none");
    EXPECT_EQ(readWith(model, array, {index(1), index(1), component("mag")}), "none") << "one array only";
    EXPECT_EQ(readWith(model, "Tiny/GGIO1$ST$Ind1", {index(0)}),
              readWith(model, "Tiny/GGIO1$ST", {component("Ind1")}))
        << "elements of what is no array are not narrowed";
}

TEST(AlternateAccess, HasOneUnnamedEntry) {
    const SmallModel model;
    AccessSel sel = {};
    GenNode *node = model.node(array);
    const Access two({index(1)}), none({index(1)}), named({index(1)}), other({index(2)});
    AsnListElement *entry = other.list->first;
    auto *moved = MallocOf<AlternateAccessChoice>();
    *moved = *asnListValue<AlternateAccessChoice>(entry);
    asnListPush(two.list, moved);
    asnListValue<AlternateAccessChoice>(entry)->unnamed_ = nullptr; // moved to the other list
    EXPECT_FALSE(searchAlterContent(&node, two.list, &sel));
    EXPECT_FALSE(searchAlterContent(&node, other.list, &sel)) << "an entry without a selection";
    auto *choice = asnListValue<AlternateAccessChoice>(named.list->first);
    auto *wrapped = MallocOf<AlternateAccessChoiceSeq>();
    wrapped->accesst = choice->unnamed_;
    choice->choiceId = AlternateAccessChoice::named;
    choice->named_ = wrapped;
    EXPECT_FALSE(searchAlterContent(&node, named.list, &sel));
    AsnList empty = {};
    AsnListInit(&empty, sizeof(void *));
    EXPECT_FALSE(searchAlterContent(&node, &empty, &sel));
    EXPECT_EQ(node, model.node(array));
}

TEST(AlternateAccess, IsFollowedToABoundedDepth) {
    SmallModel model;
    GenNode *at = model.node("Tiny/GGIO1$ST$Deep");
    for (int i = 0; i < 50; ++i) {
        at = model.add(at, "r", LevelInner, TypeInner);
    }
    for (const std::size_t depth : {20U, 32U, 33U, 50U}) {
        const Access access(std::vector<Select>(depth, component("r")));
        GenNode *node = model.node("Tiny/GGIO1$ST$Deep");
        AccessSel sel = {};
        EXPECT_EQ(searchAlterContent(&node, access.list, &sel), depth <= 32) << depth;
    }
}

} // namespace
