// Logical devices with their logical nodes (IEC 61850-6 9.3.5, 9.3.6).
#include "model-gen/c/sclReader.h"
#include "model-gen/c/sclReaders.h"

namespace ied {

namespace {

constexpr const char *reader = "getLDeviceList";

constexpr AttrRow<scl::LDevice> deviceAttrs[] = {
    {"inst", &scl::LDevice::inst},
    {"desc", &scl::LDevice::desc},
};

// Private elements of a device whose text is kept, by the value of their first attribute.
constexpr AttrRow<scl::LDevice> devicePrivates[] = {
    {"iedVersion", &scl::LDevice::iedVersion},
    {"iedName", &scl::LDevice::iedName},
    {"protocolVersion", &scl::LDevice::protocolVersion},
};

constexpr AttrRow<scl::LN> lnAttrs[] = {
    {"desc", &scl::LN::desc}, {"lnType", &scl::LN::lnType}, {"lnClass", &scl::LN::lnClass},
    {"inst", &scl::LN::inst}, {"prefix", &scl::LN::prefix},
};

constexpr AttrRow<scl::LN> ln0Attrs[] = {
    {"lnClass", &scl::LN::lnClass},
    {"lnType", &scl::LN::lnType},
    {"inst", &scl::LN::inst},
    {"desc", &scl::LN::desc},
};

constexpr ChildRow<scl::LN> lnChildren[] = {
    {"DataSet", getDataSet},      {"ReportControl", getReportControl},
    {"LogControl", getLogContrl}, {"DOI", getDOI},
    {"Inputs", getInputs},        {"Private", nullptr},
};

constexpr AttrRow<scl::GSEControl> gseAttrs[] = {
    {"name", &scl::GSEControl::name},     {"desc", &scl::GSEControl::desc},
    {"datSet", &scl::GSEControl::datSet}, {"confRev", &scl::GSEControl::confRev},
    {"type", &scl::GSEControl::type},     {"appID", &scl::GSEControl::appID},
};

using SVC = scl::SampledValueControl;

constexpr AttrRow<SVC> sampledValueAttrs[] = {
    {"name", &SVC::name},       {"desc", &SVC::desc},       {"datSet", &SVC::datSet},
    {"confRev", &SVC::confRev}, {"smvID", &SVC::smvID},     {"multicast", &SVC::multicast},
    {"smpRate", &SVC::smpRate}, {"nofASDU", &SVC::nofASDU},
};

constexpr AttrRow<SVC> sampledValueOptions[] = {
    {"refreshTime", &SVC::refreshTime}, {"sampleSynchronized", &SVC::sampleSynchronized},
    {"sampleRate", &SVC::sampleRate},   {"security", &SVC::security},
    {"dataRef", &SVC::dataRef},
};

constexpr AttrRow<scl::SettingControl> settingAttrs[] = {
    {"desc", &scl::SettingControl::desc},
    {"numOfSGs", &scl::SettingControl::numOfSGs},
    {"actSG", &scl::SettingControl::actSG},
};

// Children of LN0 that belong to the device.
void getGSEControl(tree_node *node, scl::LDevice *device) {
    auto *gse = newRecord<&scl::GSEControl::link>(&device->gse, reader, "gMalloc for ln failed!\r\n");
    gse->line = node->line;
    readAttrs(node, gse, gseAttrs, reader);
}

void getSampledValueControl(tree_node *node, scl::LDevice *device) {
    readAttrs(node, &device->SampledValueControl, sampledValueAttrs, reader);
    if (node->child != nullptr) {
        readAttrs(node->child, &device->SampledValueControl, sampledValueOptions, reader);
    }
}

void getSettingControl(tree_node *node, scl::LDevice *device) {
    readAttrs(node, &device->SettingControl, settingAttrs, reader);
}

template <void (*read)(tree_node *, scl::LN *)> void inLN0(tree_node *node, scl::LDevice *device) {
    read(node, &device->LN0);
}

constexpr ChildRow<scl::LDevice> ln0Children[] = {
    {"DataSet", inLN0<getDataSet>},
    {"ReportControl", inLN0<getReportControl>},
    {"LogControl", inLN0<getLogContrl>},
    {"DOI", inLN0<getDOI>},
    {"Inputs", inLN0<getInputs>},
    {"GSEControl", getGSEControl},
    {"SampledValueControl", getSampledValueControl},
    {"SettingControl", getSettingControl},
    {"Private", nullptr},
};

void getDevicePrivate(tree_node *node, scl::LDevice *device) {
    const char *kind = firstAttrValue(node);
    for (const AttrRow<scl::LDevice> &row : devicePrivates) {
        if (kind != nullptr && sameText(kind, row.name)) {
            device->*row.field = node->data;
            return;
        }
    }
    ignoreMessage(reader, node);
}

void getLN(tree_node *node, scl::LDevice *device) {
    auto *ln = newRecord<&scl::LN::link>(&device->lns, reader, "gMalloc for ln failed!\r\n");
    ln->line = node->line;
    readAttrs(node, ln, lnAttrs, reader);
    readChildren(node, ln, lnChildren, reader);
}

void getLN0(tree_node *node, scl::LDevice *device) {
    device->LN0.line = node->line;
    readAttrs(node, &device->LN0, ln0Attrs, reader);
    readChildren(node, device, ln0Children, reader);
}

constexpr ChildRow<scl::LDevice> deviceChildren[] = {
    {"Private", getDevicePrivate},
    {"LN", getLN},
    {"LN0", getLN0},
};

} // namespace

void getLDeviceList(tree_node *node) {
    if (node == nullptr || !isEl(node, "LDevice")) {
        return;
    }
    auto *device = newRecord<&scl::LDevice::link>(&LDeviceHead, reader, "gMalloc for dev failed!\r\n");
    device->line = node->line;
    readAttrs(node, device, deviceAttrs, reader);
    readChildren(node, device, deviceChildren, reader);
}

} // namespace ied
