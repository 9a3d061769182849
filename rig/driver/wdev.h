// SPDX-License-Identifier: GPL-2.0-only
/*
 * The face of the access point's wireless driver, laid over simulated radios.
 *
 * The simulated driver (mac80211_hwsim) brings the VAPs. This module adds what it lacks: the radio
 * devices wdev0 and wdev1, wireless-extension answers of radios and VAPs, the private commands
 * "setcmd" and "getcmd", and the debug files of the station table.
 */
#ifndef WDEV_H
#define WDEV_H

#include <linux/if_ether.h>
#include <linux/netdevice.h>
#include <linux/types.h>
#include <net/cfg80211.h>
#include <net/iw_handler.h>

#define WDEV_RADIOS 2
#define WDEV_VAPS 16
#define WDEV_PATH_SIZE 64
#define WDEV_MAGIC 0x4D52564C /* begins what the driver copies to a program */

/* The names that the interfaces have at the driver. */
struct wdev_name {
	unsigned int radio;
	unsigned int vap;
};

bool wdev_parse_vap(const char *name, struct wdev_name *vap);
bool wdev_is_vap(const struct net_device *dev);

/* What the driver keeps of a radio. All of it is guarded by the RTNL lock. */
struct wdev_radio {
	struct net_device *dev;
	unsigned int index;
	unsigned int wanted_channel; /* set, waiting for the commit; 0: none */
	bool two_segments;
	unsigned int second_channel;
	char power_table[WDEV_PATH_SIZE];
	unsigned int power_percent;   /* of the loaded table */
	unsigned int applied_percent; /* 0: never applied */
};

/* radio.c: the radio devices */
int wdev_create_radios(void);
void wdev_destroy_radios(void);
struct wdev_radio *wdev_radio_of(const struct net_device *dev);
struct net_device *wdev_running_vap(unsigned int radio);
unsigned int wdev_channel_of_vap(struct net_device *vap);
void wdev_keep_counters(struct net_device *vap);
int wdev_commit(struct wdev_radio *radio);

/* wext.c: wireless-extension requests */
extern const struct iw_handler_def wdev_radio_handlers;
void wdev_take_over(struct net_device *vap);
void wdev_give_back(struct net_device *vap);

/* private.c: setcmd and getcmd */
#define WDEV_PRIVATE_HANDLERS 2
#define WDEV_PRIVATE_COMMANDS 2
extern const iw_handler wdev_private_handlers[WDEV_PRIVATE_HANDLERS];
extern const struct iw_priv_args wdev_private_args[WDEV_PRIVATE_COMMANDS];

/* stations.c: who is connected to a VAP */
struct wdev_station {
	u8 mac[ETH_ALEN];
	struct station_info info;
};

typedef int (*wdev_station_visit)(const struct wdev_station *station, void *data);
int wdev_for_each_station(struct net_device *vap, wdev_station_visit visit, void *data);
int wdev_copy_station_table(struct net_device *vap, void __user *to, u32 size);
__be32 wdev_station_ipv4(const u8 *mac);

/* debugfs.c: the files below /sys/kernel/debug/sta */
void wdev_create_debug_files(void);
void wdev_remove_debug_files(void);

#endif
