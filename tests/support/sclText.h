// SCL files as texts of a test: given to the readers without a file, read or built into a model,
// with what was logged and with the tree as text.
#pragma once

#include "model-gen/c/genNode.h"

#include <string>
#include <string_view>

namespace ied::test {

// A document with one IED "I": `devices` stand below Server, `templates` below DataTypeTemplates,
// `iedParts` before the access point.
std::string sclDocument(std::string_view devices, std::string_view templates, std::string_view iedParts = "");
// An LDevice "L" with an LLN0 of type "T0", which sclDocument's templates have to hold, and `content`
// below LN0.
std::string sclDevice(std::string_view content, std::string_view inst = "L");

// One at a time: files come from texts, the log goes into a text; the end forgets the model.
class SclSession {
  public:
    SclSession();
    ~SclSession();
    SclSession(const SclSession &) = delete;
    SclSession &operator=(const SclSession &) = delete;

    // Only the document tree.
    void parseText(std::string_view file);
    // The tree and the SCL records.
    void read(std::string_view file);
    // Everything.
    void build(std::string_view file, u32 poolSize = 0x100000);
    // What was written by dbInfoRaw so far.
    std::string log() const;

    // From now on the file's read fails after this many octets.
    static void failReadAfter(std::size_t octets);
};

// What the log writes goes to the standard error stream: for death tests.
void logToStderr();

// A text that the reader keeps; "(null)" where there is none.
std::string shown(const char *text);

// A node and what is below it, a line each, two blanks an indent: name, level/type/fc, then as far
// as they are there trgOps ("t64"), origType ("o52"), value ("=5") and short address ("@RT.Hz").
std::string treeText(const GenNode *node);
// The node of "LD/LN$FC$..."; null without one.
GenNode *nodeAt(std::string_view reference);

} // namespace ied::test
