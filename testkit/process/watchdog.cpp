#include "testkit/process/watchdog.h"

#include <tlhelp32.h>

#include <array>
#include <cstdio>
#include <cstring>

namespace ov::test {

namespace {

constexpr int frame_limit = 48;

void write_frame(DWORD_PTR address) {
    HMODULE module = nullptr;
    std::array<char, MAX_PATH> path{};
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCSTR>(address), &module);
    if (module != nullptr) {
        GetModuleFileNameA(module, path.data(), MAX_PATH - 1);
    }
    const char* slash = std::strrchr(path.data(), '\\');
    std::fprintf(stderr, "    %s+0x%llx\n", slash == nullptr ? "?" : slash + 1,
                 static_cast<unsigned long long>(address - reinterpret_cast<DWORD_PTR>(module)));
}

#ifdef _WIN64

// A function without unwind data keeps nothing on the stack but its return address.
bool leave_leaf(CONTEXT& context) {
    SIZE_T got = 0;
    ReadProcessMemory(GetCurrentProcess(), reinterpret_cast<const void*>(context.Rsp), &context.Rip,
                      sizeof context.Rip, &got);
    context.Rsp += sizeof context.Rip;
    return got == sizeof context.Rip;
}

void write_frames(CONTEXT context) {
    for (int frame = 0; frame < frame_limit && context.Rip != 0; ++frame) {
        write_frame(context.Rip);
        DWORD64 image = 0;
        auto* function = RtlLookupFunctionEntry(context.Rip, &image, nullptr);
        if (function == nullptr) {
            if (!leave_leaf(context)) {
                return;
            }
            continue;
        }
        void* handler_data = nullptr;
        DWORD64 establisher = 0;
        RtlVirtualUnwind(UNW_FLAG_NHANDLER, image, context.Rip, function, &context, &handler_data,
                         &establisher, nullptr);
    }
}

#else

// 32-bit code has no unwind data to find the callers by.
void write_frames(const CONTEXT& context) {
    write_frame(context.Eip);
}

#endif

void write_thread(DWORD id) {
    const win::unique_kernel_handle thread(
        OpenThread(THREAD_SUSPEND_RESUME | THREAD_GET_CONTEXT | THREAD_QUERY_INFORMATION, FALSE, id));
    if (!thread) {
        return;
    }
    std::fprintf(stderr, "  thread %lu\n", id);
    SuspendThread(thread.get());
    CONTEXT context{};
    context.ContextFlags = CONTEXT_FULL;
    const bool known = GetThreadContext(thread.get(), &context) != FALSE;
    // The thread goes on before anything is written: it may hold a lock that writing needs.
    ResumeThread(thread.get());
    if (known) {
        write_frames(context);
    }
}

void write_all_threads() {
    const win::unique_file snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Thread32First(snapshot.get(), &entry); more != FALSE;
         more = Thread32Next(snapshot.get(), &entry)) {
        if (entry.th32OwnerProcessID == GetCurrentProcessId() && entry.th32ThreadID != GetCurrentThreadId()) {
            write_thread(entry.th32ThreadID);
        }
    }
}

}  // namespace

watchdog::watchdog(DWORD limit_ms)
    : limit_ms_(limit_ms),
      over_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      thread_(CreateThread(nullptr, 0, &watchdog::watch, this, 0, nullptr)) {}

watchdog::~watchdog() {
    SetEvent(over_.get());
    WaitForSingleObject(thread_.get(), INFINITE);
}

DWORD WINAPI watchdog::watch(void* self) {
    const auto& dog = *static_cast<const watchdog*>(self);
    if (WaitForSingleObject(dog.over_.get(), dog.limit_ms_) == WAIT_TIMEOUT) {
        std::fprintf(stderr, "watchdog: still running after %lu ms\n", dog.limit_ms_);
        write_all_threads();
        std::fflush(stderr);
        TerminateProcess(GetCurrentProcess(), exit_code);
    }
    return 0;
}

}  // namespace ov::test
