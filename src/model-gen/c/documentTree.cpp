#include "model-gen/c/documentTree.h"

#include "DebugInfo/DebugInfo.h"
#include "device/externGlbCfg.h"
#include "model-gen/c/genNode.h"
#include "model-gen/c/sclFault.h"
#include "platform/platform.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <expat.h>
#include <fcntl.h>

namespace ied {

tree_node *currNode;
int Depth;
tree_node *treeRoot;

namespace {

constexpr int blockSize = 2048;

// What a parse needs beside the three words.
struct ParseState {
    char file[256]; // path on the host, for messages
    XML_Parser parser;
    tree_node *lastAt[maxElementDepth]; // last element begun at each depth, for linear linking
    std::size_t textLength;             // of currNode->data while its element is open
    std::size_t textSpace;
    u32 lacking; // octets that the pool did not have, ends the parse
};
ParseState state;

[[noreturn]] void parseError(const char *what, const char *reason) {
    const unsigned long line = XML_GetCurrentLineNumber(state.parser);
    std::fprintf(stderr, "Parse error at line %lu:\r\n%s\r\n", line, reason);
    sclFault(line, "%s: %s", what, reason);
}

int openFile(const char *path) {
    const int fd =
        hostModelOptions.icdOnHost ? ::open(path, O_RDONLY | O_CLOEXEC) : fileOps.open(path, O_RDONLY, 0);
    if (fd < 0) {
        const int reason = errno;
        std::fprintf(stderr, "Open file %s failed!\r\n", path);
        sclFault(0, "cannot be opened: %s", std::strerror(reason));
    }
    return fd;
}

void parseBlocks(int fd) {
    char block[blockSize];
    for (bool isFinal = false; !isFinal;) {
        const long got = fileOps.read(fd, block, blockSize);
        if (got < 0) {
            parseError("the file cannot be read", std::strerror(errno));
        }
        isFinal = got < blockSize;
        const XML_Status status = XML_Parse(state.parser, block, static_cast<int>(got), isFinal);
        if (state.lacking != 0) {
            gMalloc(state.lacking); // throws, now that no frame of expat is on the stack
        }
        if (status == XML_STATUS_ERROR) {
            parseError("the file is no well-formed XML", XML_ErrorString(XML_GetErrorCode(state.parser)));
        }
    }
}

// Whether the pool still has `bytes`. If not the parse is stopped: PoolFull must not fly through
// expat, which is C.
bool poolHas(std::size_t bytes) {
    if (state.parser == nullptr || model_gen_pool.used + bytes <= model_gen_pool.size) {
        return true;
    }
    state.lacking = static_cast<u32>(bytes);
    XML_StopParser(state.parser, XML_FALSE);
    return false;
}

std::size_t elementSize(const char *name, const char **atts) {
    std::size_t size = roundToWord(sizeof(tree_node)) + roundToWord(static_cast<u32>(std::strlen(name) + 1));
    for (; *atts != nullptr; ++atts) {
        size += sizeof(char *) + roundToWord(static_cast<u32>(std::strlen(*atts) + 1));
    }
    return size + sizeof(char *);
}

void dropText() {
    std::free(currNode->data);
    currNode->data = nullptr;
    state.textLength = state.textSpace = 0;
}

} // namespace

int parse(const char *path) {
    if (path == nullptr) {
        return -1;
    }
    state = {};
    std::snprintf(state.file, sizeof state.file, "%s",
                  hostModelOptions.icdOnHost ? path : hostPath(path).c_str());
    const int fd = openFile(path);
    state.parser = XML_ParserCreate(nullptr);
    if (state.parser == nullptr) {
        std::fprintf(stderr, "Couldn't allocate memory for parser!\r\n");
        processExit(-1);
    }
    XML_SetElementHandler(state.parser, start, end);
    XML_SetCharacterDataHandler(state.parser, dataHandler);
    const u32 startTick = tickGet();
    parseBlocks(fd);
    dbInfoRaw("parse file takes : %f ms\n",
              static_cast<f64>(tickGet() - startTick) / sysClkRateGet() * 1000.0);
    XML_ParserFree(state.parser);
    state.parser = nullptr;
    fileOps.close(fd);
    return 0;
}

const char *parsedFile() {
    return *state.file != '\0' ? state.file : "SCL file";
}

void start(void *, const char *name, const char **atts) {
    const unsigned long line = state.parser != nullptr ? XML_GetCurrentLineNumber(state.parser) : 0;
    if (Depth >= maxElementDepth) {
        if (Depth++ == maxElementDepth) {
            dbInfoRaw("%s : We leave out %.100s at line %lu, it is nested deeper than %d elements\n", "start",
                      name, line, maxElementDepth);
        }
        return;
    }
    if (state.lacking != 0 || !poolHas(elementSize(name, atts))) {
        return;
    }
    auto *node =
        static_cast<tree_node *>(sclAlloc(sizeof(tree_node), "start", "Malloc for tree_node failed!\r\n"));
    node->line = static_cast<u32>(line);
    node->depth = static_cast<u8>(Depth);
    if (Depth == 0) {
        treeRoot = node;
    } else {
        dropText();
        node->parent = currNode;
        if (currNode->child == nullptr) {
            currNode->child = node;
        } else {
            state.lastAt[Depth]->sibling = node;
        }
    }
    state.lastAt[Depth] = node;
    currNode = node;
    saveEl(name);
    saveAttr(atts);
    ++Depth;
}

void end(void *, const char *) {
    if (Depth > maxElementDepth) {
        --Depth;
        return;
    }
    if (state.lacking != 0 || !poolHas(roundToWord(static_cast<u32>(state.textLength + 1)))) {
        return;
    }
    if (currNode->data != nullptr) {
        char *text = currNode->data;
        currNode->data = currNode->child == nullptr
                             ? sclText({text, state.textLength}, "end", "gMalloc for data failed!\r\n")
                             : nullptr;
        std::free(text);
        state.textLength = state.textSpace = 0;
    }
    currNode = currNode->parent;
    --Depth;
}

void dataHandler(void *, const char *s, int len) {
    if (Depth > maxElementDepth || state.lacking != 0 || s == nullptr || len <= 0 ||
        (len == 1 && *s == '\n')) {
        return;
    }
    if (currNode->child != nullptr) {
        dropText();
        return;
    }
    const std::size_t length = state.textLength + static_cast<std::size_t>(len);
    if (length + 1 > state.textSpace) {
        // Doubled, so that a text of a million lines is not copied a million times.
        state.textSpace = 2 * length + 1;
        currNode->data = static_cast<char *>(std::realloc(currNode->data, state.textSpace));
        if (currNode->data == nullptr) {
            std::fprintf(stderr, "%s : malloc for data failed!\r\n", "dataHandler");
            processExit(-1);
        }
    }
    std::memcpy(currNode->data + state.textLength, s, static_cast<std::size_t>(len));
    currNode->data[length] = '\0';
    state.textLength = length;
}

void saveEl(const char *name) {
    currNode->el = sclText(name, "saveEl", "gMalloc for el failed!\r\n");
}

void saveAttr(const char **atts) {
    u32 count = 0;
    while (atts[count] != nullptr) {
        ++count;
    }
    if (count == 0) {
        return;
    }
    currNode->attr = static_cast<char **>(
        sclAlloc((count + 1) * sizeof(char *), "saveAttr", "Malloc for attr failed!\r\n"));
    for (u32 i = 0; i < count; ++i) {
        const std::size_t size = std::strlen(atts[i]) + 1;
        currNode->attr[i] = static_cast<char *>(gMalloc(static_cast<u32>(size)));
        if (currNode->attr[i] == nullptr) {
            std::fprintf(stderr, "%s : Malloc for attr[%u] failed!\r\n", "saveAttr", i);
            processExit(-1);
        }
        std::memcpy(currNode->attr[i], atts[i], size);
    }
}

void DFSTree(tree_node *node, void (*visit)(tree_node *)) {
    if (node == nullptr || node->visited == 2) {
        return;
    }
    for (tree_node *at = node; at != nullptr; at = at->sibling) {
        if (at->visited == 2) {
            continue;
        }
        if (at->visited == 0) {
            if (visit != nullptr) {
                visit(at);
            }
            at->visited = 1;
        }
        DFSTree(at->child, visit);
        at->visited = 2;
    }
}

void DFSTreeInit(tree_node *node) {
    if (node == nullptr || node->visited == 0) {
        return;
    }
    for (tree_node *at = node; at != nullptr; at = at->sibling) {
        if (at->visited != 0) {
            at->visited = 0;
            DFSTreeInit(at->child);
        }
    }
}

void printNode(tree_node *node) {
    for (int i = 0; i < node->depth; ++i) {
        std::printf("\t");
    }
    std::printf("%s ", node->el);
    for (char **attr = node->attr; attr != nullptr && attr[0] != nullptr; attr += 2) {
        std::printf("%s = ", attr[0]);
        std::printf("%s;", attr[1]);
    }
    if (node->data != nullptr) {
        std::printf("%s", node->data);
    }
    std::printf("\r\n");
}

void documentForget() {
    if (state.textSpace != 0) {
        dropText();
    }
    if (state.parser != nullptr) {
        XML_ParserFree(state.parser);
    }
    currNode = nullptr;
    treeRoot = nullptr;
    Depth = 0;
    state = {};
}

} // namespace ied
