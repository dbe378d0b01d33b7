#include "tests/support/smallModel.h"

#include "asn1/mmsCodec.h"
#include "basicInterface/memory.h"
#include "basicInterface/simpleData.h"
#include "device/externGlbCfg.h"
#include "tests/support/hex.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace ied::test {

const std::vector<const char *> typedLeaves = {
    "boolean",     "dbpos",        "bits5",      "trgOps",    "optFlds",     "quality",
    "int8",        "int16",        "int32",      "int8u",     "int16u",      "int32u",
    "float32",     "octet6",       "octet8",     "octet64",   "visString32", "visString64",
    "visString65", "visString255", "unicode255", "timestamp", "entryTime",   "enumeration"};

namespace {

std::mutex caughtMutex;
std::vector<std::string> caught;

void catchLine(const char *line) {
    const std::lock_guard lock(caughtMutex);
    caught.emplace_back(line);
}

// Address of the place that belongs to a row of typedLeaves, in its order.
void *placeOf(EveryType &every, u8 type) {
    void *const places[] = {
        &every.boolean,    &every.dbpos,       &every.bits5,       &every.trgOps,      &every.optFlds,
        &every.quality,    &every.int8,        &every.int16,       &every.int32,       &every.int8u,
        &every.int16u,     &every.int32u,      &every.float32,     &every.octet6,      &every.octet8,
        &every.octet64,    &every.visString32, &every.visString64, &every.visString65, &every.visString255,
        &every.unicode255, &every.timestamp,   &every.entryTime,   &every.enumeration,
    };
    return places[type - TypeBoolean];
}

} // namespace

SmallModel::SmallModel() {
    externGlbCfgInit();
    isWordAlign = 1;
    lds = {};
    lds.nodeType = TypeInner;
    GenNode *meas = add(&lds, "Meas", LevelLD, TypeInner);
    GenNode *tiny = add(&lds, "Tiny", LevelLD, TypeInner);
    buildMeasurements(meas);
    buildLoose(tiny);
    buildSettings(tiny);
}

SmallModel::~SmallModel() {
    for (GenNode *ld = getFirstLd(); ld != nullptr; ld = ld->sibling) {
        auto *list = static_cast<AsnList *>(ld->data);
        for (AsnListElement *e = list == nullptr ? nullptr : list->first; e != nullptr; e = e->next) {
            freeDataSet(asnListValue<DataSet>(e));
        }
        AsnListFree(list);
    }
    lds = {};
}

DataSet *SmallModel::dataSet(const std::string &reference, const std::vector<std::string> &members) {
    const VariableList list(members);
    const std::size_t slash = reference.find('/');
    createDynDs(Name(reference.substr(0, slash), reference.substr(slash + 1)), list.list);
    DataSet *found = nullptr;
    searchDsByStr(reference.c_str(), &found);
    return found;
}

GenNode *SmallModel::add(GenNode *parent, const char *name, u8 level, u8 type, void *data) {
    GenNode *made = nodes.emplace_back(std::make_unique<GenNode>()).get();
    *made = {};
    std::snprintf(made->name, sizeof made->name, "%s", name);
    made->level = level;
    made->nodeType = type;
    made->fc = level == LevelFC ? getFCType(name) : parent->fc;
    made->data = data;
    made->parent = parent;
    GenNode **end = &parent->child;
    while (*end != nullptr) {
        end = &(*end)->sibling;
    }
    *end = made;
    return made;
}

GenNode *SmallModel::leaf(GenNode *parent, const char *name, u8 type, void *data) {
    return add(parent, name, LevelLeaf, type, data);
}

GenNode *SmallModel::node(const std::string &reference) const {
    GenNode *found = &lds;
    for (std::string rest = reference; found != nullptr && !rest.empty();) {
        const std::size_t end = rest.find_first_of("/$");
        found = childByName(found, rest.substr(0, end).c_str());
        rest = end == std::string::npos ? "" : rest.substr(end + 1);
    }
    if (found == nullptr) {
        std::fprintf(stderr, "the small model has no %s\n", reference.c_str());
        std::abort();
    }
    return found;
}

