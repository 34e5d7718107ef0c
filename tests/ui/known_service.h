#pragma once

#include <string>
#include <vector>

#include "ovufc/protocol/service_calls.h"
#include "testkit/files/temp_folder.h"
#include "testkit/service/scripted_service.h"

namespace ov::test {

/// The service behind the driver with one known state: three protected locations on the disk (Projects,
/// Managed and Cloud, in the order in which the folder shows them), every folder protected, one restore
/// point, the commands Exports and Addons switched on.
class known_service {
  public:
    known_service();

    /// Full paths of the locations.
    [[nodiscard]] const std::wstring& projects() const noexcept { return projects_; }

    /// The numbers of the service calls that came in, in order.
    [[nodiscard]] std::vector<int> calls() const;
    void forget_calls() { service_.forget_requests(); }

  private:
    [[nodiscard]] scripted_reply answer(const scripted_request& request);

    temp_folder folder_;
    std::wstring projects_;
    std::string document_;
    scripted_service service_;  // last: its thread uses all of the above
};

/// Service calls as the wire numbers them.
inline constexpr int call_folder_status = static_cast<int>(protocol::service_call::get_folder_status);
inline constexpr int call_protected_folders = static_cast<int>(protocol::service_call::get_protected_folders);
inline constexpr int call_restore_points = static_cast<int>(protocol::service_call::get_restore_points);
inline constexpr int call_restore = static_cast<int>(protocol::service_call::restore_from_point);

}  // namespace ov::test
