#pragma once

#include <array>

/// Names in the protected-locations document, a JSON object of seven arrays of UTF-8 texts. In the order of
/// display:
///
///     {"hardDrive":{"folders":[…]},"mgmtCustom":[…],"oneDrive":[…],…,"oneDriveBusiness":[…]}
namespace ov::protocol::locations {

inline constexpr const char* hard_drive = "hardDrive";
inline constexpr const char* folders = "folders";
inline constexpr const char* mgmt_custom = "mgmtCustom";
/// The providers of synchronised folders.
inline constexpr std::array<const char*, 5> cloud = {"oneDrive", "google", "boxSyn", "dropBox",
                                                     "oneDriveBusiness"};

/// How an entry of "folders" begins that stands for a folder below every user's profile, such as
/// `C:\Users\[^\\]*\Documents\`. It is compared as text, never evaluated.
inline constexpr const char* profile_rule = R"(C:\Users\[^\\]*\)";

}  // namespace ov::protocol::locations
