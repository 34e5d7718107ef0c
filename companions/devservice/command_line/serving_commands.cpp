#include <windows.h>

#include <atomic>

#include "companions/devservice/command_line/commands.h"
#include "companions/devservice/command_line/console.h"
#include "companions/devservice/command_line/remote.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/serving/opener.h"
#include "companions/devservice/serving/server.h"
#include "companions/devservice/serving/windows_service.h"

namespace ov::devservice {
namespace {

// For the console handler, which is given no context and runs on a thread of the system's.
std::atomic<const presence*> console_service = nullptr;

BOOL WINAPI on_console_event(DWORD) {
    if (const presence* service = console_service.load(); service != nullptr) {
        service->ask_to_stop();
        return TRUE;
    }
    return FALSE;
}

int report_serving(DWORD error) {
    if (error == ERROR_SUCCESS) {
        return exit_done;
    }
    if (error == ERROR_FILE_NOT_FOUND) {
        print_error("there is no driver: start orvdrv first");
        return exit_absent;
    }
    print_error("cannot serve: " + describe(error));
    return exit_failed;
}

}  // namespace

int command_run(command_call& call) {
    call_context context{.store = call.store, .desktop = {}, .open_file = open_for_user, .log = print};
    if (call.words.take_switch(L"--no-open")) {
        context.open_file = nullptr;
    }
    if (const auto desktop = call.words.take_value(L"--desktop")) {
        context.desktop = path_from_word(*desktop);
    }
    call.words.expect_end();
    presence shown(call.store.folder());
    if (shown.error() != ERROR_SUCCESS) {
        return report_serving(shown.error());
    }
    console_service = &shown;
    SetConsoleCtrlHandler(on_console_event, TRUE);
    const DWORD error = server(context, shown, [] {}).run();
    SetConsoleCtrlHandler(on_console_event, FALSE);
    console_service = nullptr;
    return report_serving(error);
}

int command_service(command_call& call) {
    call.words.expect_end();
    const DWORD error = run_as_windows_service(call.store);
    if (error == ERROR_FAILED_SERVICE_CONTROLLER_CONNECT) {
        print_error("this is for the service manager; use run");
        return exit_usage;
    }
    return report_serving(error);
}

int command_stop(command_call& call) {
    call.words.expect_end();
    const remote service(call.store.folder());
    if (service.process_id() == 0) {
        print_error("no service runs on this state folder");
        return exit_absent;
    }
    if (!service.stop()) {
        print_error("the service is still at work after ten seconds");
        return exit_failed;
    }
    return exit_done;
}

}  // namespace ov::devservice
