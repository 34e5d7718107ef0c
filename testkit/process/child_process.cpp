#include "testkit/process/child_process.h"

#include <stdexcept>

namespace ov::test {

namespace {

constexpr UINT killed_exit_code = 0xDEAD;
constexpr DWORD kill_patience_ms = 10000;
constexpr int most_starts = 5;
constexpr DWORD pause_ms = 200;

// Quoted, where it needs to be, as the runtime's start-up code and CommandLineToArgvW take it apart:
// backslashes count only before a quotation mark.
std::wstring quoted(const std::wstring& argument) {
    if (!argument.empty() && argument.find_first_of(L" \t\"") == std::wstring::npos) {
        return argument;
    }
    std::wstring result = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t character : argument) {
        if (character == L'"') {
            result.append(backslashes + 1, L'\\');
        }
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        result += character;
    }
    result.append(backslashes, L'\\');
    return result + L'"';
}

}  // namespace

std::wstring this_program() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

child_process::child_process(const std::wstring& program, const std::vector<std::wstring>& arguments,
                             HANDLE token) {
    std::wstring command_line = quoted(program);
    for (const std::wstring& argument : arguments) {
        command_line += L' ' + quoted(argument);
    }
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    // Without a token this is CreateProcessW.
    const auto starts = [&] {
        return CreateProcessAsUserW(token, program.c_str(), command_line.data(), nullptr, nullptr, FALSE, 0,
                                    nullptr, nullptr, &startup, &started) != FALSE;
    };
    // Wine refuses a start in a thousand so, while others end at the same time.
    for (int tries = 1; !starts(); ++tries) {
        if (GetLastError() != ERROR_INTERNAL_ERROR || tries == most_starts) {
            throw std::runtime_error("a child process did not start, error " +
                                     std::to_string(GetLastError()));
        }
        Sleep(pause_ms);
    }
    const win::unique_kernel_handle thread(started.hThread);
    process_.reset(started.hProcess);
    id_ = started.dwProcessId;
}

child_process::~child_process() {
    if (process_) {
        kill();
    }
}

std::optional<DWORD> child_process::wait(DWORD timeout_ms) {
    DWORD code = 0;
    if (WaitForSingleObject(process_.get(), timeout_ms) != WAIT_OBJECT_0 ||
        !GetExitCodeProcess(process_.get(), &code)) {
        return std::nullopt;
    }
    return code;
}

void child_process::kill() {
    TerminateProcess(process_.get(), killed_exit_code);
    WaitForSingleObject(process_.get(), kill_patience_ms);
}

}  // namespace ov::test
