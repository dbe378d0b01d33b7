#include "model-gen/c/sclRecords.h"

#include "model-gen/c/sclReaders.h"

#include <cstring>

namespace ied {

scl::Icd icd;
scl::Header Header;
scl::Communication Comm;
scl::Ied IED;
scl::Templates Templates;
scl::Private OrvPrivate;
scl::IedResources IedResources;
TailedList LDeviceHead;
TailedList LNodeTypeHead;
TailedList DOTypeHead;
TailedList DATypeHead;
TailedList EnumTypeHead;
TailedList SubNetworkHead;
TailedList GooseSubscriptionHead;
TailedList GooseMapInitHead;

scl::ConfSection *getConfSection(const char *name) {
    if (name == nullptr) {
        return nullptr;
    }
    for (scl::ConfSection &section : records<&scl::ConfSection::link>(OrvPrivate.iniConf)) {
        if (std::strcmp(section.name, name) == 0) {
            return &section;
        }
    }
    return nullptr;
}

void sclForget() {
    icd = {};
    Header = {};
    Comm = {};
    IED = {};
    Templates = {};
    OrvPrivate = {};
    IedResources = {};
    for (TailedList *list : {&LDeviceHead, &LNodeTypeHead, &DOTypeHead, &DATypeHead, &EnumTypeHead,
                             &SubNetworkHead, &GooseSubscriptionHead, &GooseMapInitHead}) {
        *list = {};
    }
}

} // namespace ied
