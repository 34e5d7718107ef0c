#include "tests/ui/shell_window.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>

#include "tests/support/shipped_module.h"

namespace ov::test {

namespace {

constexpr DWORD end_limit_ms = 10000;
constexpr DWORD pipe_bytes = 1 << 16;

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

shell_window::shell_window(const std::wstring& more_arguments) {
    pipe input = make_pipe(true);
    pipe output = make_pipe(false);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.read.get();
    startup.hStdOutput = output.write.get();
    startup.hStdError = output.write.get();
    std::wstring command = L"\"" + program_directory() + L"shellhost.exe\" --script " + more_arguments;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &started)) {
        throw std::runtime_error("shellhost.exe cannot be started: error " + std::to_string(GetLastError()));
    }
    CloseHandle(started.hThread);
    process_.reset(started.hProcess);
    input_ = std::move(input.write);
    output_ = std::move(output.read);
    (void)ask("wait");
}

shell_window::~shell_window() {
    input_.reset();  // The end of its script closes the window.
    if (WaitForSingleObject(process_.get(), end_limit_ms) != WAIT_OBJECT_0) {
        ADD_FAILURE() << "shellhost did not end by itself";
        TerminateProcess(process_.get(), 1);
    }
}

bool shell_window::read_line(std::string& line) {
    for (;;) {
        const auto end = pending_.find('\n');
        if (end != std::string::npos) {
            line = pending_.substr(0, end);
            pending_.erase(0, end + 1);
            return true;
        }
        std::array<char, 4096> bytes;
        DWORD read = 0;
        if (!ReadFile(output_.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) ||
            read == 0) {
            return false;
        }
        pending_.append(bytes.data(), read);
    }
}

std::vector<std::string> shell_window::ask(const std::string& command) {
    const std::string sent = command + "\n";
    DWORD written = 0;
    WriteFile(input_.get(), sent.data(), static_cast<DWORD>(sent.size()), &written, nullptr);
    std::vector<std::string> lines;
    std::string line;
    while (read_line(line)) {
        if (line == "ok") {
            return lines;
        }
        if (line.rfind("error: ", 0) == 0) {
            ADD_FAILURE() << command << ": " << line;
            return lines;
        }
        lines.push_back(line);
    }
    ADD_FAILURE() << command << ": shellhost ended";
    return lines;
}

void shell_window::tell(std::initializer_list<const char*> commands) {
    for (const char* command : commands) {
        (void)ask(command);
    }
}

std::string shell_window::ask_line(const std::string& command) {
    const auto lines = ask(command);
    EXPECT_EQ(lines.size(), 1U) << command;
    return lines.empty() ? std::string() : lines.front();
}

}  // namespace ov::test
