// What the file says the IED can do (IEC 61850-6 9.3.3, Services).
#include "model-gen/c/sclReader.h"
#include "model-gen/c/sclReaders.h"

namespace ied {

namespace {

using S = scl::Services;

struct FlagRow {
    const char *name;
    u8 S::*flag;
};

constexpr FlagRow flags[] = {
    {"DynAssociation", &S::DynAssociation},
    {"SettingGroups", &S::SettingGroups},
    {"SGEdit", &S::SGEdit},
    {"ConfSG", &S::ConfSG},
    {"GetDirectory", &S::GetDirectory},
    {"GetDataObjectDefinition", &S::GetDataObjectDefinition},
    {"DataObjectDirectory", &S::DataObjectDirectory},
    {"GetDataSetValue", &S::GetDataSetValue},
    {"SetDataSetValue", &S::SetDataSetValue},
    {"DataSetDirectory", &S::DataSetDirectory},
    {"ReadWrite", &S::ReadWrite},
    {"TimerActivatedControl", &S::TimerActivatedControl},
    {"GetCBValues", &S::GetCBValues},
    {"GSEDir", &S::GSEDir},
    {"FileHandling", &S::FileHandling},
};

constexpr AttrRow<scl::ConfDataSet> confDataSetAttrs[] = {
    {"max", &scl::ConfDataSet::max},
    {"maxAttributes", &scl::ConfDataSet::maxAttributes},
    {"modify", &scl::ConfDataSet::modify},
};
constexpr AttrRow<scl::DynDataSet> dynDataSetAttrs[] = {
    {"max", &scl::DynDataSet::max},
    {"maxAttributes", &scl::DynDataSet::maxAttributes},
};
constexpr AttrRow<scl::MaxOnly> maxAttrs[] = {{"max", &scl::MaxOnly::max}};
constexpr AttrRow<scl::ReportSettings> reportSettingsAttrs[] = {
    {"cbName", &scl::ReportSettings::cbName},   {"datSet", &scl::ReportSettings::datSet},
    {"rptID", &scl::ReportSettings::rptID},     {"optFields", &scl::ReportSettings::optFields},
    {"bufTime", &scl::ReportSettings::bufTime}, {"trgOps", &scl::ReportSettings::trgOps},
    {"intgPd", &scl::ReportSettings::intgPd},
};
constexpr AttrRow<scl::LogSettings> logSettingsAttrs[] = {
    {"cbName", &scl::LogSettings::cbName}, {"datSet", &scl::LogSettings::datSet},
    {"logEna", &scl::LogSettings::logEna}, {"trgOps", &scl::LogSettings::trgOps},
    {"intgPd", &scl::LogSettings::intgPd},
};
constexpr AttrRow<scl::GSESettings> gseSettingsAttrs[] = {
    {"cbName", &scl::GSESettings::cbName},
    {"datSet", &scl::GSESettings::datSet},
    {"appID", &scl::GSESettings::appID},
    {"dataLabel", &scl::GSESettings::dataLabel},
};
constexpr AttrRow<scl::SMVSettings> smvSettingsAttrs[] = {
    {"cbName", &scl::SMVSettings::cbName},     {"datSet", &scl::SMVSettings::datSet},
    {"svID", &scl::SMVSettings::svID},         {"optFields", &scl::SMVSettings::optFields},
    {"sampRate", &scl::SMVSettings::sampRate},
};
constexpr AttrRow<scl::ConfLNs> confLNsAttrs[] = {
    {"fixPrefix", &scl::ConfLNs::fixPrefix},
    {"fixLnInst", &scl::ConfLNs::fixLnInst},
};

// An element whose attributes are kept in a record of its own.
struct RecordRow {
    const char *name;
    const char *ifNull;
    void (*read)(const tree_node *node, S *services, const char *ifNull);
};

template <auto field, const auto &attrs>
void readRecord(const tree_node *node, S *services, const char *ifNull) {
    auto &record = services->*field;
    using T = std::remove_pointer_t<std::remove_reference_t<decltype(record)>>;
    record = static_cast<T *>(sclAlloc(sizeof(T), "getServices", ifNull));
    readAttrs(node, record, attrs, "getServices");
}

constexpr RecordRow recordRows[] = {
    {"ConfDataSet", "gMalloc for ConfDataSet failed!\r\n", readRecord<&S::ConfDataSet, confDataSetAttrs>},
    {"DynDataSet", "gMalloc for DynDataSet failed!\r\n", readRecord<&S::DynDataSet, dynDataSetAttrs>},
    {"ConfReportControl", "gMalloc for ConfReportControl failed!\r\n",
     readRecord<&S::ConfReportControl, maxAttrs>},
    {"ConfLogControl", "gMalloc for ConfLogControl failed!\r\n", readRecord<&S::ConfLogControl, maxAttrs>},
    {"ReportSettings", "gMalloc for ReportSettings failed!\r\n",
     readRecord<&S::ReportSettings, reportSettingsAttrs>},
    {"LogSettings", "gMalloc for LogSetting failed!\r\n", readRecord<&S::LogSettings, logSettingsAttrs>},
    {"GSESettings", "gMalloc for GSESettings failed!\r\n", readRecord<&S::GSESettings, gseSettingsAttrs>},
    {"SMVSettings", "gMalloc for SMVSetting failed!\r\n", readRecord<&S::SMVSettings, smvSettingsAttrs>},
    {"ConfLNs", "gMalloc for ConfLNs failed!\r\n", readRecord<&S::ConfLNs, confLNsAttrs>},
    {"GOOSE", "gMalloc for GOOSE failed!\r\n", readRecord<&S::GOOSE, maxAttrs>},
    {"GSSE", "gMalloc for GSSE failed!\r\n", readRecord<&S::GSSE, maxAttrs>},
};

bool getFlag(const tree_node *node, S *services) {
    for (const FlagRow &row : flags) {
        if (isEl(node, row.name)) {
            services->*row.flag = 1;
            return true;
        }
    }
    return false;
}

bool getRecord(const tree_node *node, S *services) {
    for (const RecordRow &row : recordRows) {
        if (isEl(node, row.name)) {
            row.read(node, services, row.ifNull);
            return true;
        }
    }
    return false;
}

} // namespace

void getServices(tree_node *node, scl::Services *services) {
    for (const tree_node *child = node->child; child != nullptr; child = child->sibling) {
        if (getFlag(child, services) || getRecord(child, services)) {
            continue;
        }
        if (isEl(child, "Private")) {
            ignoreMessage("getServices", child);
        } else {
            unknownEl("getServices", child);
        }
    }
}

} // namespace ied
