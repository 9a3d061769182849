/* Loads what the library loads, and has nothing of its own. */