void SmallModel::buildMeasurements(GenNode *ld) {
    harmonics.har[PhsA] = phaseA;
    harmonics.har[PhsB] = phaseB;
    harmonics.numHar = 5;
    unboundArrays.numHar = 2;
    GenNode *ln = add(ld, "MHAI1", LevelLN, TypeInner);
    GenNode *mx = add(ln, "MX", LevelFC, TypeInner);
    GenNode *power1 = add(mx, "TotW", LevelDO, CdcMV, &power);
    leaf(add(power1, "mag", LevelInner, TypeInner), "f", TypeFloat32, &power.mag);
    leaf(power1, "q", TypeQuality, &power.q);
    leaf(power1, "t", TypeTimestamp, &power.t);
    GenNode *har = add(mx, "HPhV", LevelDO, CdcHWYE, &harmonics);
    GenNode *a = leaf(har, "phsAHar", TypeArrayVec, &harmonics.har[PhsA]);
    leaf(add(a, "mag", LevelInner, TypeInner), "f", TypeFloat32);
    leaf(add(a, "ang", LevelInner, TypeInner), "f", TypeFloat32);
    GenNode *b = leaf(har, "phsBHar", TypeArrayVec, &harmonics.har[PhsB]);
    leaf(add(b, "mag", LevelInner, TypeInner), "f", TypeFloat32);
    leaf(har, "q", TypeQuality, &harmonics.q);
    GenNode *empty = add(mx, "HA", LevelDO, CdcHWYE, &unboundArrays);
    GenNode *e = leaf(empty, "phsAHar", TypeArrayVec, &unboundArrays.har[PhsA]);
    leaf(add(e, "mag", LevelInner, TypeInner), "f", TypeFloat32);
    leaf(empty, "phsBHar", TypeArrayVec);
    GenNode *cf = add(ln, "CF", LevelFC, TypeInner);
    leaf(add(cf, "TotW", LevelDO, CdcMV, &power), "db", TypeInt32U, &power.db);
    leaf(node("Meas/MHAI1$CF$TotW"), "smpRate", TypeInt32U, &harmonics.smpRate);
    buildHistogram(add(ld, "MSTA1", LevelLN, TypeInner));
}

void SmallModel::buildHistogram(GenNode *ln) {
    histogram.hstVal = counts;
    histogram.hstRangeC = cells;
    histogram.numPts = 3;
    GenNode *st = add(add(ln, "ST", LevelFC, TypeInner), "Hst", LevelDO, CdcHST, &histogram);
    leaf(st, "hstVal", TypeArray, &histogram.hstVal)->origType = TypeInt32;
    leaf(st, "q", TypeQuality, &histogram.q);
    GenNode *cf = add(add(ln, "CF", LevelFC, TypeInner), "Hst", LevelDO, CdcHST, &histogram);
    GenNode *range = leaf(cf, "hstRangeC", TypeArray, &histogram.hstRangeC);
    for (const char *name : {"xStart", "xEnd", "other", "yStart", "yEnd"}) {
        leaf(range, name, TypeFloat32);
    }
}

void SmallModel::buildLoose(GenNode *ld) {
    GenNode *ln = add(ld, "GGIO1", LevelLN, TypeInner);
    GenNode *st = add(ln, "ST", LevelFC, TypeInner);
    GenNode *all = add(st, "All", LevelDO, CdcSPS);
    GenNode *none = add(st, "None", LevelDO, CdcSPS);
    u8 type = TypeBoolean;
    for (const char *name : typedLeaves) {
        leaf(all, name, type, placeOf(every, type));
        leaf(none, name, type++);
    }
    GenNode *single = add(st, "Ind1", LevelDO, CdcSPS, &ind);
    leaf(single, "stVal", TypeBoolean, &ind.stVal);
    leaf(single, "q", TypeQuality, &ind.q);
    leaf(single, "t", TypeTimestamp, &ind.t);
    leaf(add(st, "Word", LevelDO, CdcINS), "stVal", TypeEnum, &enum32);
    GenNode *nest = add(add(st, "Deep", LevelDO, CdcSPS), "a", LevelInner, TypeInner);
    GenNode *inner = add(nest, "b", LevelInner, TypeInner);
    leaf(inner, "c", TypeBoolean, &every.boolean);
    leaf(add(inner, "d", LevelInner, TypeInner), "e", TypeInt8, &every.int8);
    leaf(node("Tiny/GGIO1$ST$Deep"), "z", TypeInt16U, &every.int16u);
    GenNode *control = add(add(ln, "CO", LevelFC, TypeInner), "Ctl", LevelDO, CdcSPC);
    leaf(add(control, "Oper", LevelInner, TypeInner), "Check", TypeDbpos, &every.dbpos);
}

