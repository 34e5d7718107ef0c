#ifndef ORV_DIALOG_CONTROL_IDS_H
#define ORV_DIALOG_CONTROL_IDS_H

/* Ids of the dialogs' controls. Kept as they are: tests and run.sh find the buttons by them. OK (1) and
   Cancel (2) are the system's. */

/* Protection of a folder (export 17). IDOK: protect. IDCANCEL. */
#define IDD_PROTECT 17
#define IDC_PROTECT_FOLDER 110 /* the folder's path, read only */
#define IDC_PROTECT_OBJECT 111 /* the other path */
#define IDC_PROTECT_BROWSE 112 /* opens the system's folder chooser */
#define IDC_PROTECT_NOTE 113   /* that the folder is protected already; hidden unless the menu says so */
#define IDC_PROTECT_FOLDER_LABEL 114
#define IDC_PROTECT_ABOUT 115   /* what protection does */
#define IDC_PROTECT_THIS 116    /* this folder is protected, the choice at first */
#define IDC_PROTECT_OTHER 117   /* another path is */
#define IDC_PROTECT_LABEL 118   /* of the other path */
#define IDC_PROTECT_PROBLEM 119 /* why what is chosen cannot be protected; empty while it can */

/* Earlier versions of a file (export 47). IDCANCEL: close. */
#define IDD_CHRONELS 47
#define IDC_CHRONELS_FILE 121 /* the file's path, read only */
#define IDC_CHRONELS_LIST 122 /* list view; newest first, the first one selected */
#define IDC_CHRONELS_OPEN 123 /* the default button */
#define IDC_CHRONELS_RESTORE 124
#define IDC_CHRONELS_FILE_LABEL 125
#define IDC_CHRONELS_LABEL 126 /* of the list */

#endif
