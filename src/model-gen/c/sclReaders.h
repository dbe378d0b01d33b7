// The readers of the SCL file's sections. Each takes the element and logs and skips what it does
// not know; none refuses a document but for names that the model cannot hold.
#pragma once

#include "model-gen/c/documentTree.h"
#include "model-gen/c/sclRecords.h"

namespace ied {

// Reads the whole tree into the records of sclRecords.h, sections in any order.
void getICD();
void getInfoHead(tree_node *node);
void getIED(tree_node *node);
void getServices(tree_node *node, scl::Services *services);
void getAP(tree_node *node, scl::AccessPoint *accessPoint);

void getLDeviceList(tree_node *node);
void getDataSet(tree_node *node, scl::LN *ln);
void getReportControl(tree_node *node, scl::LN *ln);
void getLogContrl(tree_node *node, scl::LN *ln);
void getInputs(tree_node *node, scl::LN *ln);
void getDOI(tree_node *node, scl::LN *ln);
void getDAI(tree_node *node, scl::Instances *owner);
void getSDI(tree_node *node, scl::Instances *owner);

void getTemplateList(tree_node *node);
void getLNodeType(tree_node *node);
void getDOType(tree_node *node);
void getDAType(tree_node *node);
void getEnumType(tree_node *node);

void getComm(tree_node *node);
void getCommList(tree_node *node);

void getPrivate(tree_node *node);
void getOrvPrivate(tree_node *node, TailedList *list);
void getIniConf(tree_node *node, TailedList *store);
void getIedResources(tree_node *node, scl::IedResources *resources);
void getGooseSubscription(tree_node *node, TailedList *head);

// Derives the GOOSE map from the subscriptions.
void modelGetGooseMap();
// Value of a hexadecimal digit, 0 for any other character; of a text, kept to 16 bits.
u8 ctoi(char c);
u16 strtoint(const char *text);

// Forgets all records; their memory is the pool's.
void sclForget();

} // namespace ied
