// SPDX-License-Identifier: GPL-2.0-only
/*
 * Wireless-extension requests.
 *
 * A VAP answers them as cfg80211 does for it, but for those below, which cfg80211 does not answer
 * for access points; a radio answers those below only. All of them are called with the RTNL lock
 * held.
 */
#include <linux/if_arp.h>
#include <linux/math64.h>
#include <linux/module.h>
#include <linux/rtnetlink.h>
#include <linux/slab.h>

#include "wdev.h"

static bool frequency_in_mhz;
module_param(frequency_in_mhz, bool, 0644);
MODULE_PARM_DESC(frequency_in_mhz, "Tell a radio's channel as its frequency, not as its number");

#define STANDARD(request) ((request)-SIOCIWFIRST)
#define STANDARD_COUNT 64
#define LARGEST_CHANNEL 999 /* greater numbers are frequencies */

static unsigned int radio_index(const struct net_device *dev)
{
	struct wdev_name name;

	return wdev_parse_vap(dev->name, &name) ? name.radio : wdev_radio_of(dev)->index;
}

static enum nl80211_band band_of(unsigned int radio)
{
	return radio == 0 ? NL80211_BAND_2GHZ : NL80211_BAND_5GHZ;
}

static struct iw_freq as_frequency(unsigned int radio, unsigned int channel)
{
	const struct iw_freq frequency = {
		.m = ieee80211_channel_to_frequency(channel, band_of(radio)),
		.e = 6,
	};

	return frequency;
}

static int get_name(struct net_device *dev, struct iw_request_info *info, union iwreq_data *request,
		    char *extra)
{
	strscpy(request->name, "IEEE 802.11", sizeof(request->name));
	return 0;
}

static int get_frequency(struct net_device *dev, struct iw_request_info *info,
			 union iwreq_data *request, char *extra)
{
	const unsigned int radio = radio_index(dev);
	struct net_device *vap = wdev_running_vap(radio);
	struct iw_freq *frequency = &request->freq;
	unsigned int channel;

	if (!vap)
		return -EINVAL;
	channel = wdev_channel_of_vap(vap);
	memset(frequency, 0, sizeof(*frequency));
	if (frequency_in_mhz)
		*frequency = as_frequency(radio, channel);
	else
		frequency->m = channel;
	return 0;
}

/* Accepts a channel's number, or its frequency. It takes effect with the commit. */
static int set_frequency(struct net_device *dev, struct iw_request_info *info,
			 union iwreq_data *request, char *extra)
{
	struct wdev_radio *radio = wdev_radio_of(dev);
	const struct iw_freq *wanted = &request->freq;
	u64 hertz = wanted->m;
	int channel = wanted->m;
	int i;

	if (wanted->m <= 0 || wanted->e < 0 || wanted->e > 6)
		return -EINVAL;
	if (wanted->m > LARGEST_CHANNEL || wanted->e > 0) {
		for (i = 0; i < wanted->e; i++)
			hertz *= 10;
		channel = ieee80211_frequency_to_channel((u32)div_u64(hertz, 1000000));
	}
	if (ieee80211_channel_to_frequency(channel, band_of(radio->index)) == 0)
		return -EINVAL;
	radio->wanted_channel = channel;
	return 0;
}

static int commit(struct net_device *dev, struct iw_request_info *info, union iwreq_data *request,
		  char *extra)
{
	return wdev_commit(wdev_radio_of(dev));
}

/* The channels of the radio's band; cfg80211's list is of both bands, and ends before the last. */
static int get_range(struct net_device *dev, struct iw_request_info *info,
		     union iwreq_data *request, char *extra)
{
	const unsigned int radio = radio_index(dev);
	struct net_device *vap = wdev_running_vap(radio);
	struct iw_range *range = (struct iw_range *)extra;
	struct ieee80211_supported_band *band;
	int i;

	if (!vap)
		return -EOPNOTSUPP;
	band = vap->ieee80211_ptr->wiphy->bands[band_of(radio)];
	memset(range, 0, sizeof(*range));
	range->we_version_compiled = WIRELESS_EXT;
	range->we_version_source = 22;
	for (i = 0; band && i < band->n_channels; i++) {
		const struct ieee80211_channel *channel = &band->channels[i];
		const int number = ieee80211_frequency_to_channel(channel->center_freq);

		if (channel->flags & IEEE80211_CHAN_DISABLED)
			continue;
		if (range->num_frequency == IW_MAX_FREQUENCIES)
			break;
		range->freq[range->num_frequency] = as_frequency(radio, number);
		range->freq[range->num_frequency].i = number;
		range->num_frequency++;
	}
	range->num_channels = range->num_frequency;
	request->data.length = sizeof(*range);
	return 0;
}

static int get_access_point(struct net_device *dev, struct iw_request_info *info,
			    union iwreq_data *request, char *extra)
{
	request->ap_addr.sa_family = ARPHRD_ETHER;
	memcpy(request->ap_addr.sa_data, dev->dev_addr, ETH_ALEN);
	return 0;
}

static const iw_handler radio_standard[] = {
	[STANDARD(SIOCSIWCOMMIT)] = commit,	 [STANDARD(SIOCGIWNAME)] = get_name,
	[STANDARD(SIOCSIWFREQ)] = set_frequency, [STANDARD(SIOCGIWFREQ)] = get_frequency,
	[STANDARD(SIOCGIWRANGE)] = get_range,	 [STANDARD(SIOCGIWAP)] = get_access_point,
};

const struct iw_handler_def wdev_radio_handlers = {
	.standard = radio_standard,
	.num_standard = ARRAY_SIZE(radio_standard),
	.private = wdev_private_handlers,
	.num_private = WDEV_PRIVATE_HANDLERS,
	.private_args = wdev_private_args,
	.num_private_args = WDEV_PRIVATE_COMMANDS,
};

/* cfg80211's own answers with ours in between: the same for all VAPs. */
static iw_handler vap_standard[STANDARD_COUNT];

static struct iw_handler_def vap_handlers = {
	.standard = vap_standard,
	.num_standard = STANDARD_COUNT,
	.private = wdev_private_handlers,
	.num_private = WDEV_PRIVATE_HANDLERS,
	.private_args = wdev_private_args,
	.num_private_args = WDEV_PRIVATE_COMMANDS,
};

void wdev_take_over(struct net_device *vap)
{
	const struct iw_handler_def *own = vap->ieee80211_ptr->wiphy->wext;

	ASSERT_RTNL();
	if (own) {
		memcpy(vap_standard, own->standard,
		       min_t(size_t, own->num_standard, STANDARD_COUNT) * sizeof(iw_handler));
		vap_handlers.get_wireless_stats = own->get_wireless_stats;
	}
	vap_standard[STANDARD(SIOCGIWNAME)] = get_name;
	vap_standard[STANDARD(SIOCGIWFREQ)] = get_frequency;
	vap_standard[STANDARD(SIOCGIWRANGE)] = get_range;
	vap_standard[STANDARD(SIOCGIWAP)] = get_access_point;
	vap->wireless_handlers = &vap_handlers;
}

void wdev_give_back(struct net_device *vap)
{
	ASSERT_RTNL();
	if (vap->wireless_handlers == &vap_handlers)
		vap->wireless_handlers = NULL;
}
