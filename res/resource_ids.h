#ifndef ORV_RESOURCE_IDS_H
#define ORV_RESOURCE_IDS_H

/* Numbers of the module's resources; the registry and item ids name icons by these numbers. */
#define IDI_ORVANE 103
#define IDD_HISTORY 104
#define IDI_ONE_CLICK_RESTORE 105
#define IDI_RESERVED 107
#define IDI_ADDONS 108

#endif
