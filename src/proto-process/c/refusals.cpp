// Answers for the subjects that this server does not serve: each service and write is refused with
// the code for a missing record, each initialisation finds nothing to do.
#include "basicInterface/complexData.h"
#include "proto-process/c/controlModel.h"
#include "proto-process/c/services.h"
#include "proto-process/c/settingGroup.h"
#include "proto-process/c/substitution.h"

namespace ied {

SGCB *aSGCB;

namespace {

bool refuse(i8 *error, DataAccessError code) {
    *error = code;
    return false;
}

} // namespace

// Controls.
void readCtlObj(Data *data, GenNode *node, i8 *, u8, AccessSel *sel) {
    getNodeData(data, node, sel);
}
bool writeCtlObj(const Data *, GenNode *, i8 *error, u8) {
    return refuse(error, DaeObjectUndefined);
}
bool getAllCtlObjinModel() {
    return true;
}
bool monCtlObj() {
    return false;
}
void sendCtlResult() {}

// Log control blocks.
bool setLCBValues(const Data *, GenNode *, i8 *error, u8) {
    return refuse(error, DaeObjectAccessDenied);
}

// Setting groups and substitution.
bool writeSpData(const Data *, GenNode *, i8 *error, u8) {
    return refuse(error, DaeObjectAccessDenied);
}
bool writeSeData(const Data *, GenNode *, i8 *error, u8) {
    return refuse(error, DaeInvalidAddress);
}
bool writeSVData(const Data *, GenNode *, i8 *error, u8) {
    return refuse(error, DaeObjectAccessDenied);
}
bool sgcbModelInit() {
    return true;
}
void releaseClientSGCB(u8) {}
void releaseClientSV(u8) {}

// Files.
i8 fileOpen(const FileOpen_Request *, FileOpen_Response *, u8) {
    return fileNonExistent;
}
i8 fileRead(AsnInt, FileRead_Response *, u8) {
    return fileNonExistent;
}
i8 fileClose(AsnInt, u8) {
    return fileNonExistent;
}
i8 fileDirectory(const FileDirectory_Request *, FileDirectory_Response *, u8) {
    return fileNonExistent;
}

// Journals.
bool getJournalList(AsnList *, const AsnOcts *) {
    return false;
}
bool procReadJournal(const ReadJournal_Request *, ReadJournal_Response *, u8) {
    return false;
}
bool procInitializeJournal(const InitializeJournal_Request *, UAsnInt *, u8) {
    return false;
}
bool procReportJournalStatus(const ObjectName *, ReportJournalStatus_Response *, u8) {
    return false;
}

} // namespace ied
