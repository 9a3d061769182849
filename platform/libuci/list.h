// SPDX-License-Identifier: MIT
// The circular lists of the public structures.
#pragma once

#include "uci.h"

namespace uci {

inline void list_init(uci_list& head) {
    head.next = head.prev = &head;
}

inline void list_insert_before(uci_list& position, uci_list& link) {
    link.next = &position;
    link.prev = position.prev;
    position.prev->next = &link;
    position.prev = &link;
}

inline void list_append(uci_list& head, uci_list& link) {
    list_insert_before(head, link);
}

inline void list_remove(uci_list& link) {
    link.prev->next = link.next;
    link.next->prev = link.prev;
}

/// For range-based loops over the elements of a list, which must stay in it meanwhile.
class Elements {
public:
    class Iterator {
    public:
        explicit Iterator(uci_list* link) : link_(link) {}
        uci_element& operator*() const { return *list_to_element(link_); }
        Iterator& operator++() {
            link_ = link_->next;
            return *this;
        }
        bool operator!=(const Iterator& other) const { return link_ != other.link_; }

    private:
        uci_list* link_;
    };

    explicit Elements(uci_list& head) : head_(head) {}
    [[nodiscard]] Iterator begin() const { return Iterator(head_.next); }
    [[nodiscard]] Iterator end() const { return Iterator(&head_); }

private:
    uci_list& head_;
};

} // namespace uci
