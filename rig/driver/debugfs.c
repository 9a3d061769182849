// SPDX-License-Identifier: GPL-2.0-only
/*
 * The files below /sys/kernel/debug/sta. The list of associated stations is told from the kernel's
 * tables; the others hold what was written into them last, whole.
 */
#include <linux/debugfs.h>
#include <linux/kernel.h>
#include <linux/module.h>
#include <linux/mutex.h>
#include <linux/rtnetlink.h>
#include <linux/seq_file.h>
#include <linux/slab.h>
#include <linux/uaccess.h>

#include "wdev.h"

#define MOST_TEXT 65536
#define SIGNAL_BASE 95 /* signals are told in dB above -95 dBm */

struct text_file {
	const char *name;
	char *text;
	size_t size;
};

static struct text_file text_files[] = {
	{ "mesh_is_portal_ap" },
	{ "print_mesh_status" },
	{ "sta_list" },
};

static DEFINE_MUTEX(text_lock);
static struct dentry *folder;

static ssize_t read_text(struct file *file, char __user *to, size_t size, loff_t *position)
{
	struct text_file *own = file->private_data;
	ssize_t length;

	mutex_lock(&text_lock);
	length = simple_read_from_buffer(to, size, position, own->text, own->size);
	mutex_unlock(&text_lock);
	return length;
}

static ssize_t write_text(struct file *file, const char __user *from, size_t size, loff_t *position)
{
	struct text_file *own = file->private_data;
	char *text;

	if (*position != 0 || size > MOST_TEXT)
		return -EFBIG;
	text = memdup_user_nul(from, size);
	if (IS_ERR(text))
		return PTR_ERR(text);
	mutex_lock(&text_lock);
	swap(own->text, text);
	own->size = size;
	mutex_unlock(&text_lock);
	kfree(text);
	*position += size;
	return size;
}

static const struct file_operations text_operations = {
	.owner = THIS_MODULE,
	.open = simple_open,
	.read = read_text,
	.write = write_text,
	.llseek = default_llseek,
};

struct list_writer {
	struct seq_file *file;
	struct net_device *vap;
};

/* MAC SIGNALdB BSSID STATE NUMBER CHANNEL RATE IPV4 */
static int print_station(const struct wdev_station *station, void *data)
{
	struct list_writer *writer = data;
	struct rate_info rate = station->info.txrate;
	const __be32 ipv4 = wdev_station_ipv4(station->mac);

	seq_printf(writer->file, "%pM %ddB %pM 1 1 %u %u %pI4\n", station->mac,
		   station->info.signal + SIGNAL_BASE, writer->vap->dev_addr,
		   wdev_channel_of_vap(writer->vap), cfg80211_calculate_bitrate(&rate) / 10, &ipv4);
	return 0;
}

static int sta_assoc_list_show(struct seq_file *file, void *unused)
{
	struct list_writer writer = { .file = file };
	struct wdev_name name;
	int result = 0;

	rtnl_lock();
	for_each_netdev(&init_net, writer.vap) {
		if (!writer.vap->ieee80211_ptr || !wdev_parse_vap(writer.vap->name, &name))
			continue;
		result = wdev_for_each_station(writer.vap, print_station, &writer);
		if (result)
			break;
	}
	rtnl_unlock();
	return result;
}
DEFINE_SHOW_ATTRIBUTE(sta_assoc_list);

/* The module works without its files: errors of the file system stay there. */
void wdev_create_debug_files(void)
{
	size_t i;

	folder = debugfs_create_dir("sta", NULL);
	debugfs_create_file("sta_assoc_list", 0444, folder, NULL, &sta_assoc_list_fops);
	for (i = 0; i < ARRAY_SIZE(text_files); i++)
		debugfs_create_file(text_files[i].name, 0644, folder, &text_files[i],
				    &text_operations);
}

void wdev_remove_debug_files(void)
{
	size_t i;

	debugfs_remove_recursive(folder);
	for (i = 0; i < ARRAY_SIZE(text_files); i++) {
		kfree(text_files[i].text);
		text_files[i].text = NULL;
		text_files[i].size = 0;
	}
}
