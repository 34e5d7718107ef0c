#ifndef ORV_DIALOG_CONTROL_IDS_H
#define ORV_DIALOG_CONTROL_IDS_H

/* Ids of the dialogs' controls. Kept as they are: tests and run.sh find the buttons by them. OK (1) and
   Cancel (2) are the system's. */

/* Protection of a folder (export 17). Title "Orvane Vaultkeep - Protection". IDOK: protect. IDCANCEL. */
#define IDD_PROTECT 17
#define IDC_PROTECT_FOLDER 110 /* the folder's path, read only */
#define IDC_PROTECT_OBJECT 111 /* the path to protect; the folder's at first */
#define IDC_PROTECT_BROWSE 112 /* opens the system's folder chooser */
#define IDC_PROTECT_NOTE 113   /* how to unprotect again; hidden unless the menu offers it */

/* Earlier versions of a file (export 47). Title "Orvane Vaultkeep - Earlier versions". IDCANCEL: close. */
#define IDD_CHRONELS 47
#define IDC_CHRONELS_ICON 120
#define IDC_CHRONELS_FILE 121 /* the file's path, read only */
#define IDC_CHRONELS_LIST 122 /* list view; newest first, the first one selected */
#define IDC_CHRONELS_OPEN 123 /* the default button */
#define IDC_CHRONELS_RESTORE 124

#endif
