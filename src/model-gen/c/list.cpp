#include "model-gen/c/list.h"

namespace ied {

void listAdd(ListLink *link, ListHead *head) {
    link->next = head->next;
    head->next = link;
}

void listAddTail(ListLink *link, ListHead *head) {
    listLast(head)->next = link;
    link->next = nullptr;
}

void listAppend(ListLink *link, TailedList *list) {
    ListLink *last = list->last != nullptr ? list->last : listLast(list);
    last->next = link;
    link->next = nullptr;
    list->last = link;
}

void listDel(ListLink *link, ListHead *head) {
    for (ListLink *at = head; at->next != nullptr; at = at->next) {
        if (at->next == link) {
            at->next = link->next;
            return;
        }
    }
}

ListLink *listLast(ListHead *head) {
    ListLink *at = head;
    while (at->next != nullptr) {
        at = at->next;
    }
    return at;
}

} // namespace ied
