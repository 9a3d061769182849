// Stands in for the operations that are still to be built: says so and fails.
#include "common/log.h"
#include "ops/operations.h"

#define ORLO_NOT_BUILT(result, name, parameters, failure)                                          \
    result name parameters {                                                                       \
        LOG_ERROR_FOR(#name, "not built yet\n");                                                   \
        return failure;                                                                            \
    }
#include "ops/not_built_yet.def"
