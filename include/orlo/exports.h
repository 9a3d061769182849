// SPDX-License-Identifier: MIT
/*
 * The library's other exported names: what an agent may bind beside Vendor_Ops.
 */
#ifndef ORLO_EXPORTS_H
#define ORLO_EXPORTS_H

#include <stddef.h>
#include <stdint.h>

#include "orlo/records.h"
#include "orlo/vendor_ops.h"

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* ---- Configuration store. All return 0, or -1 with a line on standard error. ---- */

/*
 * Stages package.key = value, where key is "section.option" (or "@type[index].option"). An empty
 * value stages the removal of the option. Package, key and value together reach the store up to 511
 * characters; what is longer is cut.
 */
int uciSetValue(const char* package, const char* key, const char* value);

/*
 * Copies the value of a text option into `out`, staged changes included: at most the smaller of
 * out_size and 256 bytes, the rest of them zero-filled. The copy is NOT terminated when the value
 * fills these bytes: give a zeroed buffer that is larger. Lists and sections cannot be read.
 */
int uciGetValue(const char* package, const char* key, char* out, size_t out_size);

/* Stages appending `value` to the list option `key`; same length rule as uciSetValue. */
int uciAddListElement(const char* package, const char* key, const char* value);

/* Stages removing every `value` from the list option `key`; 255 characters reach the store. */
int uciDelListElement(const char* package, const char* key, const char* value);

/*
 * Stages deleting an option ("section.option") or a section ("section"). What does not exist counts
 * as deleted, unless must_exist is non-zero: then it is a failure.
 */
int uciDeleteValue(const char* package, const char* key, int must_exist);

/*
 * Writes the staged changes of a package to its file; of all packages when `package` is NULL or "".
 * Among all packages the first failure ends the call: later ones stay staged.
 */
int uciCommitValue(const char* package);

/*
 * Discards staged changes: of everything (NULL, NULL), of a package (package, NULL), or of one
 * section or option (package, key).
 */
int uciRevertValue(const char* package, const char* key);

/* Prints the package's staged changes to standard error, one a line: "wireless.wifi0.channel=36".
 */
int uciGetChanges(const char* package);

/* ---- Names of radios and VAPs. radio is 0 or 1, vap 0 to 15. ---- */

/* Keys of per-radio options, indexed by radio: of package "wireless", but for the last. */
extern const char* const config_disabled_option[2];
extern const char* const config_channel_option[2];
extern const char* const config_power_option[2];
extern const char* const config_bw_option[2];
extern const char* const config_eg_ch_option[2];
extern const char* const config_force_disable_option[2]; /* package "orloagent" */

/* The driver's interface names "wdev0ap0" ... "wdev1ap15", at radio * 16 + vap. */
extern const char* const mwl_interface_name[32];

/* The VAP's section name in package "wireless" ("wifi1vap0"): constant; "" for a wrong index. */
const char* get_uci_ifname(int radio, int vap);

/* The VAP's interface name at the driver ("wdev1ap0"): constant; "" for a wrong index. */
const char* get_mwl_ifname(int radio, int vap);

/* ---- State of radios and VAPs: 1 or 0; 0 also when the state cannot be read. ---- */

int is_radio_enabled(int radio);                    /* "disabled" is there and not "1" */
int is_vap_enabled(int radio, int vap);             /* "disabled" is there and not "1" */
int is_vap_up(int radio, int vap);                  /* its interface is listed as up */
int is_vap_ml_mode(int radio, int vap);             /* "mode" is "qx_mesh" */
int is_vap_ml_acceptor_enabled(int radio, int vap); /* "acceptor" is "1" */
int uci_is_vap_quilt(int radio, int vap);           /* "mode" is "quilt" */
int uci_is_vap_ml_sta(int radio, int vap);          /* "mode" is "qx_mesh" */
int uci_is_vap_area_auth(int radio, int vap);       /* "macfilter" is "4" */

/* ---- The driver's wireless-extension queries. No interface name may be NULL. ---- */

/* Issues a wireless-extension request on the library's own socket; the result is ioctl's. */
int iwinfo_ioctl(int request, void* argument);

/* 1 when the interface answers as a wireless one, else 0. */
int wext_probe(const char* ifname);

/* 1 when the interface is of this driver, which has a table of stations, else 0. */
int mwl_probe(const char* ifname);

/*
 * Reads a VAP's table of stations into `out`: up to 341 struct mwl_assoc_entry, 88 bytes each, one
 * behind the other. `out` must have room for all of them and be cleared: it keeps what the driver
 * does not tell. `len` becomes the length in bytes. 0; or -1, which leaves both alone.
 */
int mwl_get_assoclist(const char* ifname, char* out, int* len);

/* The operating channel of a radio ("wdev0"), or of a VAP's radio ("wdev0ap3"). 0 or -1. */
int mwl_get_channel(const char* ifname, uint32_t* channel);

/* The interface's BSSID: six bytes. 0 or -1, which leaves the bytes alone. */
int mwl_get_bssid(const char* ifname, unsigned char* bssid);

/* ---- Associated clients. ---- */

/*
 * The stations of each VAP, at radio * 16 + vap, as prepare_assoc_client_list() last found them;
 * NULL for a VAP without any. The library's: read only.
 */
extern struct assoc_client_node* assoc_client_list[32];

/*
 * Lists the stations of all VAPs anew: from the driver's tables, those of quilt VAPs from its
 * station file. Mesh-link VAPs are left out. 0; or -1 at the first failure, which keeps what is
 * listed by then.
 */
int prepare_assoc_client_list(void);

/* Writes a line for each VAP that has stations: "0,2,a4:5e:60:01:02:03,00:11:22:33:44:55". */
void write_assoc_client_to_file(const char* path);

/* Writes the struct assoc_client_record of every station, in the order of the list. */
void write_assoc_client_detail_to_file(const char* path);

/* Announces the detail file to the agent: api_get_assoc_client_detail's two datagrams. 0 or -1. */
int sent_assoc_client_to_orloagent(void);

/*
 * Counters of the stations that the driver's tables hold: see struct ORLOClientInfoList. NULL when
 * there are none. A VAP whose table cannot be read right after one with 88 stations or more gets a
 * block of zeros, an element for every 88 of that one.
 */
struct ORLOClientInfoList* get_all_associated_clients_info(void);

/*
 * ---- The quilt scan's sources. Both add an entry for each station to a JSON object, under its
 * address, in the place of what is there. The object stays the caller's. ----
 */

/* The stations that the radios hear. 0, or -1 when the list cannot be read. */
int get_cqscan_detected_clients(struct json_t* object);

/* The stations that a VAP serves; of a VAP that is not the quilt's, or not there, none. 0 or -1. */
int get_cqscan_assoc_clients(int radio, int vap, struct json_t* object);

/* ---- Also in the table. ---- */

void api_mark_config_apply_flag(void);                   /* slot 114 */
int api_show_mem_usage(const char* tag);                 /* slot 115 */
int api_get_CQ_status(int check_hash, const char* path); /* slot 119 */
struct json_t* create_ml_status_report(void* unused);    /* slot 123 */
struct json_t* create_ml_statistics_report(void);        /* slot 124 */

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
