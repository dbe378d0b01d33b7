#include "basicInterface/complexData.h"
#include "basicInterface/memory.h"
#include "proto-process/c/services.h"

#include <cstring>

namespace ied {

namespace {

constexpr UAsnInt maxDeadband = 100000; // thousandths of a percent of the range

// Of the configuration attributes only the deadband may be written.
bool writeConfiguration(const Data *data, GenNode *node, i8 *error) {
    if (std::strcmp(node->name, "db") != 0) {
        *error = DaeObjectAccessDenied;
        return false;
    }
    if (data->choiceId != Data::unsignedInt || data->uint_ > maxDeadband) {
        *error = DaeObjectValueInvalid;
        return false;
    }
    return writeNodeData(data, node, error);
}

// Writes one value; the error byte, where a handler set it, outweighs what it returned.
void writeVariable(const VariableAccessSpecificationSeqOfSeq *entry, const Data *data, u8 clientId,
                   Write_ResponseChoice *result) {
    const ObjectName *name = variableName(entry);
    i8 error = DaeNone;
    GenNode *node = nullptr;
    if (name == nullptr || data == nullptr) {
        error = DaeInvalidAddress;
    } else if (!searchNodeByObjName(name, &node, nullptr, nullptr)) {
        error = DaeObjectNonExistent;
    } else if (writeDataHandle(data, node, &error, clientId)) {
        result->choiceId = Write_ResponseChoice::success;
    }
    if (error == DaeNone) {
        return;
    }
    result->choiceId = Write_ResponseChoice::failure;
    result->failure_ = error;
}

} // namespace

bool writeDataHandle(const Data *data, GenNode *node, i8 *errorOut, u8 clientId) {
    if (node->level >= LevelLD && node->level <= LevelFC) {
        *errorOut = DaeObjectAccessDenied;
        return false;
    }
    if (!checkNodeData(data, node, errorOut)) {
        return false;
    }
    switch (node->fc) {
    case FcCO:
        return writeCtlObj(data, node, errorOut, clientId);
    case FcRP:
    case FcBR:
        return setRCBValues(data, node, errorOut, clientId);
    case FcLG:
        return setLCBValues(data, node, errorOut, clientId);
    case FcCF:
        return writeConfiguration(data, node, errorOut);
    case FcSP:
        return writeSpData(data, node, errorOut, clientId);
    case FcSV:
        return writeSVData(data, node, errorOut, clientId);
    case FcSE:
        return writeSeData(data, node, errorOut, clientId);
    default:
        *errorOut = DaeObjectAccessDenied;
        return false;
    }
}

i8 writeProc(const Write_Request *request, Write_Response *response, u8 clientId) {
    const VariableAccessSpecification *variables = request->variableAccessSpecification;
    if (variables == nullptr || request->listOfData == nullptr) {
        return accessUnsupported;
    }
    if (variables->choiceId != VariableAccessSpecification::listOfVariable) {
        return serviceReject;
    }
    const AsnList *list = variables->listOfVariable_;
    const AsnListElement *variable = list == nullptr ? nullptr : list->first;
    const AsnListElement *value = request->listOfData->first;
    for (; variable != nullptr && value != nullptr; variable = variable->next, value = value->next) {
        writeVariable(asnListValue<VariableAccessSpecificationSeqOfSeq>(variable), asnListValue<Data>(value),
                      clientId, asnListPush(response, MallocOf<Write_ResponseChoice>()));
    }
    return serviceSuccess;
}

} // namespace ied
