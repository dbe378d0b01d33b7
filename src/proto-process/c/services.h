// The MMS confirmed services and the handlers behind them. A service function returns the internal
// service result: -1 success, -10 not served, else error class times ten plus code. A write handler
// reports a DataAccessError number in `error`, which starts at -1.
#pragma once

#include "asn1/mmsTypes.h"
#include "basicInterface/simpleData.h"

namespace ied {

inline constexpr i8 serviceSuccess = -1;
inline constexpr i8 serviceReject = -10;
inline constexpr i8 definitionOther = 20;
inline constexpr i8 definitionUndefined = 21;
inline constexpr i8 definitionInvalidAddress = 22;
inline constexpr i8 definitionExists = 25;
inline constexpr i8 accessUnsupported = 71;
inline constexpr i8 accessNonExistent = 72;
inline constexpr i8 accessDenied = 73;
inline constexpr i8 fileNonExistent = 117;

i8 confirmedServiceProc(const ConfirmedServiceRequest *serviceRequest,
                        ConfirmedServiceResponse *serviceResponse, u8 clientId);
i8 getNameListProc(const GetNameList_Request *request, GetNameList_Response *response);
i8 getVarAttrProc(const GetVariableAccessAttributes_Request *request,
                  GetVariableAccessAttributes_Response *response);
i8 readProc(const Read_Request *request, Read_Response *response, u8 clientId);
i8 writeProc(const Write_Request *request, Write_Response *response, u8 clientId);
i8 getVarListAttrProc(const ObjectName *request, GetNamedVariableListAttributes_Response *response);
i8 defineVarListProc(const DefineNamedVariableList_Request *request);
void deleteVarListProc(const DeleteNamedVariableList_Request *request,
                       DeleteNamedVariableList_Response *response);
i8 getDomainAttrProc(const AsnOcts *request, GetDomainAttributes_Response *response);

// Model view.
void getLdList(AsnList *list);
int getItemList(AsnList *list, const AsnOcts *domainName, const AsnOcts *continueAfter);
void getTypeAttribute(TypeSpecification *typeSpec, GenNode *node);
int readDataHandle(Data *dataOut, GenNode *node, i8 *errorOut, u8 clientId, AccessSel *sel);
bool writeDataHandle(const Data *data, GenNode *node, i8 *errorOut, u8 clientId);
u32 getNodeReadEncLen(GenNode *node, const AccessSel *sel);

// Handlers of controls, control blocks, settings, substitution, files and journals (refusals.cpp
// answers for what is not there).
void readCtlObj(Data *data, GenNode *node, i8 *error, u8 clientId, AccessSel *sel);
bool writeCtlObj(const Data *data, GenNode *node, i8 *error, u8 clientId);
bool setRCBValues(const Data *data, GenNode *node, i8 *error, u8 clientId);
bool setLCBValues(const Data *data, GenNode *node, i8 *error, u8 clientId);
bool writeSpData(const Data *data, GenNode *node, i8 *error, u8 clientId);
bool writeSeData(const Data *data, GenNode *node, i8 *error, u8 clientId);
bool writeSVData(const Data *data, GenNode *node, i8 *error, u8 clientId);
i8 fileOpen(const FileOpen_Request *request, FileOpen_Response *response, u8 clientId);
i8 fileRead(AsnInt frsmID, FileRead_Response *response, u8 clientId);
i8 fileClose(AsnInt frsmID, u8 clientId);
i8 fileDirectory(const FileDirectory_Request *request, FileDirectory_Response *response, u8 clientId);
bool getJournalList(AsnList *list, const AsnOcts *domainName);
bool procReadJournal(const ReadJournal_Request *request, ReadJournal_Response *response, u8 clientId);
bool procInitializeJournal(const InitializeJournal_Request *request, UAsnInt *response, u8 clientId);
bool procReportJournalStatus(const ObjectName *request, ReportJournalStatus_Response *response, u8 clientId);

} // namespace ied
