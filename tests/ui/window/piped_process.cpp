#include "tests/ui/window/piped_process.h"

#include <array>
#include <stdexcept>

#include "testkit/process/shipped_module.h"

namespace ov::test {

namespace {

constexpr DWORD pipe_bytes = 1 << 16;
constexpr DWORD poll_ms = 5;

struct pipe {
    win::unique_kernel_handle read;
    win::unique_kernel_handle write;
};

/// A pipe whose one end the child inherits.
pipe make_pipe(bool child_reads) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    pipe made;
    CreatePipe(made.read.put(), made.write.put(), &inherited, pipe_bytes);
    SetHandleInformation((child_reads ? made.write : made.read).get(), HANDLE_FLAG_INHERIT, 0);
    return made;
}

}  // namespace

piped_process::piped_process(const std::wstring& arguments) {
    pipe input = make_pipe(true);
    pipe output = make_pipe(false);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.read.get();
    startup.hStdOutput = output.write.get();
    startup.hStdError = output.write.get();
    std::wstring command = L"\"" + program_directory() + L"shellhost.exe\" " + arguments;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &started)) {
        throw std::runtime_error("shellhost.exe cannot be started: error " + std::to_string(GetLastError()));
    }
    CloseHandle(started.hThread);
    process_.reset(started.hProcess);
    input_ = std::move(input.write);
    output_ = std::move(output.read);
}

piped_process::~piped_process() {
    TerminateProcess(process_.get(), 1);
}

void piped_process::write_line(const std::string& line) {
    const std::string sent = line + "\n";
    DWORD written = 0;
    WriteFile(input_.get(), sent.data(), static_cast<DWORD>(sent.size()), &written, nullptr);
}

bool piped_process::read_line(std::string& line) {
    for (;;) {
        const auto end = pending_.find('\n');
        if (end != std::string::npos) {
            line = pending_.substr(0, end);
            pending_.erase(0, end + 1);
            return true;
        }
        if (!read_more()) {
            return false;
        }
    }
}

bool piped_process::read_more() {
    // The pipe may outlive the process: what it starts of the system (a console's host) inherits its handles.
    DWORD available = 0;
    for (;;) {
        const bool has_ended = WaitForSingleObject(process_.get(), 0) == WAIT_OBJECT_0;
        if (!PeekNamedPipe(output_.get(), nullptr, 0, nullptr, &available, nullptr)) {
            return false;
        }
        if (available != 0 || has_ended) {
            break;
        }
        Sleep(poll_ms);
    }
    std::array<char, 4096> bytes;
    DWORD read = 0;
    if (available == 0 ||
        !ReadFile(output_.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr)) {
        return false;
    }
    pending_.append(bytes.data(), read);
    return true;
}

bool piped_process::wait(DWORD timeout_ms, DWORD& exit_code) {
    return WaitForSingleObject(process_.get(), timeout_ms) == WAIT_OBJECT_0 &&
           GetExitCodeProcess(process_.get(), &exit_code);
}

}  // namespace ov::test