void SmallModel::buildSettings(GenNode *ld) {
    for (const char *lnName : {"LLN0", "GGIO2"}) {
        GenNode *ln = add(ld, lnName, LevelLN, TypeInner);
        GenNode *sp = add(ln, "SP", LevelFC, TypeInner);
        leaf(add(sp, "Int", LevelDO, CdcING, &integerSetting), "setVal", TypeInt32,
             &integerSetting.setVal[SetSP]);
        leaf(add(sp, "Enm", LevelDO, CdcENG, &enumSetting), "setVal", TypeEnum, &enumSetting.setVal[SetSP]);
        GenNode *analogue = add(sp, "Flt", LevelDO, CdcASG, &floatSetting);
        leaf(add(analogue, "setMag", LevelInner, TypeInner), "f", TypeFloat32, &floatSetting.setMag[SetSP]);
        leaf(add(sp, "Crv", LevelDO, CdcCURVE, &curve), "setCharact", TypeEnum, &curve.setVal[SetSP]);
        leaf(add(sp, "Loose", LevelDO, CdcSPG), "setVal", TypeBoolean, &every.boolean);
    }
}

AsnOcts octsOver(const std::string &text) {
    return {static_cast<u32>(text.size()), reinterpret_cast<u8 *>(const_cast<char *>(text.data()))};
}

Name::Name(std::string domainText, std::string itemText)
    : domain(std::move(domainText)),
      item(std::move(itemText)), parts{octsOver(domain), octsOver(item)}, name{} {
    name.choiceId = ObjectName::domainSpecific;
    name.domain_specific = &parts;
}

VariableList::VariableList(const std::vector<std::string> &references)
    : variableAccess{}, list(asnListNewPtr()) {
    variableAccess.choiceId = VariableAccessSpecification::listOfVariable;
    variableAccess.listOfVariable_ = list;
    for (const std::string &reference : references) {
        auto *variable = MallocOf<VariableSpecification>();
        asnListPush(list, MallocOf<VariableAccessSpecificationSeqOfSeq>())->variableSpecification = variable;
        const std::size_t slash = reference.find('/');
        variable->choiceId = slash == std::string::npos ? u32{VariableSpecification::invalidated}
                                                        : u32{VariableSpecification::name};
        if (slash == std::string::npos) {
            continue;
        }
        variable->name_ = MallocOf<ObjectName>();
        objectNameFromStr(variable->name_, reference.substr(0, slash).c_str(),
                          reference.substr(slash + 1).c_str());
    }
}

VariableList::~VariableList() {
    FreeVariableAccessSpecification(&variableAccess);
}

namespace {

std::string showOcts(const char *label, const AsnOcts *octs, bool asText) {
    if (octs == nullptr || octs->octs == nullptr) {
        return "nothing";
    }
    return std::string(label) + (asText ? std::string(reinterpret_cast<char *>(octs->octs), octs->octetLen)
                                        : hexText({octs->octs, octs->octetLen}));
}

std::string showVectors(const DataArrayVec &vec) {
    std::string text = "vectors " + std::to_string(vec.count);
    for (const auto &[label, octs] : {std::pair{" mag(", vec.mag}, std::pair{" ang(", vec.ang}}) {
        text += label;
        for (u32 i = 0; octs != nullptr && i < vec.count; ++i) {
            text += (i == 0 ? "" : ", ") + hexText({octs[i].octs, octs[i].octetLen});
        }
        text += octs == nullptr ? "-)" : ")";
    }
    return text;
}

std::string showList(const char *label, const AsnList *list) {
    if (list == nullptr) {
        return "nothing";
    }
    std::string text = label;
    for (const AsnListElement *element = list->first; element != nullptr; element = element->next) {
        text += (element == list->first ? "" : ", ") + show(asnListValue<Data>(element));
    }
    return text + ")";
}

} // namespace

