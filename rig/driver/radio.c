// SPDX-License-Identifier: GPL-2.0-only
/*
 * The radios: network devices without traffic of their own, whose counters are those of their VAPs
 * and whose channel is the one that their VAPs are on.
 */
#include <linux/etherdevice.h>
#include <linux/kmod.h>
#include <linux/module.h>
#include <linux/rtnetlink.h>
#include <linux/spinlock.h>

#include "wdev.h"

static char *commit_program = "/usr/lib/wdev/commit";
module_param(commit_program, charp, 0444);
MODULE_PARM_DESC(commit_program, "Program that moves a radio's VAPs: commit_program RADIO CHANNEL");

static struct wdev_radio radios[WDEV_RADIOS];

/* What the VAPs that have gone had counted: a radio's counters never go back. */
static struct rtnl_link_stats64 past[WDEV_RADIOS];
static DEFINE_SPINLOCK(past_lock);

static void add_counters(struct rtnl_link_stats64 *sum, const struct rtnl_link_stats64 *more)
{
	sum->rx_packets += more->rx_packets;
	sum->rx_bytes += more->rx_bytes;
	sum->rx_errors += more->rx_errors;
	sum->tx_packets += more->tx_packets;
	sum->tx_bytes += more->tx_bytes;
	sum->tx_errors += more->tx_errors;
}

/* A VAP that moves to another name space leaves the radio, and counts for it no more. */
void wdev_keep_counters(struct net_device *vap)
{
	struct rtnl_link_stats64 counted;
	struct wdev_name name;

	if (!wdev_parse_vap(vap->name, &name))
		return;
	dev_get_stats(vap, &counted);
	spin_lock_bh(&past_lock);
	add_counters(&past[name.radio], &counted);
	spin_unlock_bh(&past_lock);
}

static void radio_get_stats(struct net_device *dev, struct rtnl_link_stats64 *sum)
{
	const unsigned int index = wdev_radio_of(dev)->index;
	struct rtnl_link_stats64 counted;
	struct net_device *vap;
	struct wdev_name name;

	rcu_read_lock();
	for_each_netdev_rcu(&init_net, vap) {
		if (!vap->ieee80211_ptr || !wdev_parse_vap(vap->name, &name) || name.radio != index)
			continue;
		add_counters(sum, dev_get_stats(vap, &counted));
	}
	rcu_read_unlock();
	spin_lock_bh(&past_lock);
	add_counters(sum, &past[index]);
	spin_unlock_bh(&past_lock);
}

static netdev_tx_t radio_drop(struct sk_buff *skb, struct net_device *dev)
{
	dev_kfree_skb(skb);
	return NETDEV_TX_OK;
}

static const struct net_device_ops radio_ops = {
	.ndo_start_xmit = radio_drop,
	.ndo_get_stats64 = radio_get_stats,
	.ndo_set_mac_address = eth_mac_addr,
};

/* Points at its radio in the table, whose entries outlive the devices. */
struct wdev_radio *wdev_radio_of(const struct net_device *dev)
{
	return *(struct wdev_radio **)netdev_priv(dev);
}

static void radio_setup(struct net_device *dev)
{
	ether_setup(dev);
	dev->netdev_ops = &radio_ops;
	dev->wireless_handlers = &wdev_radio_handlers;
	dev->needs_free_netdev = true;
	dev->flags |= IFF_NOARP;
	dev->flags &= ~IFF_MULTICAST;
}

static int create_radio(unsigned int index)
{
	/* The VAPs' addresses are those below ff. */
	const u8 address[ETH_ALEN] = { 0x02, 0, 0, 0, index, 0xff };
	struct net_device *dev;
	int error;

	dev = alloc_netdev(sizeof(struct wdev_radio *), "wdev%d", NET_NAME_ENUM, radio_setup);
	if (!dev)
		return -ENOMEM;
	*(struct wdev_radio **)netdev_priv(dev) = &radios[index];
	eth_hw_addr_set(dev, address);
	radios[index].index = index;
	error = register_netdev(dev);
	if (error) {
		free_netdev(dev);
		return error;
	}
	radios[index].dev = dev;
	return 0;
}

int wdev_create_radios(void)
{
	unsigned int i;

	for (i = 0; i < WDEV_RADIOS; i++) {
		const int error = create_radio(i);

		if (error) {
			wdev_destroy_radios();
			return error;
		}
	}
	return 0;
}

void wdev_destroy_radios(void)
{
	unsigned int i;

	for (i = 0; i < WDEV_RADIOS; i++) {
		if (radios[i].dev)
			unregister_netdev(radios[i].dev);
		radios[i].dev = NULL;
	}
}

/* The channel that a VAP sends its beacons on, 0 when it sends none. */
unsigned int wdev_channel_of_vap(struct net_device *vap)
{
	struct wireless_dev *wdev = vap->ieee80211_ptr;
	unsigned int channel = 0;

	ASSERT_RTNL();
	mutex_lock(&wdev->mtx);
	if (wdev->iftype == NL80211_IFTYPE_AP && wdev->links[0].ap.beacon_interval &&
	    wdev->links[0].ap.chandef.chan)
		channel =
			ieee80211_frequency_to_channel(wdev->links[0].ap.chandef.chan->center_freq);
	mutex_unlock(&wdev->mtx);
	return channel;
}

/* A VAP that sends beacons, in the order of their creation. */
struct net_device *wdev_running_vap(unsigned int radio)
{
	struct net_device *vap;
	struct wdev_name name;

	ASSERT_RTNL();
	for_each_netdev(&init_net, vap) {
		if (vap->ieee80211_ptr && wdev_parse_vap(vap->name, &name) && name.radio == radio &&
		    wdev_channel_of_vap(vap))
			return vap;
	}
	return NULL;
}

/*
 * Moves the VAPs to the channel that was set. They are hostapd's, which asks the kernel in its
 * turn: the program is started, and not waited for, as this runs with the RTNL lock held.
 */
int wdev_commit(struct wdev_radio *radio)
{
	static char *environment[] = { "HOME=/", "PATH=/usr/sbin:/usr/bin:/sbin:/bin", NULL };
	char index[4];
	char channel[12];
	char *words[] = { commit_program, index, channel, NULL };

	ASSERT_RTNL();
	if (!radio->wanted_channel)
		return 0;
	snprintf(index, sizeof(index), "%u", radio->index);
	snprintf(channel, sizeof(channel), "%u", radio->wanted_channel);
	radio->wanted_channel = 0;
	return call_usermodehelper(words[0], words, environment, UMH_WAIT_EXEC);
}
