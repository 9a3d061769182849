/* The smallest agent: binds the table and calls an operation that touches nothing. */
#include <orlo/exports.h>
#include <orlo/vendor_ops.h>

#include <stdio.h>

int main(void) {
    printf("%d operations, %s, reserved: %d\n", ORLO_SLOTS, get_mwl_ifname(1, 15),
           Vendor_Ops.api_reserved_19(0));
    return 0;
}