std::string show(const Data *data) {
    switch (data->choiceId) {
    case Data::array:
        return showList("array(", data->list);
    case Data::structure:
        return showList("struct(", data->list);
    case Data::boolean:
        return "bool " + std::to_string(data->bool_);
    case Data::bitString:
        return "bits " + std::to_string(data->bits->bitLen) + ":" +
               hexText({data->bits->bits, (data->bits->bitLen + 7) / 8});
    case Data::integer:
        return "int " + std::to_string(data->int_);
    case Data::unsignedInt:
        return "uint " + std::to_string(data->uint_);
    case Data::floatingPoint:
        return showOcts("float ", data->octs, false);
    case Data::octetString:
        return showOcts("octets ", data->octs, false);
    case Data::visibleString:
        return showOcts("visible ", data->octs, true);
    case Data::binaryTime:
        return showOcts("btime ", data->octs, false);
    case Data::mMSString:
        return showOcts("mms ", data->octs, true);
    case Data::utcTime:
        return showOcts("utc ", data->octs, false);
    case Data::arrayVec:
        return showVectors(*data->vec);
    default:
        return "kind " + std::to_string(data->choiceId);
    }
}

HeapData::~HeapData() {
    FreeData(&data);
}

Data *heapData(u32 kind, const std::string &octets) {
    auto *data = MallocOf<Data>();
    data->choiceId = kind;
    data->octs = MallocOf<AsnOcts>();
    const AsnOcts source = octsOver(octets);
    octsCopy(data->octs, &source);
    return data;
}

Data *heapBits(u32 bitLen, const std::string &octets) {
    auto *data = MallocOf<Data>();
    data->choiceId = Data::bitString;
    data->bits = MallocOf<AsnBits>();
    data->bits->bitLen = bitLen;
    data->bits->bits = static_cast<u8 *>(Malloc(octets.size() + 1));
    std::memcpy(data->bits->bits, octets.data(), octets.size());
    return data;
}

Data *heapNumber(u32 kind, u32 value) {
    auto *data = MallocOf<Data>();
    data->choiceId = kind;
    if (kind == Data::boolean) {
        data->bool_ = static_cast<AsnBool>(value);
    } else {
        data->uint_ = value;
    }
    return data;
}

Data *heapList(u32 kind, const std::vector<Data *> &members) {
    auto *data = MallocOf<Data>();
    data->choiceId = kind;
    data->list = asnListNewPtr();
    for (Data *member : members) {
        asnListPush(data->list, member);
    }
    return data;
}

void freeHeap(Data *data) {
    FreeData(data);
    Free(data);
}

LogLines::LogLines() {
    caught.clear();
    externGlbCfg.dbDest = 1;
    std::fill(std::begin(externGlbCfg.dbLevel), std::end(externGlbCfg.dbLevel), u8{5});
    externGlbCfg.dbHook = catchLine;
}

LogLines::~LogLines() {
    externGlbCfg.dbHook = nullptr;
    externGlbCfg.dbDest = 0;
}

int LogLines::count(const std::string &category, const std::string &level, const std::string &function,
                    const std::string &text) {
    const std::string begin = "[" + category + "][" + level + "]";
    const std::string end = "[" + function + "][" + text + "]\r\n";
    const std::lock_guard lock(caughtMutex);
    return static_cast<int>(std::count_if(caught.begin(), caught.end(), [&](const std::string &line) {
        return line.find(begin) != std::string::npos && line.size() >= end.size() &&
               line.compare(line.size() - end.size(), end.size(), end) == 0;
    }));
}

std::vector<std::string> LogLines::lines() {
    const std::lock_guard lock(caughtMutex);
    return caught;
}

} // namespace ied::test
