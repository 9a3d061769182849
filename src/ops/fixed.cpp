// SPDX-License-Identifier: MIT
// The operations that the table itself answers.
#include "common/text.h"
#include "ops/operations.h"
#include "uci/option.h"

#include <glib.h>

using orlo::OptionValue;
using orlo::Text;

// Reserved slots: accepted, ignored, not logged. Three of them are alike but stay three functions,
// since an agent may tell slots apart by their address.
int api_reserved_13(void* /*a*/, void* /*b*/, void* /*c*/) {
    return 0;
}

int api_reserved_19(int /*a*/) {
    return 0;
}

int api_reserved_42(int /*a*/, int /*b*/) {
    return 0;
}

int api_reserved_43(int /*a*/, int /*b*/) {
    return 0;
}

int api_reserved_44(int /*a*/, int /*b*/) {
    return 0;
}

int api_is_captive_portal_capable() {
    return g_file_test("/lib/modules/4.14.76/qxkk_cp.ko", G_FILE_TEST_EXISTS) ? 1 : 0;
}

int api_is_captive_portal_enabled(int radio, int vap) {
    OptionValue<8> enabled;
    if (!enabled.read("wireless", Text<256>("wifi%dvap%d.captive_portal", radio, vap))) {
        return 0;
    }
    return enabled.is("0") ? 0 : 1;
}
