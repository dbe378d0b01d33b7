#include "device/privateConfig.h"

#include "DebugInfo/DebugInfo.h"
#include "model-gen/c/modelName.h"
#include "model-gen/c/sclRecords.h"

#include <cstdlib>
#include <cstring>

namespace ied {

u32 localConfig;

const LocalConfRow localConfTable[] = {
    {"vvaFormat", &localConfig, 0},
    {"", nullptr, 0},
};

namespace {

constexpr std::size_t maxText = 30;

bool takeValue(const LocalConfRow &row, const char *text) {
    switch (row.type) {
    case 0:
        *static_cast<u32 *>(row.target) = decimalU32(text);
        return true;
    case 1:
        *static_cast<f32 *>(row.target) = std::strtof(text, nullptr);
        return true;
    case 2: {
        auto *target = static_cast<char *>(row.target);
        const std::size_t length = strnlen(text, maxText);
        std::memcpy(target, text, length);
        target[length] = '\0';
        return true;
    }
    default:
        dbInfo(DbUPD, DbERR, "privateConfigProcess", "The Invalid Config Data Type!");
        return false;
    }
}

} // namespace

const char *searchKey(const ListHead *privateSection, const char *key) {
    if (privateSection == nullptr || key == nullptr) {
        dbInfo(DbUPD, DbERR, "searchKey", "Input param ERROR!");
        return nullptr;
    }
    for (ListLink *link = privateSection->next; link != nullptr; link = link->next) {
        const auto *entry = listRecord<scl::OrvConfig_t, &scl::OrvConfig_t::link>(link);
        if (entry->key != nullptr && std::strcmp(entry->key, key) == 0) {
            return entry->val != nullptr ? entry->val : "";
        }
    }
    return nullptr;
}

int localConfLoad(const LocalConfRow *table, const ListHead *privateSection) {
    for (const LocalConfRow *row = table; row->key[0] != '\0'; row++) {
        const char *text = searchKey(privateSection, row->key);
        if (text == nullptr) {
            dbInfo(DbUPD, DbERR, "privateConfigProcess", "%s is not in Private Element!", row->key);
        } else if (!takeValue(*row, text)) {
            return -1;
        }
    }
    return 0;
}

int privateConfigProcess(u8 privateType) {
    switch (privateType) {
    case PrivateIedResources:
    case PrivateIniConf:
        return 0;
    case PrivateLocalConf:
        return localConfLoad(localConfTable, &OrvPrivate.localConf);
    default:
        dbInfo(DbUPD, DbERR, "privateConfigProcess", "privateType ERROR!");
        return -1;
    }
}

int localConfInit() {
    if (privateConfigProcess(PrivateLocalConf) == 0) {
        return 0;
    }
    dbInfo(DbUPD, DbERR, "localConfInit", "Load privateLocalConfig failed!");
    return -1;
}

} // namespace ied
