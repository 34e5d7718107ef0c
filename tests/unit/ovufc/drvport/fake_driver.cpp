#include "tests/unit/ovufc/drvport/fake_driver.h"

namespace ov::test {

namespace {

fake_driver* fake = nullptr;
char* fake_section = nullptr;

HANDLE WINAPI create_file(LPCWSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                          DWORD creation, DWORD attributes, HANDLE template_file) {
    fake->opened.push_back(
        {path, access, share, creation, attributes, security == nullptr, template_file == nullptr});
    return fake->present ? fake_driver::device : INVALID_HANDLE_VALUE;
}

BOOL WINAPI device_io_control(HANDLE device, DWORD code, void* in, DWORD in_bytes, void* out, DWORD out_bytes,
                              DWORD* returned, OVERLAPPED* overlapped) {
    fake->controlled.push_back({device, code, in_bytes, out_bytes, in == nullptr, overlapped == nullptr});
    Sleep(fake->open_delay_ms);
    if (!fake->answers_open) {
        return FALSE;
    }
    auto& reply = *static_cast<orv_open_reply*>(out);
    reply.section = fake->section_word.value_or(reinterpret_cast<std::uintptr_t>(fake_section));
    reply.semaphore = fake->gives_semaphore ? reinterpret_cast<std::uintptr_t>(fake_driver::semaphore) : 0;
    reply.third = 0x3333333333333333;
    *returned = sizeof reply;
    return TRUE;
}

BOOL WINAPI close_handle(HANDLE handle) {
    fake->closed.push_back(handle);
    return TRUE;
}

BOOL WINAPI release_semaphore(HANDLE semaphore, LONG count, LONG*) {
    fake->signalled.push_back(semaphore == fake_driver::semaphore ? count : -1);
    if (fake->on_signal) {
        fake->on_signal();
    }
    return TRUE;
}

DWORD WINAPI sleep_ex(DWORD length_ms, BOOL alertable) {
    fake->naps.push_back({length_ms, alertable});
    fake->tick += length_ms;
    if (fake->on_nap) {
        fake->on_nap();
    }
    return 0;
}

DWORD WINAPI get_tick_count() {
    return fake->tick;
}

BOOL WINAPI switch_to_thread() {
    ++fake->yields;
    fake->counter_us += fake->yield_length_us;
    if (fake->on_yield) {
        fake->on_yield();
    }
    return TRUE;
}

BOOL WINAPI query_performance_counter(LARGE_INTEGER* ticks) {
    ticks->QuadPart = fake->counter_us;
    return TRUE;
}

BOOL WINAPI query_performance_frequency(LARGE_INTEGER* ticks_per_second) {
    ticks_per_second->QuadPart = 1'000'000;
    return TRUE;
}

decltype(InitializeCriticalSectionAndSpinCount)* real_initialize = nullptr;

BOOL WINAPI initialize_critical_section(CRITICAL_SECTION* section, DWORD spin_count) {
    fake->spin_counts.push_back(spin_count);
    return real_initialize(section, spin_count);
}

}  // namespace

struct fake_driver::patches {
    HMODULE self = GetModuleHandleW(nullptr);
    import_patch<decltype(CreateFileW)> open{self, "kernel32.dll", "CreateFileW", create_file};
    import_patch<decltype(DeviceIoControl)> control{self, "kernel32.dll", "DeviceIoControl",
                                                    device_io_control};
    import_patch<decltype(CloseHandle)> close{self, "kernel32.dll", "CloseHandle", close_handle};
    import_patch<decltype(ReleaseSemaphore)> signal{self, "kernel32.dll", "ReleaseSemaphore",
                                                    release_semaphore};
    import_patch<decltype(SleepEx)> nap{self, "kernel32.dll", "SleepEx", sleep_ex};
    import_patch<decltype(GetTickCount)> clock{self, "kernel32.dll", "GetTickCount", get_tick_count};
    import_patch<decltype(SwitchToThread)> yield{self, "kernel32.dll", "SwitchToThread", switch_to_thread};
    import_patch<decltype(QueryPerformanceCounter)> counter{self, "kernel32.dll", "QueryPerformanceCounter",
                                                            query_performance_counter};
    import_patch<decltype(QueryPerformanceFrequency)> frequency{
        self, "kernel32.dll", "QueryPerformanceFrequency", query_performance_frequency};
    import_patch<decltype(InitializeCriticalSectionAndSpinCount)> lock{
        self, "kernel32.dll", "InitializeCriticalSectionAndSpinCount", initialize_critical_section};
};

fake_driver::fake_driver(std::uint32_t slots) {
    const SIZE_T bytes = ORV_STATUS_BLOCK_BYTES + SIZE_T{slots} * ORV_SLOT_BYTES;
    // What lies behind the section cannot be touched.
    section_ = static_cast<char*>(VirtualAlloc(nullptr, bytes + ORV_SLOT_BYTES, MEM_RESERVE, PAGE_NOACCESS));
    VirtualAlloc(section_, bytes, MEM_COMMIT, PAGE_READWRITE);
    status().state = 1;
    status().section_bytes = static_cast<std::uint32_t>(bytes);
    fake = this;
    fake_section = section_;
    patches_ = std::make_unique<patches>();
    real_initialize = patches_->lock.original();
}

fake_driver::~fake_driver() {
    patches_.reset();
    VirtualFree(section_, 0, MEM_RELEASE);
    fake = nullptr;
}

volatile orv_status_block& fake_driver::status() noexcept {
    return *reinterpret_cast<volatile orv_status_block*>(section_);
}

volatile orv_slot& fake_driver::slot(std::uint32_t index) noexcept {
    return *reinterpret_cast<volatile orv_slot*>(section_ + ORV_STATUS_BLOCK_BYTES +
                                                 std::size_t{index} * ORV_SLOT_BYTES);
}

}  // namespace ov::test
