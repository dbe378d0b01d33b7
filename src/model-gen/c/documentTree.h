// The SCL file as a generic tree of element records, before any of it is interpreted: element names,
// attribute pairs and text, read by expat. The readers walk it once; their records keep pointers
// into its texts, so it stays in model_gen_pool for the life of the process.
#pragma once

#include "platform/types.h"

namespace ied {

struct tree_node {
    char *el;           // element name, prefix included
    char **attr;        // name, value, name, value, ..., null; null without attributes
    char *data;         // text; null without any and for an element with children
    u8 visited;         // traversal mark: 0 not seen, 1 visited, 2 done with its subtree
    u8 depth;           // 0 for the root element
    u32 line;           // of the file, from 1
    tree_node *parent;  // null for the root
    tree_node *child;   // first child
    tree_node *sibling; // next under the same parent, in document order
};

// Elements that nest deeper are left out with a message each, with all that they hold: so no walk of
// the tree runs out of stack, and no element that nobody reads keeps a file from being served.
inline constexpr int maxElementDepth = 64;

// The element being read, how many are open, and the document element.
extern tree_node *currNode;
extern int Depth;
extern tree_node *treeRoot;

// Reads the whole file into the tree. `path` is a device path unless hostModelOptions.icdOnHost
// says that it is one of the host. 0, or -1 for a null path; any other failure ends the process
// with status 255 after a message that gives the line. Throws PoolFull.
int parse(const char *path);

// Path on the host of the file that was parsed last, for messages; never null.
const char *parsedFile();

// The callbacks that parse gives to expat; their state is in the words above.
void start(void *userData, const char *name, const char **atts);
void end(void *userData, const char *name);
void dataHandler(void *userData, const char *s, int len);
// Copies of a name and of attributes into currNode.
void saveEl(const char *name);
void saveAttr(const char **atts);

// Gives every node that is not marked yet to `visit` (may be null), depth first, the node's later
// siblings included, and marks it; DFSTreeInit takes the marks off again.
void DFSTree(tree_node *node, void (*visit)(tree_node *));
void DFSTreeInit(tree_node *node);
// Writes one element to the standard output.
void printNode(tree_node *node);

// Forgets the tree, also one that is half read; its memory is the pool's, which must still be there.
void documentForget();

} // namespace ied
