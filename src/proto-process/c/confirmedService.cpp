#include "basicInterface/memory.h"
#include "basicInterface/simpleData.h"
#include "proto-process/c/client.h"
#include "proto-process/c/services.h"

namespace ied {

namespace {

using Request = ConfirmedServiceRequest;
using Response = ConfirmedServiceResponse;

// The body of a response, hung where its choice looks for it.
template <class Body> Body *makeBody(Response *response, u32 choice, Body *Response::*member) {
    response->choiceId = choice;
    return response->*member = MallocOf<Body>();
}

i8 served(bool done) {
    return done ? serviceSuccess : serviceReject;
}

i8 statusProc(Response *response) {
    makeBody(response, Response::status, &Response::status_); // all zero: operating, no detail
    return serviceSuccess;
}

i8 identifyProc(Response *response) {
    auto *body = makeBody(response, Response::identify, &Response::identify_);
    str2Octs(&body->vendorName, "ORV", true);
    str2Octs(&body->modelName, "QTM5-2", true);
    str2Octs(&body->revision, "V1.3150519", true);
    return serviceSuccess;
}

i8 writeServiceProc(const Write_Request *request, Response *response, u8 clientId) {
    response->choiceId = Response::write;
    response->write_ = asnListNewPtr();
    return writeProc(request, response->write_, clientId);
}

i8 defineProc(const DefineNamedVariableList_Request *request, Response *response) {
    response->choiceId = Response::defineNamedVariableList;
    return defineVarListProc(request);
}

i8 deleteProc(const DeleteNamedVariableList_Request *request, Response *response) {
    deleteVarListProc(
        request, makeBody(response, Response::deleteNamedVariableList, &Response::deleteNamedVariableList_));
    return serviceSuccess;
}

i8 initializeJournalProc(const InitializeJournal_Request *request, Response *response, u8 clientId) {
    response->choiceId = Response::initializeJournal;
    return served(procInitializeJournal(request, &response->initializeJournal_, clientId));
}

i8 fileCloseProc(AsnInt frsmID, Response *response, u8 clientId) {
    response->choiceId = Response::fileClose;
    return fileClose(frsmID, clientId);
}

// Whether a request lacks the record that its service works on; some have none, or a mere word.
bool lacksBody(const Request *request) {
    switch (request->choiceId) {
    case SvcStatus:
    case SvcIdentify:
    case SvcFileRead:
    case SvcFileClose:
        return false;
    default:
        return request->undecoded == nullptr;
    }
}

i8 dispatch(const Request *request, Response *response, u8 clientId) {
    switch (request->choiceId) {
    case SvcStatus:
        return statusProc(response);
    case SvcGetNameList:
        return getNameListProc(request->getNameList,
                               makeBody(response, Response::getNameList, &Response::getNameList_));
    case SvcIdentify:
        return identifyProc(response);
    case SvcRead:
        return readProc(request->read, makeBody(response, Response::read, &Response::read_), clientId);
    case SvcWrite:
        return writeServiceProc(request->write, response, clientId);
    case SvcGetVariableAccessAttributes:
        return getVarAttrProc(request->getVariableAccessAttributes,
                              makeBody(response, Response::getVariableAccessAttributes,
                                       &Response::getVariableAccessAttributes_));
    case SvcDefineNamedVariableList:
        return defineProc(request->defineNamedVariableList, response);
    case SvcGetNamedVariableListAttributes:
        return getVarListAttrProc(request->getNamedVariableListAttributes,
                                  makeBody(response, Response::getNamedVariableListAttributes,
                                           &Response::getNamedVariableListAttributes_));
    case SvcDeleteNamedVariableList:
        return deleteProc(request->deleteNamedVariableList, response);
    case SvcGetDomainAttributes:
        return getDomainAttrProc(
            request->getDomainAttributes,
            makeBody(response, Response::getDomainAttributes, &Response::getDomainAttributes_));
    case SvcReadJournal:
        return served(procReadJournal(request->readJournal,
                                      makeBody(response, Response::readJournal, &Response::readJournal_),
                                      clientId));
    case SvcInitializeJournal:
        return initializeJournalProc(request->initializeJournal, response, clientId);
    case SvcReportJournalStatus:
        return served(procReportJournalStatus(
            request->reportJournalStatus,
            makeBody(response, Response::reportJournalStatus, &Response::reportJournalStatus_), clientId));
    case SvcFileOpen:
        return fileOpen(request->fileOpen, makeBody(response, Response::fileOpen, &Response::fileOpen_),
                        clientId);
    case SvcFileRead:
        return fileRead(request->fileRead, makeBody(response, Response::fileRead, &Response::fileRead_),
                        clientId);
    case SvcFileClose:
        return fileCloseProc(request->fileClose, response, clientId);
    case SvcFileDirectory:
        return fileDirectory(request->fileDirectory,
                             makeBody(response, Response::fileDirectory, &Response::fileDirectory_),
                             clientId);
    default:
        return serviceReject;
    }
}

} // namespace

i8 confirmedServiceProc(const ConfirmedServiceRequest *serviceRequest,
                        ConfirmedServiceResponse *serviceResponse, u8 clientId) {
    if (serviceRequest == nullptr || serviceRequest->choiceId >= SvcAdditionalService ||
        clientStat[clientId].supportServ[serviceRequest->choiceId] == 0 || lacksBody(serviceRequest)) {
        return serviceReject;
    }
    return dispatch(serviceRequest, serviceResponse, clientId);
}

} // namespace ied
