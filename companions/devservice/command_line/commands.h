#pragma once

#include <string>

#include "companions/devservice/files/problem.h"
#include "companions/devservice/store/vault.h"
#include "tools/command_line/arguments.h"
#include "tools/command_line/program.h"

namespace ov::devservice {

/// Exit codes of orvsvc.exe.
enum exit_code : int {
    exit_done = 0,
    exit_failed = 1,
    exit_usage = command_line::exit_usage,
    exit_absent = 3,   // the driver, or the running service that the command is about, is not there
    exit_partial = 4,  // done but for some files, which were named
};

using command_line::usage_error;

/// A command with the words that follow it; it throws usage_error when they are off. A command works on the
/// state file, so it acts the same whether a service runs or not; a running service is told.
struct command_call {
    vault& store;
    command_line::arguments& words;
};

[[nodiscard]] int command_protect(command_call& call);
[[nodiscard]] int command_unprotect(command_call& call);
[[nodiscard]] int command_restore_point(command_call& call);
[[nodiscard]] int command_flags(command_call& call);
[[nodiscard]] int command_cloud(command_call& call);
[[nodiscard]] int command_mgmt(command_call& call);
[[nodiscard]] int command_document(command_call& call);
[[nodiscard]] int command_list(command_call& call);
[[nodiscard]] int command_stop(command_call& call);
[[nodiscard]] int command_run(command_call& call);
[[nodiscard]] int command_service(command_call& call);

/// For the commands: reports a change's outcome, and tells a running service.
[[nodiscard]] int finish_change(command_call& call, DWORD error, const problems& left_out = {});

/// A path from the command line, which may be relative. Throws usage_error for what is not a path.
[[nodiscard]] std::wstring path_from_word(const std::wstring& word);

}  // namespace ov::devservice
