// Data sets, report and log control blocks and inputs of a logical node (IEC 61850-6 9.3.7 to
// 9.3.13).
#include "model-gen/c/sclReader.h"
#include "model-gen/c/sclReaders.h"

namespace ied {

namespace {

constexpr AttrRow<scl::DataSet> dataSetAttrs[] = {
    {"name", &scl::DataSet::name},
    {"desc", &scl::DataSet::desc},
};

constexpr AttrRow<scl::FCDA> fcdaAttrs[] = {
    {"ldInst", &scl::FCDA::ldInst}, {"prefix", &scl::FCDA::prefix}, {"lnClass", &scl::FCDA::lnClass},
    {"lnInst", &scl::FCDA::lnInst}, {"doName", &scl::FCDA::doName}, {"daName", &scl::FCDA::daName},
    {"fc", &scl::FCDA::fc},
};

void getFCDA(tree_node *node, scl::DataSet *dataSet) {
    readAttrs(node,
              newRecord<&scl::FCDA::link>(&dataSet->members, "getDataSet", "gMalloc for FCDA failed!\r\n"),
              fcdaAttrs, "getDataSet");
}

constexpr ChildRow<scl::DataSet> dataSetChildren[] = {
    {"FCDA", getFCDA},
    {"Private", nullptr},
};

using RC = scl::ReportControl;

constexpr AttrRow<RC> reportAttrs[] = {
    {"name", &RC::name},   {"desc", &RC::desc},       {"datSet", &RC::datSet},     {"intgPd", &RC::intgPd},
    {"rptID", &RC::rptID}, {"confRev", &RC::confRev}, {"buffered", &RC::buffered}, {"bufTime", &RC::bufTime},
};

constexpr AttrRow<scl::TrgOps> triggerAttrs[] = {
    {"dchg", &scl::TrgOps::dchg},     {"qchg", &scl::TrgOps::qchg}, {"dupd", &scl::TrgOps::dupd},
    {"period", &scl::TrgOps::period}, {"gi", &scl::TrgOps::gi},
};
constexpr std::span reportTriggers(triggerAttrs);
constexpr std::span logTriggers = reportTriggers.first<4>(); // all but gi

constexpr AttrRow<RC> reportOptions[] = {
    {"seqNum", &RC::seqNum},         {"timeStamp", &RC::timeStamp}, {"dataSet", &RC::dataSet},
    {"reasonCode", &RC::reasonCode}, {"dataRef", &RC::dataRef},     {"bufOvfl", &RC::bufOvfl},
    {"entryID", &RC::entryID},       {"configRef", &RC::configRef}, {"segmentation", &RC::segmentation},
};

constexpr AttrRow<RC> reportEnabled[] = {
    {"desc", &RC::enabledDesc},
    {"max", &RC::max},
};

void getReportTriggers(tree_node *node, RC *report) {
    readAttrs(node, &report->TrgOps, reportTriggers, "getReportControl");
}

template <const auto &attrs> void getReportAttrs(tree_node *node, RC *report) {
    readAttrs(node, report, attrs, "getReportControl");
}

constexpr ChildRow<RC> reportChildren[] = {
    {"TrgOps", getReportTriggers},
    {"OptFields", getReportAttrs<reportOptions>},
    {"RptEnabled", getReportAttrs<reportEnabled>},
    {"Private", nullptr},
};

using LC = scl::LogControl;

constexpr AttrRow<LC> logAttrs[] = {
    {"name", &LC::name},
    {"desc", &LC::desc},
    {"datSet", &LC::datSet},
    {"intgPd", &LC::intgPd},
    {"logName", &LC::logName},
    {"logEna", &LC::logEna},
    {"reasonCode", &LC::reasonCode},
};

// Inputs and ExtRef carry the same eight attributes.
template <class T>
constexpr AttrRow<T> referenceAttrs[] = {
    {"iedName", &T::iedName}, {"ldInst", &T::ldInst}, {"prefix", &T::prefix}, {"lnClass", &T::lnClass},
    {"lnInst", &T::lnInst},   {"doName", &T::doName}, {"daName", &T::daName}, {"intAddr", &T::intAddr},
};

} // namespace

void getDataSet(tree_node *node, scl::LN *ln) {
    auto *dataSet =
        newRecord<&scl::DataSet::link>(&ln->dataSets, "getDataSet", "gMalloc for DataSet failed!\r\n");
    dataSet->line = node->line;
    readAttrs(node, dataSet, dataSetAttrs, "getDataSet");
    readChildren(node, dataSet, dataSetChildren, "getDataSet");
}

void getReportControl(tree_node *node, scl::LN *ln) {
    auto *report = newRecord<&RC::link>(&ln->reportControls, "getReportControl",
                                        "gMalloc for ReportControl failed!\r\n");
    report->line = node->line;
    readAttrs(node, report, reportAttrs, "getReportControl");
    readChildren(node, report, reportChildren, "getReportControl");
}

void getLogContrl(tree_node *node, scl::LN *ln) {
    auto *log = newRecord<&LC::link>(&ln->logControls, "getLogContrl", "gMalloc for LogControl failed!\r\n");
    log->line = node->line;
    readAttrs(node, log, logAttrs, "getLogContrl");
    const tree_node *first = node->child;
    if (first == nullptr) {
        return;
    }
    if (isEl(first, "TrgOps")) {
        readAttrs(first, &log->TrgOps, logTriggers, "getLogContrl");
    } else {
        unknownEl("getLogContrl", first);
    }
}

void getInputs(tree_node *node, scl::LN *ln) {
    auto *inputs = newRecord<&scl::Inputs::link>(&ln->inputs, "getInputs", "gMalloc for Inputs failed!\r\n");
    readAttrs(node, inputs, referenceAttrs<scl::Inputs>, "getInputs");
    for (const tree_node *child = node->child; child != nullptr; child = child->sibling) {
        if (!isEl(child, "ExtRef")) {
            unknownEl("getInputs", child);
            return;
        }
        readAttrs(
            child,
            newRecord<&scl::ExtRef::link>(&inputs->extRefs, "getInputs", "gMalloc for ExtRef failed!\r\n"),
            referenceAttrs<scl::ExtRef>, "getInputs");
    }
}

} // namespace ied
