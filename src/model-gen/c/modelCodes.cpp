// The codes of functional constraints, common data classes and basic types.
#include "DebugInfo/DebugInfo.h"
#include "model-gen/c/genNode.h"
#include "platform/platform.h"

#include <cstdio>
#include <cstring>

namespace ied {

namespace {

struct Code {
    const char *text;
    u8 code;
};

constexpr const char *fcTexts[] = {"",   "MX", "ST", "CO", "CF", "DC", "SP", "SG", "RP", "LG",
                                   "BR", "GO", "GS", "SV", "SE", "MS", "SC", "US", "EX"};

constexpr Code cdcCodes[] = {
    {"SPS", CdcSPS},     {"DPS", CdcDPS}, {"INS", CdcINS}, {"ACT", CdcACT}, {"ACD", CdcACD},
    {"SEC", CdcSEC},     {"BCR", CdcBCR}, {"MV", CdcMV},   {"CMV", CdcCMV}, {"SAV", CdcSAV},
    {"WYE", CdcWYE},     {"DEL", CdcDEL}, {"SEQ", CdcSEQ}, {"HMV", CdcHMV}, {"HWYE", CdcHWYE},
    {"HDEL", CdcHDEL},   {"SPC", CdcSPC}, {"DPC", CdcDPC}, {"INC", CdcINC}, {"BSC", CdcBSC},
    {"ISC", CdcISC},     {"APC", CdcAPC}, {"SPG", CdcSPG}, {"ING", CdcING}, {"ASG", CdcASG},
    {"CURVE", CdcCURVE}, {"DPL", CdcDPL}, {"LPL", CdcLPL}, {"CSD", CdcCSD}, {"HST", CdcHST},
    {"ORG", CdcORG},     {"ENS", CdcENS}, {"ENG", CdcENG}, {"ENC", CdcENC},
};

constexpr Code typeCodes[] = {
    {"Struct", TypeInner},
    {"BOOLEAN", TypeBoolean},
    {"Dbpos", TypeDbpos},
    {"Check", TypeDbpos},
    {"Quality", TypeQuality},
    {"INT8", TypeInt8},
    {"INT16", TypeInt16},
    {"INT32", TypeInt32},
    {"INT128", TypeInt32},
    {"INT8U", TypeInt8U},
    {"INT16U", TypeInt16U},
    {"INT32U", TypeInt32U},
    {"FLOAT32", TypeFloat32},
    {"Octet6", TypeOctet6},
    {"Octet8", TypeOctet8},
    {"Octet64", TypeOctet64},
    {"VisString32", TypeVisString32},
    {"VisString64", TypeVisString64},
    {"VisString65", TypeVisString65},
    {"VisString255", TypeVisString255},
    {"Unicode255", TypeUnicode255},
    {"Timestamp", TypeTimestamp},
    {"Enum", TypeEnum},
};

template <std::size_t n> const Code *findCode(const Code (&codes)[n], const char *text) {
    for (const Code &row : codes) {
        if (text != nullptr && std::strcmp(row.text, text) == 0) {
            return &row;
        }
    }
    return nullptr;
}

} // namespace

u8 getFCType(const char *fc) {
    if (fc == nullptr) {
        return FcNone;
    }
    for (u8 code = FcMX; code <= FcEX; ++code) {
        if (std::strcmp(fcTexts[code], fc) == 0) {
            return code;
        }
    }
    return FcNone;
}

const char *fcText(u8 fc) {
    return fc <= FcEX ? fcTexts[fc] : "";
}

u8 getCDCType(const char *cdc) {
    const Code *row = findCode(cdcCodes, cdc);
    if (row != nullptr) {
        return row->code;
    }
    if (cdc == nullptr) {
        dbInfoRaw("%s : CDC type is NULL", "getCDCType");
    } else {
        dbInfoRaw("%s : UNknown CDC type %s ", "getCDCType", cdc);
    }
    taskExit(-1);
}

bool isCDC(const char *cdc) {
    return findCode(cdcCodes, cdc) != nullptr;
}

const char *cdcText(u8 cdc) {
    for (const Code &row : cdcCodes) {
        if (row.code == cdc) {
            return row.text;
        }
    }
    return "";
}

u8 getNodeType(const char *bType) {
    const Code *row = findCode(typeCodes, bType);
    if (row != nullptr) {
        return row->code;
    }
    std::fprintf(stderr, "%s : %s \r\n", "getNodeType", bType != nullptr ? bType : "");
    return TypeInner;
}

} // namespace ied
