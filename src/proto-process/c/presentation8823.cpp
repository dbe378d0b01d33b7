#include "DebugInfo/DebugInfo.h"
#include "asn1/presentationCodec.h"
#include "proto-process/c/octets.h"
#include "proto-process/c/packet.h"

namespace ied {

namespace {

constexpr u32 tagConnect = 0x31000000; // SET: CP-type, CPA-PPDU
constexpr u32 tagFullyEncoded = 0x61000000;

constexpr i32 errLength = -801;
constexpr i32 errUnknownPpdu = -802;
constexpr i32 errNoPlace = 100;

// Presentation contexts of every reply, whatever the client proposed.
constexpr AsnInt contextAcse = 1;
constexpr AsnInt contextMms = 3;
constexpr int contextResults = 2;

u32 fail(i32 *err, i32 code) {
    *err = code;
    return 0;
}

u32 decConnect(Ppdu8823 *ppdu, GenBuf *gen, u32 tag, u32 length, u32 decoded, DecodeEnv *env) {
    ppdu->cp = {};
    ppdu->cpPresent = 1;
    BDecCP_typeContent(gen, tag, length, &ppdu->cp, &decoded, env);
    return decoded;
}

u32 decUserData(Ppdu8823 *ppdu, GenBuf *gen, u32 tag, u32 length, u32 decoded, DecodeEnv *env, bool mms) {
    ppdu->userData = {};
    ppdu->userDataPresent = 1;
    BDecUser_dataContent(gen, tag, length, &ppdu->userData, &decoded, env, mms);
    return decoded;
}

// Decodes the PPDU that fills `len` octets. Throws BerError.
u32 decPpdu(Ppdu8823 *ppdu, GenBuf *gen, u32 len, int type, i32 *err) {
    DecodeEnv env;
    u32 decoded = 0;
    const u32 tag = BDecTag(gen, &decoded, &env);
    const bool connect = tag == tagConnect && type == PresentConnect;
    if (!connect && tag != tagFullyEncoded) {
        dbInfo(DbSOC, DbERR, "decPpdu8823", "unknown ppdu! tagId:%d", static_cast<i32>(tag));
        return fail(err, errUnknownPpdu);
    }
    const u32 length = BDecLen(gen, &decoded, &env);
    if (len - decoded != length) {
        return fail(err, errLength);
    }
    if (connect) {
        return decConnect(ppdu, gen, tag, length, decoded, &env);
    }
    if (type != PresentData && type != PresentFinish) {
        return fail(err, errNoPlace);
    }
    return decUserData(ppdu, gen, tag, length, decoded, &env, type == PresentData);
}

// Fully encoded user data of one PDV list with an empty value of the kind `choice`.
PDV_listChoice *newUserData(User_data *userData, AsnInt context, u32 choice) {
    *userData = {};
    userData->choiceId = User_data::fullyEncoded;
    userData->fully_encoded_data = asnListNewPtr();
    PDV_list *pdv = asnListPush(userData->fully_encoded_data, MallocOf<PDV_list>());
    pdv->presentation_context_identifier = context;
    pdv->presentation_data_values = MallocOf<PDV_listChoice>();
    pdv->presentation_data_values->choiceId = choice;
    return pdv->presentation_data_values;
}

// The CPA-PPDU up to its user data, which the caller fills: all of it is fixed.
ACSE_apdu *newAccept(CPA_PPDU *cpa) {
    *cpa = {};
    cpa->mode_selector = MallocOf<Mode_selector>();
    cpa->mode_selector->mode_value = 1;
    auto *parameters = MallocOf<CPA_PPDUSeq>();
    cpa->normal_mode_parameters = parameters;
    parameters->responding_presentation_selector = newOcts<AsnOcts>({0, 0, 0, 1});
    parameters->presentation_context_definition_result_list = asnListNewPtr();
    for (int i = 0; i < contextResults; ++i) {
        Result_listSeq *result =
            asnListPush(parameters->presentation_context_definition_result_list, MallocOf<Result_listSeq>());
        result->transfer_syntax_name = newOcts<AsnOid>({0x51, 0x01}); // BER, 2.1.1
    }
    parameters->presentation_requirements = newBits(2, {0});
    parameters->user_data = MallocOf<User_data>();
    PDV_listChoice *value = newUserData(parameters->user_data, contextAcse, PDV_listChoice::acse);
    value->acseApdu = MallocOf<ACSE_apdu>();
    return value->acseApdu;
}

int processConnect(const Ppdu8823 *request, Ppdu8823 *reply, u8 slot) {
    const CP_typeSeq *parameters = request->cp.normal_mode_parameters;
    const ACSE_apdu *apdu = parameters != nullptr ? firstAcseApdu(parameters->user_data) : nullptr;
    if (apdu == nullptr) {
        return 0;
    }
    reply->cpaPresent = 1;
    return processApduAcse(apdu, newAccept(&reply->cpa), slot);
}

int processUserData(const Ppdu8823 *request, Ppdu8823 *reply, int type, u8 slot) {
    if (type == PresentData) {
        const MMSpdu *mms = firstMmsPdu(&request->userData);
        if (mms == nullptr) {
            return 0;
        }
        return processApduMms(mms, newMmsData(reply), slot);
    }
    const ACSE_apdu *apdu = firstAcseApdu(&request->userData);
    if (apdu == nullptr) {
        return 0;
    }
    if (apdu->choiceId == ACSE_apdu::aarq) {
        // In a FINISH it would be served past the state of the client, which looks at a CONNECT's.
        dbInfo(DbSOC, DbERR, "processPpdu8823", "ppdu contain error");
        return 0;
    }
    reply->userDataPresent = 1;
    PDV_listChoice *value = newUserData(&reply->userData, contextAcse, PDV_listChoice::acse);
    value->acseApdu = MallocOf<ACSE_apdu>();
    return processApduAcse(apdu, value->acseApdu, slot);
}

// The value of the first PDV list of fully encoded user data, or null.
PDV_listChoice *firstValue(const User_data *userData) {
    if (userData == nullptr || userData->choiceId != User_data::fullyEncoded ||
        userData->fully_encoded_data == nullptr || userData->fully_encoded_data->first == nullptr) {
        return nullptr;
    }
    return asnListValue<PDV_list>(userData->fully_encoded_data->first)->presentation_data_values;
}

} // namespace

MMSpdu *newMmsData(Ppdu8823 *ppdu) {
    ppdu->userDataPresent = 1;
    PDV_listChoice *value = newUserData(&ppdu->userData, contextMms, PDV_listChoice::mms);
    return value->mmsPdu = MallocOf<MMSpdu>();
}

MMSpdu *firstMmsPdu(const User_data *userData) {
    const PDV_listChoice *value = firstValue(userData);
    return value != nullptr && value->choiceId == PDV_listChoice::mms ? value->mmsPdu : nullptr;
}

ACSE_apdu *firstAcseApdu(const User_data *userData) {
    const PDV_listChoice *value = firstValue(userData);
    return value != nullptr && value->choiceId == PDV_listChoice::acse ? value->acseApdu : nullptr;
}

u32 decPpdu8823(Ppdu8823 *ppdu, const u8 *data, u32 len, int type, i32 *err) {
    *err = 0;
    BerBuf buf;
    berBufRead(&buf, data, len);
    try {
        return decPpdu(ppdu, &buf.gen, len, type, err);
    } catch (const BerError &error) {
        dbInfo(DbSOC, DbERR, "decPpdu8823", "decode long jmp error! code:%d", error.code);
        return fail(err, error.code);
    }
}

int processPpdu8823(const Ppdu8823 *request, Ppdu8823 *reply, int type, u8 slot) {
    if (request->cpPresent != 0) {
        return processConnect(request, reply, slot);
    }
    if (request->userDataPresent != 0) {
        return processUserData(request, reply, type, slot);
    }
    dbInfo(DbSOC, DbERR, "processPpdu8823", "ppdu contain error");
    return 0;
}

u32 encPpdu8823(const Ppdu8823 *ppdu, u8 *buf, u32 end) {
    BerBuf out;
    berBufWrite(&out, buf, end);
    u32 n = 0;
    if (ppdu->cpaPresent != 0) {
        n += BEncCPA_PPDUContent(&out.gen, &ppdu->cpa);
        n += BEncDefLen(&out.gen, n);
        n += BEncTag(&out.gen, tagConnect);
    }
    if (ppdu->userDataPresent != 0) {
        n += BEncUser_dataContent(&out.gen, &ppdu->userData);
    }
    const bool fits = berBufFits(&out);
    berBufRelease(&out);
    return fits ? n : 0;
}

void initPpdu8823(Ppdu8823 *ppdu, bool full) {
    if (full) {
        ppdu->cpPresent = 0;
        ppdu->cpaPresent = 0;
        ppdu->userDataPresent = 0;
    }
    if (ppdu->cpPresent != 0) {
        FreeCP_type(&ppdu->cp);
        ppdu->cpPresent = 0;
    }
    if (ppdu->cpaPresent != 0) {
        FreeCPA_PPDU(&ppdu->cpa);
        ppdu->cpaPresent = 0;
    }
    if (ppdu->userDataPresent != 0) {
        FreeUser_data(&ppdu->userData);
        ppdu->userDataPresent = 0;
    }
}

} // namespace ied
