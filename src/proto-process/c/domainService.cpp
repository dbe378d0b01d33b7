#include "proto-process/c/services.h"

namespace ied {

namespace {

constexpr AsnInt domainReady = 2;

} // namespace

i8 getDomainAttrProc(const AsnOcts *request, GetDomainAttributes_Response *response) {
    GenNode *ld = nullptr;
    if (!searchLdByOcts(request, &ld)) {
        return accessNonExistent;
    }
    response->state = domainReady;
    response->listOfCapabilities = asnListNewPtr();
    response->listOfProgramInvocations = asnListNewPtr();
    return serviceSuccess;
}

} // namespace ied
