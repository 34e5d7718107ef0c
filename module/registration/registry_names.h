#pragma once

// Texts that several rows of the tables share. They are macros so that a row can spell out its whole path, as
// the registry editor shows it.

/// The class ids of module/state/class_ids.h as the registry writes them.
#define ORV_SHELL_EXTENSION L"{3C41A7E2-6B0D-4F93-9E25-7A1D0C6B2E48}"
#define ORV_NAMESPACE_FOLDER L"{9B2E6D14-C3A8-4E57-A1F0-5D8C27B4E913}"
#define ORV_ONE_CLICK_RESTORE L"{E7A05C3B-2D91-4B68-8F4C-16B93AD0725E}"
#define ORV_ADDONS L"{5D8F13A6-74E2-4C0B-B39D-E2A6F7081C54}"

/// Below a type's `shellex\ContextMenuHandlers` or `PropertySheetHandlers`.
#define ORV_HANDLER L"Orvane Vaultkeep"

#define ORV_EXPLORER L"Microsoft\\Windows\\CurrentVersion\\Explorer\\"
/// Below `SOFTWARE\`, or `SOFTWARE\WOW6432Node\` for the 32-bit view.
#define ORV_DESKTOP_NAMESPACE ORV_EXPLORER L"Desktop\\NameSpace\\" ORV_NAMESPACE_FOLDER
#define ORV_HIDDEN_ICONS ORV_EXPLORER L"HideDesktopIcons\\NewStartPanel"
