// Instantiated data: DOI, SDI, DAI (IEC 61850-6 9.3.6).
#include "model-gen/c/sclReader.h"
#include "model-gen/c/sclReaders.h"

namespace ied {

namespace {

constexpr AttrRow<scl::DOI> doiAttrs[] = {
    {"desc", &scl::DOI::desc},
    {"name", &scl::DOI::name},
    {"ix", &scl::DOI::ix},
    {"accessControl", &scl::DOI::accessControl},
};

constexpr AttrRow<scl::SDI> sdiAttrs[] = {
    {"desc", &scl::SDI::desc},
    {"name", &scl::SDI::name},
    {"ix", &scl::SDI::ix},
};

constexpr AttrRow<scl::DAI> daiAttrs[] = {
    {"desc", &scl::DAI::desc},       {"name", &scl::DAI::name}, {"sAddr", &scl::DAI::sAddr},
    {"valKind", &scl::DAI::valKind}, {"ix", &scl::DAI::ix},
};

constexpr ChildRow<scl::Instances> instanceChildren[] = {
    {"DAI", getDAI},
    {"SDI", getSDI},
    {"Private", nullptr},
};

} // namespace

void getDOI(tree_node *node, scl::LN *ln) {
    auto *doi = newRecord<&scl::DOI::link>(&ln->dois, "getDOI", "gMalloc for DOI failed!\r\n");
    readAttrs(node, doi, doiAttrs, "getDOI");
    readChildren(node, &doi->below, instanceChildren, "getDOI");
}

// The nesting is that of the document's elements, which has its limit (maxElementDepth).
void getSDI(tree_node *node, scl::Instances *owner) {
    auto *sdi = newRecord<&scl::SDI::link>(&owner->sdi, "getSDI", "gMalloc for SDI failed!\r\n");
    readAttrs(node, sdi, sdiAttrs, "getSDI");
    readChildren(node, &sdi->below, instanceChildren, "getSDI");
}

void getDAI(tree_node *node, scl::Instances *owner) {
    auto *dai = newRecord<&scl::DAI::link>(&owner->dai, "getDAI", "gMalloc for DAI failed!\r\n");
    readAttrs(node, dai, daiAttrs, "getDAI");
    if (node->child != nullptr && isEl(node->child, "Val")) {
        dai->val = node->child->data;
    }
}

} // namespace ied
