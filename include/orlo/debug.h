// SPDX-License-Identifier: MIT
/*
 * What the library imports from its host: the agent's logging library, libdebug. The access point's
 * image supplies it; platform/libdebug stands in for it elsewhere.
 */
#ifndef ORLO_DEBUG_H
#define ORLO_DEBUG_H

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Logs one line. The lower the level, the more important: 1 marks an error, 5 a trace line.
 * `function_name` is the operation's own name, `line` its source line. The format is printf's and
 * carries its own line end.
 */
void orlo_agent_debug_log(int module, int level, const char* function_name, int line,
                          const char* format, ...) __attribute__((format(printf, 5, 6)));

/* Non-zero when lines of this module and level are kept. */
int is_debug_module_level_enabled(int module, int level);

/* Copies a text file to standard error; a file that cannot be read is skipped. */
void print_file(const char* path);

/*
 * Reads "aa:bb:cc:dd:ee:ff" into six bytes. Returns 0, or -1 with six zero bytes when the text is
 * not an address.
 */
int StringMacToHex(const char* text, unsigned char* mac);

/* Non-zero lets api_apply_hw_specific skip its check of the PHY mode. 0 in normal operation. */
extern int Fake_mode;

#ifdef __cplusplus
}
#endif

#endif
