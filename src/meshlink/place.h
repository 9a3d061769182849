// SPDX-License-Identifier: MIT
// This access point's place in the mesh. The JSON values are new references, NULL on a failure,
// which has been logged.
#pragma once

#include <jansson.h>

namespace orlo {

// Whether it is the one that leads out of the mesh; also when that cannot be told.
bool is_ml_root();

// The addresses from the root down to here.
json_t* get_ml_path();

// The addresses of the access points that are connected to this one.
json_t* get_ml_children();

// The access point that this one is connected to; NULL also when there is none.
json_t* get_ml_parent();

} // namespace orlo
