#include "companions/devservice/serving/windows_service.h"

#include <string>

#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/serving/opener.h"
#include "companions/devservice/serving/server.h"

namespace ov::devservice {
namespace {

wchar_t service_name[] = L"orvsvc";

/// One service in a process: the service manager calls plain functions, which find it here. Written before
/// the manager is called, read by its threads afterwards.
struct running_service {
    vault* store = nullptr;
    const presence* shown = nullptr;
    SERVICE_STATUS_HANDLE manager = nullptr;
    DWORD error = ERROR_SUCCESS;
};
running_service running;

void tell_manager(DWORD state, DWORD error = ERROR_SUCCESS) noexcept {
    SERVICE_STATUS status{};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    status.dwControlsAccepted = state == SERVICE_RUNNING ? SERVICE_ACCEPT_STOP | SERVICE_ACCEPT_SHUTDOWN : 0;
    status.dwWin32ExitCode = error;
    SetServiceStatus(running.manager, &status);
}

DWORD WINAPI on_control(DWORD control, DWORD, void*, void*) {
    switch (control) {
        case SERVICE_CONTROL_STOP:
        case SERVICE_CONTROL_SHUTDOWN:
            tell_manager(SERVICE_STOP_PENDING);
            running.shown->ask_to_stop();
            return NO_ERROR;
        case SERVICE_CONTROL_INTERROGATE:
            return NO_ERROR;
        default:
            return ERROR_CALL_NOT_IMPLEMENTED;
    }
}

win::unique_file new_log(const std::wstring& folder) {
    static_cast<void>(make_folders(folder));
    return win::unique_file(CreateFileW(long_form(joined(folder, L"orvsvc.log")).c_str(), GENERIC_WRITE,
                                        FILE_SHARE_READ, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                        nullptr));
}

DWORD serve(presence& shown) {
    const win::unique_file log = new_log(running.store->folder());
    const auto write_log = [&log](const std::string& line) {
        const std::string whole = line + "\r\n";
        DWORD written = 0;
        WriteFile(log.get(), whole.data(), static_cast<DWORD>(whole.size()), &written, nullptr);
    };
    call_context context{
        .store = *running.store, .desktop = {}, .open_file = open_for_user, .log = write_log};
    return server(context, shown, [] { tell_manager(SERVICE_RUNNING); }).run();
}

void WINAPI service_main(DWORD, LPWSTR*) {
    presence shown(running.store->folder());
    running.shown = &shown;
    running.manager = RegisterServiceCtrlHandlerExW(service_name, on_control, nullptr);
    if (running.manager == nullptr) {
        running.error = GetLastError();
        return;
    }
    tell_manager(SERVICE_START_PENDING);
    running.error = shown.error() != ERROR_SUCCESS ? shown.error() : serve(shown);
    tell_manager(SERVICE_STOPPED, running.error);
}

}  // namespace

DWORD run_as_windows_service(vault& store) {
    running.store = &store;
    SERVICE_TABLE_ENTRYW table[] = {{service_name, service_main}, {nullptr, nullptr}};
    return StartServiceCtrlDispatcherW(table) ? running.error : GetLastError();
}

}  // namespace ov::devservice
