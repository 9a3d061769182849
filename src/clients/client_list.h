// SPDX-License-Identifier: MIT
// The list of associated clients, VAP by VAP: assoc_client_list.
#pragma once

#include "orlo/exports.h"

namespace orlo {

// Puts a client at the end of a VAP's list. 0 or -1.
int insert_assoc_client_list(const assoc_client_record* record, int radio, int vap);

// Empties the lists of all VAPs.
void destroy_assoc_client_list();

} // namespace orlo
