// The instrument's own model, from its SCL file, over a region of its own; its measurements are found
// by short address and read leaf by leaf, as a client's read does.
#pragma once

#include "asn1/mmsCodec.h"
#include "basicInterface/complexData.h"
#include "basicInterface/simpleData.h"
#include "device/addressBinding.h"
#include "tests/support/deviceModel.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

namespace ied::test {

inline bool isMeasured(const std::string &sAddr) {
    for (const char *root : {"RT.", "DMD.", "MON.", "ENG."}) {
        if (sAddr.rfind(root, 0) == 0) {
            return true;
        }
    }
    return false;
}

// The instrument's model over a region of its own, made once.
struct Instrument {
    DeviceState device;
    std::map<std::string, GenNode *> values;  // measured objects by short address: FC MX or ST
    std::map<std::string, GenNode *> configs; // the same under FC CF

    Instrument() {
        externGlbCfgInit();
        hostModelOptions.icdOnHost = true;
        hostModelOptions.modelPool = 0x500000 * sizeof(void *) / 4;
        if (!modelCfgInit(IED_SOURCE_DIR "/device/tffs0/ZRX418.icd")) {
            std::abort();
        }
        collect(lds.child);
    }
    void collect(GenNode *node) {
        for (; node != nullptr; node = node->sibling) {
            if (node->level < LevelDO) {
                collect(node->child);
            } else if (node->level == LevelDO && node->sAddr != nullptr && isMeasured(node->sAddr)) {
                if (node->fc == FcMX || node->fc == FcST) {
                    values[node->sAddr] = node;
                }
                if (node->fc == FcCF) {
                    configs[node->sAddr] = node;
                }
            }
        }
    }
};

inline Instrument &instrument() {
    static Instrument *const made = new Instrument; // the model stays for the life of the process
    return *made;
}

// Node at a path of names below `node`; null after a failure if there is none.
inline GenNode *below(GenNode *node, const std::string &path) {
    for (std::size_t at = 0; node != nullptr && at < path.size();) {
        const std::size_t end = std::min(path.find('.', at), path.size());
        node = childByName(node, path.substr(at, end - at).c_str());
        at = end + 1;
    }
    if (node == nullptr) {
        ADD_FAILURE() << "the model has no " << path;
    }
    return node;
}

// A leaf as it is read.
struct Value {
    Value(GenNode *object, const std::string &path) {
        if (GenNode *leaf = below(object, path)) {
            getSimpleData(&data, leaf, true);
        }
    }
    ~Value() { FreeData(&data); }
    Value(const Value &) = delete;
    Value &operator=(const Value &) = delete;

    f32 number() const {
        f32 value = NAN;
        if (data.choiceId == Data::floatingPoint) {
            octs2Fp(&value, data.octs);
        }
        return value;
    }
    TimeStamp time() const {
        TimeStamp time{};
        if (data.choiceId == Data::utcTime) {
            octs2Timestamp(&time, data.octs);
        }
        return time;
    }
    Data data{};
};

inline std::string join(const std::string &parent, const std::string &name) {
    return parent.empty() ? name : parent + "." + name;
}

// Magnitudes of a whole array of vectors.
inline std::vector<f32> arrayMagnitudes(GenNode *array) {
    AccessSel all{};
    all.kind = AccessSel::allElements;
    all.arrayNode = array;
    Data data{};
    getNodeData(&data, array, &all);
    std::vector<f32> magnitudes;
    if (data.choiceId == Data::arrayVec && data.vec->mag != nullptr) {
        for (u32 i = 0; i < data.vec->count; i++) {
            octs2Fp(&magnitudes.emplace_back(), &data.vec->mag[i]);
        }
    }
    FreeData(&data);
    return magnitudes;
}

} // namespace ied::test
