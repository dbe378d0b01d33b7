#include "basicInterface/memory.h"
#include "basicInterface/simpleData.h"
#include "basicInterface/subtreeWalk.h"
#include "proto-process/c/services.h"

namespace ied {

namespace {

// Builds the description beside the walk, which also goes into the elements of an array of structures.
struct TypeBuilder {
    TypeSpecification *current;
    AsnList *components[maxWalkDepth] = {};

    void startStructure(const GenNode *node, int depth) {
        current->choiceId = TypeSpecification::structure;
        current->structure_ = MallocOf<TypeSpecificationSeq1>();
        components[depth] = current->structure_->components = asnListNewPtr();
        addComponent(node->child, depth);
    }

    void addComponent(const GenNode *node, int depth) {
        auto *component = asnListPush(components[depth], MallocOf<TypeSpecificationSeq1SeqOfSeq>());
        str2Octs(&component->componentName, node->name, true);
        current = component->componentType = MallocOf<TypeSpecification>();
    }

    // Leaves `current` at the description of an element.
    void startArray(const GenNode *node) {
        current->choiceId = TypeSpecification::array;
        current->array_ = MallocOf<TypeSpecificationSeq>();
        current->array_->numberOfElements = getArrNum(node);
        current = current->array_->elementType = MallocOf<TypeSpecification>();
    }

    Visit visit(GenNode *node, int depth) {
        if (isArray(node)) {
            startArray(node);
            if (node->origType != 0 || node->child == nullptr || depth >= maxWalkDepth) {
                GenNode element = {};
                element.nodeType = node->origType;
                element.fc = node->fc;
                getSimpleType(current, &element);
                return Visit::leaf;
            }
        } else if (!isWalkedInto(node, depth)) {
            getSimpleType(current, node);
            return Visit::leaf;
        }
        startStructure(node, depth);
        return Visit::descend;
    }

    bool next(GenNode *node, int depth, bool) {
        addComponent(node, depth - 1);
        return true;
    }
};

} // namespace

void getTypeAttribute(TypeSpecification *typeSpec, GenNode *node) {
    walkSubtree(node, TypeBuilder{typeSpec});
}

i8 getVarAttrProc(const GetVariableAccessAttributes_Request *request,
                  GetVariableAccessAttributes_Response *response) {
    if (request->choiceId != GetVariableAccessAttributes_Request::name) {
        return accessUnsupported;
    }
    GenNode *node = nullptr;
    if (!searchNodeByObjName(request->name_, &node, nullptr, nullptr)) {
        return accessNonExistent;
    }
    response->typeSpecification = MallocOf<TypeSpecification>();
    getTypeAttribute(response->typeSpecification, node);
    return serviceSuccess;
}

} // namespace ied
