// The configuration lists: data sets, report and log control blocks of all devices, every
// reference composed from the names that the tree has.
#include "model-gen/c/modelConfig.h"

#include "model-gen/c/modelBuild.h"
#include "model-gen/c/sclReader.h"

#include <cstring>
#include <initializer_list>

namespace ied {

TailedList PreDefDsHead;
TailedList ReportCfgHead;
TailedList LCBHead;

namespace {

// The pieces one behind the other in the pool; null pieces are empty.
char *poolJoin(std::initializer_list<const char *> pieces, const char *funcName, const char *ifNull) {
    std::size_t length = 1;
    for (const char *piece : pieces) {
        length += piece != nullptr ? std::strlen(piece) : 0;
    }
    char *text = static_cast<char *>(sclAlloc(length, funcName, ifNull));
    char *end = text;
    for (const char *piece : pieces) {
        if (piece != nullptr) {
            end = stpcpy(end, piece);
        }
    }
    return text;
}

void dotsToDollars(char *text) {
    for (; text != nullptr && *text != '\0'; ++text) {
        if (*text == '.') {
            *text = '$';
        }
    }
}

// Where a control block or data set stands: the names of its device and logical node.
struct Place {
    NodeName ld;
    NodeName ln;
};

Place placeOf(const scl::LDevice *device, const scl::LN *ln) {
    return {ldName(device->inst), lnName(ln)};
}

void addMember(PreDefDs *entry, scl::FCDA *fcda) {
    dotsToDollars(fcda->doName);
    dotsToDollars(fcda->daName);
    const bool hasDa = isGiven(fcda->daName);
    auto *member =
        newRecord<&PreDefDsMember::link>(&entry->members, "_modelGetDS", "gMalloc for dsMember failed!\r\n");
    member->name =
        poolJoin({ldName(fcda->ldInst).text, "/", joinName({fcda->prefix, fcda->lnClass, fcda->lnInst}).text,
                  "$", fcda->fc, "$", fcda->doName, hasDa ? "$" : nullptr, hasDa ? fcda->daName : nullptr},
                 "_modelGetDS", "gMalloc for member failed!\r\n");
}

void _modelGetDS(const scl::LDevice *device, const scl::LN *ln, scl::DataSet *dataSet) {
    const Place place = placeOf(device, ln);
    auto *entry =
        newRecord<&PreDefDs::link>(&PreDefDsHead, "_modelGetDS", "gMalloc for PreDefDs failed!\r\n");
    entry->line = dataSet->line;
    entry->ldName = poolJoin({place.ld.text}, "_modelGetDS", "gMalloc for domain failed!\r\n");
    entry->itemName =
        poolJoin({place.ln.text, "$", dataSet->name}, "_modelGetDS", "gMalloc for item failed!\r\n");
    for (scl::FCDA &fcda : records<&scl::FCDA::link>(dataSet->members)) {
        addMember(entry, &fcda);
    }
}

void addReport(const Place &place, const scl::ReportControl *report, int instance, int count) {
    constexpr const char *func = "_modelGetRP";
    auto *entry = newRecord<&ReportCfg::link>(&ReportCfgHead, func, "gMalloc for ReportCfg failed!\r\n");
    entry->line = report->line;
    entry->buffered = isTrue(report->buffered);
    entry->name = poolJoin({place.ld.text, "/", place.ln.text, "$", entry->buffered ? "BR" : "RP", "$",
                            blockName(report->name, instance, count).text},
                           func, "gMalloc for name failed!\r\n");
    char digits[12] = "";
    if (count > 1) {
        std::snprintf(digits, sizeof digits, "%02d", instance);
    }
    if (isGiven(report->rptID)) {
        entry->rtpID = poolJoin({report->rptID, digits}, func, "gMalloc for rtpID failed!\r\n");
    }
    if (isGiven(report->datSet)) {
        entry->dsName = poolJoin({place.ld.text, "/", place.ln.text, "$", report->datSet}, func,
                                 "gMalloc for dsName failed!\r\n");
    }
    entry->trgOps = getTrgTrgOps(&report->TrgOps);
    entry->optFlds = getOptFields(report);
    entry->bufTm = decimalU32(report->bufTime);
    entry->intgPd = decimalU32(report->intgPd);
    entry->confRev = decimalU32(report->confRev);
}

void _modelGetRP(const scl::LDevice *device, const scl::LN *ln, scl::ReportControl *report) {
    const Place place = placeOf(device, ln);
    const int count = reportInstances(report, place.ln.text);
    for (int i = 1; i <= count; ++i) {
        addReport(place, report, i, count);
    }
}

void _modelGetLCB(const scl::LDevice *device, const scl::LN *ln, scl::LogControl *log) {
    constexpr const char *func = "_modelGetLCB";
    const Place place = placeOf(device, ln);
    auto *entry = newRecord<&LCBCfg::link>(&LCBHead, func, "gMalloc for LCB failed!\r\n");
    entry->line = log->line;
    entry->name = poolJoin({place.ld.text, "/", place.ln.text, "$", "LG", "$", joinName({log->name}).text},
                           func, "gMalloc for name failed!\r\n");
    entry->datSet = poolJoin({place.ld.text, "/", place.ln.text, "$", log->datSet}, func,
                             "gMalloc for datSet failed!\r\n");
    if (log->logName != nullptr) {
        entry->logName = poolJoin({log->logName}, func, "gMalloc for logName failed!\r\n");
    }
    entry->intgPd = decimalU32(log->intgPd);
    entry->logEna = isTrue(log->logEna);
    entry->reasonCode = isTrue(log->reasonCode);
    entry->period = isTrue(log->TrgOps.period);
    entry->trgOps = getTrgTrgOps(&log->TrgOps);
}

// Every record of one kind of a device: those of LN0 first, then those of the logical nodes.
template <auto list, auto link, class Get> void forEachRecord(scl::LDevice *device, Get get) {
    for (auto &record : records<link>(device->LN0.*list)) {
        get(device, &device->LN0, &record);
    }
    for (scl::LN &ln : records<&scl::LN::link>(device->lns)) {
        for (auto &record : records<link>(ln.*list)) {
            get(device, &ln, &record);
        }
    }
}

template <class T, class Bits> struct BitRow {
    char *T::*attribute;
    Bits bit;
};

using RC = scl::ReportControl;
using Trg = scl::TrgOps;

constexpr BitRow<Trg, u8> triggerBits[] = {
    {&Trg::dchg, TrgDchg},     {&Trg::qchg, TrgQchg}, {&Trg::dupd, TrgDupd},
    {&Trg::period, TrgPeriod}, {&Trg::gi, TrgGi},
};

constexpr BitRow<RC, u16> optionBits[] = {
    {&RC::seqNum, OptSeqNum},   {&RC::timeStamp, OptTimeStamp}, {&RC::reasonCode, OptReason},
    {&RC::dataSet, OptDataSet}, {&RC::dataRef, OptDataRef},     {&RC::bufOvfl, OptBufOvfl},
    {&RC::entryID, OptEntryID}, {&RC::configRef, OptConfRev},   {&RC::segmentation, OptSegmentation},
};

template <class T, class Bits, std::size_t n>
Bits collectBits(const T *record, const BitRow<T, Bits> (&rows)[n]) {
    Bits bits = 0;
    for (const BitRow<T, Bits> &row : rows) {
        if (isTrue(record->*row.attribute)) {
            bits = static_cast<Bits>(bits | row.bit);
        }
    }
    return bits;
}

} // namespace

u8 getTrgTrgOps(const scl::TrgOps *triggers) {
    return collectBits(triggers, triggerBits);
}

u16 getOptFields(const scl::ReportControl *report) {
    return collectBits(report, optionBits);
}

void modelGetDS(scl::LDevice *device) {
    forEachRecord<&scl::LN::dataSets, &scl::DataSet::link>(device, _modelGetDS);
}

void modelGetRP(scl::LDevice *device) {
    forEachRecord<&scl::LN::reportControls, &scl::ReportControl::link>(device, _modelGetRP);
}

void modelGetLCB(scl::LDevice *device) {
    forEachRecord<&scl::LN::logControls, &scl::LogControl::link>(device, _modelGetLCB);
}

} // namespace ied
