// SPDX-License-Identifier: MIT
#include "clients/client_list.h"

#include "common/identity.h"
#include "common/log.h"

#include <cstdlib>

assoc_client_node* assoc_client_list[32];

namespace {

// Where the next client goes; the last of an empty list means nothing.
assoc_client_node* last_client[32];

} // namespace

namespace orlo {

int insert_assoc_client_list(const assoc_client_record* record, int radio, int vap) {
    if (!is_vap(radio, vap)) {
        return -1;
    }
    auto* node = static_cast<assoc_client_node*>(calloc(1, sizeof(assoc_client_node)));
    if (node == nullptr) {
        LOG_TRACE("error: run out of memory for assoc_client_list.\n");
        return -1;
    }
    node->record = *record;

    assoc_client_node*& head = assoc_client_list[vap_slot(radio, vap)];
    assoc_client_node*& last = last_client[vap_slot(radio, vap)];
    (head == nullptr ? head : last->next) = node;
    last = node;
    return 0;
}

void destroy_assoc_client_list() {
    LOG_TRACE("Entering .... \n");
    for (assoc_client_node*& head : assoc_client_list) {
        while (head != nullptr) {
            assoc_client_node* next = head->next;
            free(head);
            head = next;
        }
    }
    LOG_TRACE("End .... \n");
}

} // namespace orlo
