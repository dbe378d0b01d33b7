#include "tests/support/sclText.h"

#include "device/externGlbCfg.h"
#include "model-gen/c/documentTree.h"
#include "model-gen/c/sclReaders.h"
#include "platform/platform.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace ied::test {

namespace {

constexpr int textDescriptor = 4711;

struct {
    std::string text;
    std::size_t at;
    std::size_t failAfter;
} file;
std::string logged;
FileOps hostFiles;

int openText(const char *, int, unsigned) {
    file.at = 0;
    return textDescriptor;
}

long readText(int, void *buffer, std::size_t length) {
    if (file.at >= file.failAfter) {
        errno = EIO;
        return -1;
    }
    const std::size_t n = std::min(length, file.text.size() - file.at);
    std::memcpy(buffer, file.text.data() + file.at, n);
    file.at += n;
    return static_cast<long>(n);
}

int closeText(int) {
    return 0;
}

void keepLog(const char *line) {
    logged += line;
}
void printLog(const char *line) {
    std::fputs(line, stderr);
}

void appendNode(std::string &out, const GenNode *node, int indent) {
    out.append(static_cast<std::size_t>(2 * indent), ' ');
    out += std::string(node->name) + " " + std::to_string(node->level) + "/" +
           std::to_string(node->nodeType) + "/" + std::to_string(node->fc);
    if (node->trgOps != 0) {
        out += " t" + std::to_string(node->trgOps);
    }
    if (node->origType != 0) {
        out += " o" + std::to_string(node->origType);
    }
    if (node->value != nullptr) {
        out += std::string(" =") + node->value;
    }
    if (node->sAddr != nullptr) {
        out += std::string(" @") + node->sAddr;
    }
    out += "\n";
    for (const GenNode *child = node->child; child != nullptr; child = child->sibling) {
        appendNode(out, child, indent + 1);
    }
}

} // namespace

std::string sclDocument(std::string_view devices, std::string_view templates, std::string_view iedParts) {
    return "<SCL>\n<IED name='I'>" + std::string(iedParts) + "<AccessPoint name='S1'><Server>\n" +
           std::string(devices) + "\n</Server></AccessPoint></IED>\n<DataTypeTemplates>\n" +
           std::string(templates) + "\n</DataTypeTemplates></SCL>\n";
}

std::string sclDevice(std::string_view content, std::string_view inst) {
    return "<LDevice inst='" + std::string(inst) + "'><LN0 lnClass='LLN0' inst='' lnType='T0'>" +
           std::string(content) + "</LN0></LDevice>\n";
}

SclSession::SclSession() {
    externGlbCfgInit();
    isWordAlign = 1;
    externGlbCfg.dbDest = 1;
    externGlbCfg.dbHook = keepLog;
    hostModelOptions.icdOnHost = false;
    sysClkRateSet(externGlbCfg.tickRate);
    hostFiles = fileOps;
    fileOps.open = openText;
    fileOps.read = readText;
    fileOps.close = closeText;
    file = {{}, 0, std::string::npos};
    logged.clear();
}

SclSession::~SclSession() {
    modelForget();
    fileOps = hostFiles;
    externGlbCfgInit();
}

void SclSession::parseText(std::string_view text) {
    file.text = text;
    mpAlloc(0x200000, &model_gen_pool);
    parse("/tffs0/test.icd");
}

void SclSession::read(std::string_view text) {
    parseText(text);
    getICD();
}

void SclSession::build(std::string_view text, u32 poolSize) {
    file.text = text;
    modelInit("/tffs0/test.icd", poolSize);
}

std::string SclSession::log() const {
    return logged;
}

void SclSession::failReadAfter(std::size_t octets) {
    file.failAfter = octets;
}

void logToStderr() {
    externGlbCfg.dbHook = printLog;
}

std::string shown(const char *text) {
    return text != nullptr ? text : "(null)";
}

std::string treeText(const GenNode *node) {
    std::string out;
    if (node != nullptr) {
        appendNode(out, node, 0);
    }
    return out;
}

GenNode *nodeAt(std::string_view reference) {
    GenNode *node = &lds;
    while (node != nullptr && !reference.empty()) {
        const std::size_t end = reference.find_first_of("/$");
        const std::string_view name = reference.substr(0, end);
        reference = end == std::string_view::npos ? std::string_view() : reference.substr(end + 1);
        node = node->child;
        while (node != nullptr && name != node->name) {
            node = node->sibling;
        }
    }
    return node;
}

} // namespace ied::test
