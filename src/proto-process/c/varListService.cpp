#include "basicInterface/memory.h"
#include "device/externGlbCfg.h"
#include "proto-process/c/dataSet.h"
#include "proto-process/c/services.h"

namespace ied {

namespace {

void appendVariable(AsnList *list, const ObjectName *name) {
    auto *entry = asnListPush(list, MallocOf<VariableAccessSpecificationSeqOfSeq>());
    entry->variableSpecification = MallocOf<VariableSpecification>();
    entry->variableSpecification->choiceId = VariableSpecification::name;
    entry->variableSpecification->name_ = MallocOf<ObjectName>();
    objectNameCopy(entry->variableSpecification->name_, name);
}

} // namespace

i8 getVarListAttrProc(const ObjectName *request, GetNamedVariableListAttributes_Response *response) {
    const DataSetsRead held;
    DataSet *dataSet = nullptr;
    if (!searchDsByObjName(request, &dataSet)) {
        return definitionUndefined;
    }
    response->mmsDeletable = dataSet->isDynamic != 0;
    response->listOfVariable = asnListNewPtr();
    for (const AsnListElement *member = dataSet->members->first; member != nullptr; member = member->next) {
        appendVariable(response->listOfVariable, asnListValue<ObjectName>(member));
    }
    return serviceSuccess;
}

i8 defineVarListProc(const DefineNamedVariableList_Request *request) {
    // The checks and the creation are one step to every other client.
    const DataSetsWrite held;
    if (getTotalDSNum() >= externGlbCfg.maxDsNum) {
        return definitionOther;
    }
    const int name = checkDsName(request->variableListName);
    const int members = checkDsMember(request->listOfVariable);
    if (name == 0) {
        return definitionExists;
    }
    if (name < 0 || members == 0) {
        return definitionInvalidAddress;
    }
    if (members < 0 || !createDynDs(request->variableListName, request->listOfVariable)) {
        return definitionOther;
    }
    return serviceSuccess;
}

void deleteVarListProc(const DeleteNamedVariableList_Request *request,
                       DeleteNamedVariableList_Response *response) {
    const AsnList *names = request->listOfVariableListName;
    const AsnListElement *element = names == nullptr ? nullptr : names->first;
    for (; element != nullptr; element = element->next) {
        const DataSetsWrite held;
        deleteDs(asnListValue<ObjectName>(element), &response->numberMatched, &response->numberDeleted);
    }
}

} // namespace ied
