// The SCL file as a tree of elements: what is kept of it, and how a file that is none ends.
#include "model-gen/c/documentTree.h"
#include "model-gen/c/list.h"
#include "model-gen/c/sclFault.h"
#include "tests/support/sclText.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace ied;
using namespace ied::test;

namespace {

struct TextCase {
    const char *name;
    const char *content; // of the element <Val>
    const char *want;
};

class ElementText : public testing::TestWithParam<TextCase> {};

TEST_P(ElementText, IsKeptAsTheFileHasIt) {
    SclSession session;
    session.parseText("<DAI><Val>" + std::string(GetParam().content) + "</Val></DAI>");
    EXPECT_EQ(shown(treeRoot->child->data), GetParam().want);
    EXPECT_EQ(treeRoot->data, nullptr);
}

INSTANTIATE_TEST_SUITE_P(DocumentTree, ElementText,
                         testing::Values(TextCase{"number", "12", "12"},
                                         TextCase{"leadingBlanks", "  12", "  12"},
                                         TextCase{"empty", "", "(null)"},
                                         TextCase{"loneLineFeed", "\n", "(null)"},
                                         TextCase{"severalLines", "\n   1\n   2\n", "   1   2"},
                                         TextCase{"entities", "a&lt;b&amp;c&#65;", "a<b&cA"},
                                         TextCase{"cdata", "x<![CDATA[<y>]]>z", "x<y>z"},
                                         TextCase{"beforeAChild", "text<x/>", "(null)"},
                                         TextCase{"afterAChild", "<x/>text", "(null)"},
                                         TextCase{"aroundAChild", "a<x>in</x>b", "(null)"}),
                         [](const auto &test) { return std::string(test.param.name); });

TEST(DocumentTree, KeepsNamesAttributesOrderDepthAndLines) {
    SclSession session;
    session.parseText("<SCL>\n <a/>\n <eorv:GooseRx max='8' uniqueAddr=''/>\n <b><c/></b></SCL>");
    EXPECT_STREQ(treeRoot->el, "SCL");
    const tree_node *a = treeRoot->child;
    EXPECT_EQ(a->attr, nullptr) << "no attribute is no array";
    const tree_node *goose = a->sibling;
    EXPECT_STREQ(goose->el, "eorv:GooseRx");
    const std::vector<std::string> attributes{goose->attr[0], goose->attr[1], goose->attr[2], goose->attr[3]};
    EXPECT_EQ(attributes, (std::vector<std::string>{"max", "8", "uniqueAddr", ""}));
    EXPECT_EQ(goose->attr[4], nullptr);
    EXPECT_EQ(goose->line, 3U);
    const tree_node *b = goose->sibling;
    EXPECT_EQ(b->sibling, nullptr);
    EXPECT_STREQ(b->child->el, "c");
    EXPECT_EQ(b->child->parent, b);
    EXPECT_EQ(b->child->depth, 2);
    EXPECT_NE(session.log().find("parse file takes : 0.000000 ms\n"), std::string::npos) << session.log();
}

TEST(DocumentTree, WhatIsNestedDeeperThan64ElementsIsLeftOutWithAMessageEach) {
    SclSession session;
    std::string file = "<SCL>\n";
    for (int depth = 1; depth < 63; ++depth) {
        file += "<x>";
    }
    file += "<kept>own\n<deep a='1'>in<deeper><deepest/></deeper></deep>\n<other/></kept><kept2>text</kept2>";
    for (int depth = 62; depth > 0; --depth) {
        file += "</x>";
    }
    session.parseText(file + "<last>text</last></SCL>");
    const tree_node *node = treeRoot->child;
    for (; node->depth < 63; node = node->child) {
    }
    EXPECT_STREQ(node->el, "kept");
    EXPECT_EQ(node->child, nullptr);
    EXPECT_STREQ(node->data, "own");
    EXPECT_STREQ(node->sibling->el, "kept2");
    EXPECT_STREQ(node->sibling->data, "text");
    EXPECT_STREQ(treeRoot->child->sibling->data, "text");
    const std::string log = session.log();
    EXPECT_EQ(log.substr(0, log.find("parse file")),
              "start : We leave out deep at line 3, it is nested deeper than 64 elements\n"
              "start : We leave out other at line 4, it is nested deeper than 64 elements\n");
}

// The last block may be full, which only the read after it tells.
TEST(DocumentTree, AFileOfAnyLengthAroundTheBlockSizeIsReadWhole) {
    for (std::size_t size : {2047U, 2048U, 2049U, 4096U, 6000U}) {
        SclSession session;
        const std::string frame = "<SCL><a/></SCL>";
        session.parseText("<SCL>" + std::string(size - frame.size(), ' ') + "<a/></SCL>");
        ASSERT_NE(treeRoot->child, nullptr) << size;
        EXPECT_STREQ(treeRoot->child->el, "a");
    }
}

TEST(DocumentTree, NoPathIsRefusedWithoutAnEnd) {
    EXPECT_EQ(parse(nullptr), -1);
}

std::string visited;
void note(tree_node *node) {
    visited += node->el;
}

TEST(DocumentTree, ATraversalVisitsEveryElementOnceUntilTheMarksAreTakenOff) {
    SclSession session;
    session.parseText("<a><b><c/><d/></b><e/><f><g/></f></a>");
    for (const char *want : {"abcdefg", ""}) {
        visited.clear();
        DFSTree(treeRoot, note);
        EXPECT_EQ(visited, want);
    }
    DFSTreeInit(treeRoot);
    visited.clear();
    DFSTree(treeRoot->child, note);
    EXPECT_EQ(visited, "bcdefg");
    testing::internal::CaptureStdout();
    tree_node text{};
    char el[] = "Val", data[] = "7", key[] = "k", value[] = "v";
    char *attr[] = {key, value, nullptr};
    text.el = el;
    text.attr = attr;
    text.data = data;
    text.depth = 2;
    printNode(&text);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\t\tVal k = v;7\r\n");
}

struct Record {
    int number;
    ListLink link;
};

std::string numbers(const ListHead &head) {
    std::string out;
    for (const Record &record : records<&Record::link>(head)) {
        out += std::to_string(record.number);
    }
    return out;
}

TEST(List, KeepsTheOrderOfAppendingAndLetsGoOfWhatItHolds) {
    Record r[5] = {{0, {}}, {1, {}}, {2, {}}, {3, {}}, {4, {}}};
    TailedList list{};
    listAppend(&r[1].link, &list);
    listAppend(&r[2].link, &list);
    listAddTail(&r[3].link, &list);
    listAdd(&r[0].link, &list);
    EXPECT_EQ(numbers(list), "0123");
    listDel(&r[4].link, &list);
    EXPECT_EQ(numbers(list), "0123") << "a stranger leaves the list alone";
    listDel(&r[0].link, &list);
    listDel(&r[2].link, &list);
    EXPECT_EQ(numbers(list), "13");
    EXPECT_EQ(listLast(&list), &r[3].link);
    listDel(&r[3].link, &list);
    listAddTail(&r[4].link, &list);
    EXPECT_EQ(numbers(list), "14");
    initListHead(&list);
    EXPECT_TRUE(listEmpty(&list));
}

// ------------------------------------------------------------------------------ files that are none

TEST(DocumentTreeDeath, AFaultEndsTheProcessWithItsLineWhateverTheLogsDestinationIs) {
    SclSession session;
    const auto ended = testing::ExitedWithCode(255);
    const std::string where = "/tffs0/test.icd:2: ";
    EXPECT_EXIT(session.parseText("<SCL>\n<a></b></SCL>"), ended,
                "^Parse error at line 2:\r\nmismatched tag\r\n.*" + where + ".*mismatched tag\n$");
    EXPECT_EXIT(session.parseText(""), ended, "Parse error at line 1:\r\nno element found\r\n");
    EXPECT_EXIT(session.parseText("no XML"), ended, "Parse error at line 1:\r\n");
    EXPECT_EXIT(session.parseText(std::string(5000, '\0')), ended, "Parse error at line 1:\r\n");
    EXPECT_EXIT(
        {
            SclSession::failReadAfter(4096);
            session.parseText("<SCL>\n" + std::string(10000, ' ') + "</SCL>");
        },
        ended, "Parse error at line 2:\r\nInput/output error\r\n.*" + where + "the file cannot be read");
    std::string bomb = "<!DOCTYPE SCL [<!ENTITY e0 'ha'>";
    for (int i = 1; i < 20; ++i) {
        const std::string before = "&e" + std::to_string(i - 1) + ";";
        bomb += "<!ENTITY e" + std::to_string(i) + " '" + before + before + before + before + "'>";
    }
    EXPECT_EXIT(session.parseText(bomb + "]><SCL>&e19;</SCL>"), ended,
                "Parse error at line 1:\r\n.*amplification");
}

TEST(DocumentTreeDeath, AFileThatCannotBeOpenedIsNamed) {
    EXPECT_EXIT(
        {
            mpAlloc(1000, &model_gen_pool);
            parse("/no/such/file.icd");
        },
        testing::ExitedWithCode(255),
        "^Open file /no/such/file.icd failed!\r\n.*/no/such/file.icd: cannot be opened: No such file");
}

// Runs `run` in a process of its own: 0 if it came back, 255 if it ended the process as a fault of the
// file does, else the finding of a sanitizer, or -1 for a signal.
template <class Run> int endOf(Run run) {
    const pid_t child = fork();
    if (child == 0) {
        if (std::freopen("/dev/null", "w", stderr) == nullptr) {
            _exit(1);
        }
        alarm(60);
        run();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

template <class Run> bool endsOrderly(Run run) {
    const int end = endOf(run);
    return end == 0 || end == 255;
}

TEST(DocumentTreeDeath, AFileCutAtAnyOctetAndFilesOfHugePartsAreAModelOrAnEnd) {
    const std::string whole =
        sclDocument(sclDevice("<DOI name='Mod'><DAI name='stVal'><Val>&#49;</Val></DAI></DOI>"),
                    "<LNodeType id='T0' lnClass='LLN0'><DO name='Mod' type='M'/></LNodeType><DOType id='M' "
                    "cdc='INC'><DA name='stVal' fc='ST' bType='INT32'/></DOType>");
    std::size_t cut = 0;
    for (; cut <= whole.size(); cut += cut < 40 ? 1 : 5) {
        ASSERT_TRUE(endsOrderly([&] { SclSession().build(whole.substr(0, cut)); })) << cut;
    }
    const std::string huge(1000000, 'x');
    std::string lines;
    for (int i = 0; i < 400000; ++i) {
        lines += "line\n";
    }
    const std::string files[] = {
        sclDocument(sclDevice("<DOI name='" + huge + "'/>", huge), ""),
        sclDocument(sclDevice("<DOI name='a'><DAI name='b'><Val>" + lines + "</Val></DAI></DOI>"), ""),
        "<" + huge + "/>",
        "<!DOCTYPE SCL SYSTEM 'file:///etc/passwd' [<!ENTITY x SYSTEM '/etc/passwd'>]><SCL>&x;</SCL>",
    };
    for (const std::string &file : files) {
        EXPECT_TRUE(endsOrderly([&] { SclSession().build(file, 0x800000); })) << file.substr(0, 60);
    }
}

TEST(DocumentTreeDeath, TheInstrumentsFileCutAnywhereIsAnEnd) {
    std::ifstream stream(IED_SOURCE_DIR "/device/tffs0/ZRX418.icd", std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(stream), {}};
    ASSERT_GT(whole.size(), 100000U);
    constexpr u32 pool = 0x500000 * sizeof(void *) / 4;
    constexpr std::size_t step = 19997; // falls on tags, names, values and blanks alike
    EXPECT_EQ(endOf([&] { SclSession().build(whole, pool); }), 0);
    for (std::size_t cut = 1; cut < whole.size(); cut += step) {
        ASSERT_EQ(endOf([&] { SclSession().build(whole.substr(0, cut), pool); }), 255) << cut;
    }
    const std::size_t end = whole.rfind('>');
    for (std::size_t rest = 0; rest < 60; ++rest) { // at the closing tags, where all else is read
        ASSERT_EQ(endOf([&] { SclSession().build(whole.substr(0, end - rest), pool); }), 255) << rest;
    }
}

} // namespace
