#include "tests/driver/driver_control.h"

#include <windows.h>

#include "ovufc/win/handle.h"
#include "tests/driver/eventually.h"

namespace ov::test {

namespace {

struct service_traits {
    using type = SC_HANDLE;
    static type invalid() noexcept { return nullptr; }
    static void close(type handle) noexcept { CloseServiceHandle(handle); }
};
using unique_service = win::unique_handle<service_traits>;

unique_service open_driver() {
    const unique_service manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT));
    return unique_service(
        OpenServiceW(manager.get(), L"orvdrv", SERVICE_START | SERVICE_STOP | SERVICE_QUERY_STATUS));
}

bool is_in_state(SC_HANDLE driver, DWORD state) {
    SERVICE_STATUS status{};
    return QueryServiceStatus(driver, &status) && status.dwCurrentState == state;
}

}  // namespace

bool stop_driver() {
    const unique_service driver = open_driver();
    SERVICE_STATUS status{};
    ControlService(driver.get(), SERVICE_CONTROL_STOP, &status);
    return eventually([&] { return is_in_state(driver.get(), SERVICE_STOPPED); });
}

bool start_driver() {
    const unique_service driver = open_driver();
    StartServiceW(driver.get(), 0, nullptr);
    return eventually([&] { return is_in_state(driver.get(), SERVICE_RUNNING); });
}

}  // namespace ov::test
