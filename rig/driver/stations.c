// SPDX-License-Identifier: GPL-2.0-only
/*
 * The stations of a VAP, from the kernel's own tables.
 *
 * Only stations that may send data are told: one whose key turns out wrong has been associated for
 * a moment, and is never seen here.
 */
#include <linux/kernel.h>
#include <linux/module.h>
#include <linux/slab.h>
#include <linux/uaccess.h>
#include <net/arp.h>
#include <net/mac80211.h>
#include <net/neighbour.h>

#include "wdev.h"

#define MOST_STATIONS 341 /* as many as a reply of 32768 bytes has room for */

struct table_head {
	__le32 magic;
	__le32 reserved;
	__le32 count;
	__le32 reserved_too;
} __packed;

struct table_entry {
	u8 mac[ETH_ALEN];
	u8 reserved[20];
	u8 first_rate;	    /* Mbit/s, of what the station sends */
	s8 signal;	    /* dBm */
	__le32 second_rate; /* Mbit/s, of what is sent to it */
	u8 second_mcs;
	u8 second_flags;
	u8 second_tail[2];
	u8 scratch[4];
	u8 first_mcs;
	u8 first_flags;
	u8 first_tail[2];
	__be32 ipv4;
	u8 address[16];
	__le32 rx_packets;
	u8 gap1[4];
	__le32 rx_bytes;
	u8 gap2[4];
	__le32 tx_packets;
	u8 gap3[4];
	__le32 tx_bytes;
	u8 gap4[4];
} __packed;

static_assert(sizeof(struct table_head) == 16);
static_assert(sizeof(struct table_entry) == 96);

struct addresses {
	unsigned int count;
	u8 mac[MOST_STATIONS][ETH_ALEN];
};

/* mac80211 tells the stations of the whole radio, whichever VAP they are on. */
static void add_address(void *data, struct ieee80211_sta *station)
{
	struct addresses *all = data;

	if (all->count < MOST_STATIONS)
		memcpy(all->mac[all->count++], station->addr, ETH_ALEN);
}

static bool may_send_data(const struct station_info *info)
{
	return (info->sta_flags.mask & info->sta_flags.set) & BIT(NL80211_STA_FLAG_AUTHORIZED);
}

/* Ends with the first visit that does not return 0, with what it returned. */
int wdev_for_each_station(struct net_device *vap, wdev_station_visit visit, void *data)
{
	struct wdev_station *station = kzalloc(sizeof(*station), GFP_KERNEL);
	struct addresses *all = kvzalloc(sizeof(*all), GFP_KERNEL);
	int result = station && all ? 0 : -ENOMEM;
	unsigned int i;

	ASSERT_RTNL();
	if (!result)
		ieee80211_iterate_stations_atomic(wiphy_to_ieee80211_hw(vap->ieee80211_ptr->wiphy),
						  add_address, all);
	for (i = 0; !result && i < all->count; i++) {
		memset(station, 0, sizeof(*station));
		memcpy(station->mac, all->mac[i], ETH_ALEN);
		/* Refuses the stations of other VAPs. */
		if (cfg80211_get_station(vap, station->mac, &station->info))
			continue;
		if (may_send_data(&station->info))
			result = visit(station, data);
		cfg80211_sinfo_release_content(&station->info);
	}
	kvfree(all);
	kfree(station);
	return result;
}

struct neighbour_search {
	const u8 *mac;
	__be32 found;
};

static void match_neighbour(struct neighbour *neighbour, void *data)
{
	struct neighbour_search *search = data;

	if ((neighbour->nud_state & NUD_VALID) && net_eq(dev_net(neighbour->dev), &init_net) &&
	    ether_addr_equal(neighbour->ha, search->mac))
		memcpy(&search->found, neighbour->primary_key, sizeof(search->found));
}

/* The address that the station has spoken from, 0 before it has. */
__be32 wdev_station_ipv4(const u8 *mac)
{
	struct neighbour_search search = { .mac = mac };

	neigh_for_each(&arp_tbl, match_neighbour, &search);
	return search.found;
}

static u32 mbit_per_second(struct rate_info *rate)
{
	return cfg80211_calculate_bitrate(rate) / 10;
}

static bool has(const struct station_info *info, enum nl80211_sta_info item)
{
	return info->filled & BIT_ULL(item);
}

static void fill_entry(struct table_entry *entry, const struct wdev_station *station)
{
	struct station_info info = station->info;

	memset(entry, 0, sizeof(*entry));
	memcpy(entry->mac, station->mac, ETH_ALEN);
	if (has(&info, NL80211_STA_INFO_SIGNAL))
		entry->signal = info.signal;
	if (has(&info, NL80211_STA_INFO_RX_BITRATE)) {
		entry->first_rate = min_t(u32, mbit_per_second(&info.rxrate), U8_MAX);
		entry->first_mcs = info.rxrate.mcs;
		entry->first_flags = info.rxrate.flags & RATE_INFO_FLAGS_MCS ? 1 : 0;
	}
	if (has(&info, NL80211_STA_INFO_TX_BITRATE)) {
		entry->second_rate = cpu_to_le32(mbit_per_second(&info.txrate));
		entry->second_mcs = info.txrate.mcs;
		entry->second_flags = info.txrate.flags & RATE_INFO_FLAGS_MCS ? 1 : 0;
	}
	entry->ipv4 = wdev_station_ipv4(station->mac);
	entry->rx_packets = cpu_to_le32(info.rx_packets);
	entry->rx_bytes = cpu_to_le32((u32)info.rx_bytes);
	entry->tx_packets = cpu_to_le32(info.tx_packets);
	entry->tx_bytes = cpu_to_le32((u32)info.tx_bytes);
}

struct table_writer {
	u8 __user *to;
	unsigned int room;
	unsigned int count;
};

static int write_entry(const struct wdev_station *station, void *data)
{
	struct table_writer *writer = data;
	struct table_entry entry;

	if (writer->count == writer->room)
		return 0;
	fill_entry(&entry, station);
	if (copy_to_user(writer->to + sizeof(struct table_head) + writer->count * sizeof(entry),
			 &entry, sizeof(entry)))
		return -EFAULT;
	writer->count++;
	return 0;
}

/* A radio (no VAP) has no stations of its own. */
int wdev_copy_station_table(struct net_device *vap, void __user *to, u32 size)
{
	struct table_head head = { .magic = cpu_to_le32(WDEV_MAGIC) };
	struct table_writer writer = { .to = to };

	if (size < sizeof(head))
		return -EINVAL;
	writer.room = min_t(u32, (size - sizeof(head)) / sizeof(struct table_entry), MOST_STATIONS);
	if (vap) {
		const int error = wdev_for_each_station(vap, write_entry, &writer);

		if (error)
			return error;
	}
	head.count = cpu_to_le32(writer.count);
	return copy_to_user(to, &head, sizeof(head)) ? -EFAULT : 0;
}
