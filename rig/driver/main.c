// SPDX-License-Identifier: GPL-2.0-only
/*
 * Loading and unloading, and following the VAPs as they come, are renamed and go.
 */
#include <linux/module.h>

#include "wdev.h"

bool wdev_parse_vap(const char *name, struct wdev_name *vap)
{
	char exact[IFNAMSIZ];

	if (sscanf(name, "wdev%uap%u", &vap->radio, &vap->vap) != 2)
		return false;
	if (vap->radio >= WDEV_RADIOS || vap->vap >= WDEV_VAPS)
		return false;
	snprintf(exact, sizeof(exact), "wdev%uap%u", vap->radio, vap->vap);
	return strcmp(exact, name) == 0;
}

bool wdev_is_vap(const struct net_device *dev)
{
	struct wdev_name name;

	return dev->ieee80211_ptr && wdev_parse_vap(dev->name, &name);
}

/* Called with the RTNL lock held, as the handlers are: nobody is in a table that is exchanged. */
static int on_netdev_event(struct notifier_block *block, unsigned long event, void *info)
{
	struct net_device *dev = netdev_notifier_info_to_dev(info);

	switch (event) {
	case NETDEV_REGISTER:
	case NETDEV_CHANGENAME:
		if (wdev_is_vap(dev))
			wdev_take_over(dev);
		else
			wdev_give_back(dev);
		break;
	case NETDEV_UNREGISTER:
		if (wdev_is_vap(dev))
			wdev_keep_counters(dev);
		wdev_give_back(dev);
		break;
	}
	return NOTIFY_DONE;
}

static struct notifier_block netdev_notifier = {
	.notifier_call = on_netdev_event,
};

static int __init wdev_init(void)
{
	int error = wdev_create_radios();

	if (error)
		return error;
	/* Tells of the interfaces that are already there, too. */
	error = register_netdevice_notifier(&netdev_notifier);
	if (error) {
		wdev_destroy_radios();
		return error;
	}
	wdev_create_debug_files();
	return 0;
}

static void __exit wdev_exit(void)
{
	/* Readers of the files take the RTNL lock; they are waited for without it. */
	wdev_remove_debug_files();
	/* Tells of every interface as if it went. */
	unregister_netdevice_notifier(&netdev_notifier);
	wdev_destroy_radios();
}

module_init(wdev_init);
module_exit(wdev_exit);
MODULE_DESCRIPTION("Wireless-extension face of a dual-radio access point over simulated radios");
MODULE_LICENSE("GPL");
