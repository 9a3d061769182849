// SPDX-License-Identifier: MIT
/* Loads what the library loads, and has nothing of its own. */
