// SPDX-License-Identifier: MIT
// The layout of the records as C++ sees it. Nothing here runs: a moved member does not compile.
#include "layout.h"
