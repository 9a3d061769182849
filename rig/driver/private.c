// SPDX-License-Identifier: GPL-2.0-only
/*
 * The private commands: "setcmd" takes a text, "getcmd" takes one and answers with one.
 *
 * A command of an even number has its text copied in by the wireless core, one of an odd number its
 * answer copied out; the text of "getcmd" is therefore fetched here.
 */
#include <linux/kernel.h>
#include <linux/module.h>
#include <linux/slab.h>
#include <linux/string.h>
#include <linux/uaccess.h>

#include "wdev.h"

#define COMMAND_SET SIOCIWFIRSTPRIV
#define COMMAND_GET (SIOCIWFIRSTPRIV + 1)
#define TEXT_SIZE 256
#define ANSWER_SIZE 1024

/* What "setcmd iwinfo" does for the library. */
#define OPERATION_PROBE 1
#define OPERATION_STATIONS 2
#define PROBE_SIZE 128

const struct iw_priv_args wdev_private_args[WDEV_PRIVATE_COMMANDS] = {
	{ COMMAND_SET, IW_PRIV_TYPE_CHAR | TEXT_SIZE, 0, "setcmd" },
	{ COMMAND_GET, IW_PRIV_TYPE_CHAR | TEXT_SIZE, IW_PRIV_TYPE_CHAR | ANSWER_SIZE, "getcmd" },
};

static int answer_probe(void __user *to, u32 size)
{
	u8 block[PROBE_SIZE] = {};
	const __le32 magic = cpu_to_le32(WDEV_MAGIC);

	memcpy(block, &magic, sizeof(magic));
	return copy_to_user(to, block, min_t(u32, size, sizeof(block))) ? -EFAULT : 0;
}

/* iwinfo OPERATION INPUT INPUT-SIZE OUTPUT OUTPUT-SIZE, with the addresses of buffers. */
static int set_iwinfo(struct net_device *dev, const char *text)
{
	unsigned long long in, out;
	u32 operation, in_size, out_size;

	if (sscanf(text, "iwinfo %u %llx %u %llx %u", &operation, &in, &in_size, &out, &out_size) !=
	    5)
		return -EINVAL;
	switch (operation) {
	case OPERATION_PROBE:
		return answer_probe(u64_to_user_ptr(out), out_size);
	case OPERATION_STATIONS:
		return wdev_copy_station_table(wdev_is_vap(dev) ? dev : NULL, u64_to_user_ptr(out),
					       out_size);
	default:
		return -EOPNOTSUPP;
	}
}

/* radiomode 0 | radiomode 1 CHANNEL: operation in one segment or in two */
static int set_radiomode(struct wdev_radio *radio, const char *text)
{
	unsigned int mode, channel = 0;
	const int words = sscanf(text, "radiomode %u %u", &mode, &channel);

	if (words < 1 || mode > 1 || (mode == 1 && words != 2))
		return -EINVAL;
	radio->two_segments = mode == 1;
	radio->second_channel = channel;
	return 0;
}

/* loadpwrgrpstbl FILE PERCENT: a table that waits until it is applied */
static int load_power_table(struct wdev_radio *radio, const char *text)
{
	char path[WDEV_PATH_SIZE] = {};
	unsigned int percent;

	if (sscanf(text, "loadpwrgrpstbl %63s %u", path, &percent) != 2 || percent > 100)
		return -EINVAL;
	strscpy(radio->power_table, path, sizeof(radio->power_table));
	radio->power_percent = percent;
	return 0;
}

static int apply_power(struct wdev_radio *radio)
{
	if (!radio->power_table[0])
		return -EINVAL;
	radio->applied_percent = radio->power_percent;
	return 0;
}

static bool begins_with(const char *text, const char *word)
{
	const size_t length = strlen(word);

	return strncmp(text, word, length) == 0 && (text[length] == ' ' || !text[length]);
}

static int setcmd(struct net_device *dev, struct iw_request_info *info, union iwreq_data *request,
		  char *extra)
{
	char text[TEXT_SIZE + 1] = {};

	memcpy(text, extra, min_t(size_t, request->data.length, TEXT_SIZE));
	if (begins_with(text, "iwinfo"))
		return set_iwinfo(dev, text);
	if (wdev_is_vap(dev))
		return -EOPNOTSUPP;
	if (begins_with(text, "radiomode"))
		return set_radiomode(wdev_radio_of(dev), text);
	if (begins_with(text, "loadpwrgrpstbl"))
		return load_power_table(wdev_radio_of(dev), text);
	if (begins_with(text, "applypwr"))
		return apply_power(wdev_radio_of(dev));
	return -EOPNOTSUPP;
}

/* Bandwidth code 5 is operation in two segments. */
static int show_radiomode(const struct wdev_radio *radio, char *answer, size_t size)
{
	struct net_device *vap = wdev_running_vap(radio->index);
	const unsigned int channel = vap ? wdev_channel_of_vap(vap) : 0;

	if (radio->two_segments)
		return scnprintf(answer, size, "radiomode=1\nChannel=%u\nBW2=5\nChannel2=%u\n",
				 channel, radio->second_channel);
	return scnprintf(answer, size, "radiomode=0\nChannel=%u\nBW2=0\n", channel);
}

static int show_power(const struct wdev_radio *radio, char *answer, size_t size)
{
	return scnprintf(answer, size, "table=%s\npercent=%u\n", radio->power_table,
			 radio->applied_percent);
}

static int getcmd(struct net_device *dev, struct iw_request_info *info, union iwreq_data *request,
		  char *extra)
{
	char text[TEXT_SIZE + 1] = {};
	int length;

	if (copy_from_user(text, request->data.pointer,
			   min_t(size_t, request->data.length, TEXT_SIZE)))
		return -EFAULT;
	if (wdev_is_vap(dev))
		return -EOPNOTSUPP;
	if (begins_with(text, "radiomode"))
		length = show_radiomode(wdev_radio_of(dev), extra, ANSWER_SIZE);
	else if (begins_with(text, "power"))
		length = show_power(wdev_radio_of(dev), extra, ANSWER_SIZE);
	else if (begins_with(text, "get11hNOCList"))
		length = scnprintf(extra, ANSWER_SIZE, "NOC LIST\n"); /* no radar is heard here */
	else
		return -EOPNOTSUPP;
	request->data.length = length + 1;
	return 0;
}

const iw_handler wdev_private_handlers[WDEV_PRIVATE_HANDLERS] = {
	[COMMAND_SET - SIOCIWFIRSTPRIV] = setcmd,
	[COMMAND_GET - SIOCIWFIRSTPRIV] = getcmd,
};
