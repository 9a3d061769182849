// SPDX-License-Identifier: MIT
// The status report: this access point's role in the mesh, and its neighbours there.
#include "common/json.h"
#include "meshlink/log.h"
#include "meshlink/place.h"
#include "meshlink/vap.h"
#include "ops/operations.h"
#include "orlo/exports.h"

using orlo::Json;

namespace {

// The steps below work in its name.
constexpr const char* report_status = "create_ml_status_report";

enum Role { root, branch, leaf };

const char* const role_names[] = {"root", "branch", "leaf"};

struct Neighbours {
    const Json path;
    const Json children;
    const Json parent;
};

Role role_beside(const Neighbours& neighbours) {
    if (orlo::is_ml_root()) {
        return root;
    }
    return json_array_size(neighbours.children.get()) == 0 ? leaf : branch;
}

const void* pointer(const Json& value) {
    return value.get();
}

// A report takes references of its own ("O"), so that the neighbours are released once, packed or
// not.
json_t* pack_root(const Neighbours& have) {
    if (!have.children || !have.path) {
        MESH_LOG_FOR(report_status, orlo::error_level,
                     "insufficient params children: %p, path: %p\n", pointer(have.children),
                     pointer(have.path));
        return nullptr;
    }
    return json_pack("{s:i,s:O,s:O}", "role", root, "children", have.children.get(), "path",
                     have.path.get());
}

json_t* pack_branch(const Neighbours& have) {
    if (!have.children || !have.parent || !have.path) {
        MESH_LOG_FOR(report_status, orlo::error_level,
                     "insufficient params children: %p, parent: %p, path: %p\n",
                     pointer(have.children), pointer(have.parent), pointer(have.path));
        return nullptr;
    }
    return json_pack("{s:i,s:O,s:O,s:O}", "role", branch, "children", have.children.get(), "parent",
                     have.parent.get(), "path", have.path.get());
}

json_t* pack_leaf(const Neighbours& have) {
    if (!have.parent || !have.path) {
        MESH_LOG_FOR(report_status, orlo::error_level, "insufficient params parent: %p, path: %p\n",
                     pointer(have.parent), pointer(have.path));
        return nullptr;
    }
    return json_pack("{s:i,s:O,s:O}", "role", leaf, "parent", have.parent.get(), "path",
                     have.path.get());
}

json_t* pack(Role role, const Neighbours& have) {
    switch (role) {
    case root:
        return pack_root(have);
    case branch:
        return pack_branch(have);
    case leaf:
        break;
    }
    return pack_leaf(have);
}

} // namespace

json_t* create_ml_status_report(void* /*unused*/) {
    MESH_ENTER();
    if (!orlo::is_ml_enable()) {
        MESH_INFO("NVX-ML is disabled\n");
        return nullptr;
    }
    const Neighbours neighbours = {
        Json(orlo::get_ml_path()),
        Json(orlo::get_ml_children()),
        Json(orlo::get_ml_parent()),
    };
    if (json_array_size(neighbours.path.get()) == 0) {
        MESH_ERROR("no path information\n");
        return nullptr;
    }
    const Role role = role_beside(neighbours);
    MESH_INFO("role: %s\n", role_names[role]);
    json_t* report = pack(role, neighbours);
    if (report == nullptr) {
        MESH_ERROR("failed to pack JSON\n");
    }
    return report;
}
