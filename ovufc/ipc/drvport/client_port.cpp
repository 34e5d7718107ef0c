#include "ovufc/ipc/drvport/client_port.h"

#include <algorithm>
#include <cstring>

#include "ovufc/ipc/drvport/mapping.h"

namespace ov::ipc::drvport::details {

namespace {

constexpr DWORD lock_spin_count = 100;
constexpr DWORD poll_interval_ms = 10;
constexpr int claim_passes = 5;
// A service that is there answers in a tenth of this; one that takes longer costs no more than this.
constexpr LONGLONG yield_limit_us = 1000;

// The driver hands out addresses and handles as 64-bit words.
template <class To>
To from_word(std::uint64_t word) noexcept {
    return reinterpret_cast<To>(static_cast<std::uintptr_t>(word));
}

LONGLONG now_us() noexcept {
    LARGE_INTEGER ticks{};
    LARGE_INTEGER ticks_per_second{};
    QueryPerformanceCounter(&ticks);
    QueryPerformanceFrequency(&ticks_per_second);
    return ticks.QuadPart / ticks_per_second.QuadPart * 1'000'000 +
           ticks.QuadPart % ticks_per_second.QuadPart * 1'000'000 / ticks_per_second.QuadPart;
}

// The slot words that are ever exchanged atomically. Windows declares its LONG for them.
volatile LONG* exchangeable(volatile std::uint32_t& word) noexcept {
    return reinterpret_cast<volatile LONG*>(&word);
}

std::uint32_t load_acquire(const volatile std::uint32_t& word) noexcept {
    const std::uint32_t value = word;
    std::atomic_thread_fence(std::memory_order_acquire);
    return value;
}

void store_release(volatile std::uint32_t& word, std::uint32_t value) noexcept {
    std::atomic_thread_fence(std::memory_order_release);
    word = value;
}

// The order of the words is the driver's contract; the state goes last, because from then on the slot is
// read.
void post(volatile orv_slot& slot, const orv_request& request) noexcept {
    slot.claimant = GetCurrentProcessId();
    slot.word_20 = 0;
    slot.kind = ORV_KIND_REQUEST;
    slot.payload_bytes = ORV_REQUEST_BYTES;
    std::memcpy(const_cast<std::uint8_t*>(slot.payload), &request, sizeof request);
    store_release(slot.state, ORV_SLOT_POSTED);
}

std::uint32_t take_reply(const volatile orv_slot& slot, char* reply) noexcept {
    const std::uint32_t claimed_bytes = slot.payload_bytes;
    const std::uint32_t taken_bytes = std::min<std::uint32_t>(claimed_bytes, ORV_REPLY_LIMIT_BYTES);
    std::memcpy(reply, const_cast<const std::uint8_t*>(slot.payload), taken_bytes);
    return taken_bytes;
}

void release(volatile orv_slot& slot) noexcept {
    std::memset(const_cast<std::uint8_t*>(slot.payload), 0, ORV_PAYLOAD_CLEARED_BYTES);
    std::memset(const_cast<std::uint8_t*>(slot.cleared_96), 0, sizeof slot.cleared_96);
    // Exchanged, as this word always is; it also keeps the compiler from clearing bytes between the words
    // below.
    InterlockedExchange(exchangeable(slot.abandoned), 0);
    slot.word_20 = 0;
    slot.state = ORV_SLOT_TAKEN;
    slot.claimant = ORV_CLAIMANT_RELEASED;
    slot.kind = ORV_KIND_RELEASED;
    slot.payload_bytes = 0;
    InterlockedExchange(exchangeable(slot.owner), 0);
}

// The slot stays owned: the driver may be about to write into it, and frees it when it no longer is.
void abandon(volatile orv_slot& slot) noexcept {
    InterlockedExchange(exchangeable(slot.abandoned), 1);
}

}  // namespace

client_port::client_port(std::uint32_t timeout) noexcept : timeout_ms(timeout), lock(lock_spin_count) {}

client_port::~client_port() {
    const HANDLE handle = device.load(std::memory_order_acquire);
    if (handle != INVALID_HANDLE_VALUE) {
        CloseHandle(handle);
    }
    if (opened.semaphore != 0) {
        CloseHandle(from_word<HANDLE>(opened.semaphore));
    }
}

bool client_port::connect() noexcept {
    if (device.load(std::memory_order_acquire) != INVALID_HANDLE_VALUE) {
        return true;
    }
    const win::critical_section_lock opening(lock);
    return device.load(std::memory_order_relaxed) != INVALID_HANDLE_VALUE || open();
}

// The address comes from the driver and is not trusted: reading an unmapped page would end the host.
bool client_port::look_at_section(std::uint64_t address) noexcept {
    const auto* const section = from_word<const volatile std::uint8_t*>(address);
    if (mapping::readable_bytes(section) < ORV_STATUS_BLOCK_BYTES) {
        return false;
    }
    mapped_bytes = mapping::mapped_bytes(section);
    writable_end = ORV_STATUS_BLOCK_BYTES + mapping::writable_bytes(section + ORV_STATUS_BLOCK_BYTES);
    return true;
}

bool client_port::open() noexcept {
    const HANDLE handle = CreateFileW(ORV_DEVICE_PATH, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return false;
    }
    orv_open_reply answer{};
    DWORD answer_bytes = 0;
    const bool answered = DeviceIoControl(handle, ORV_IOCTL_OPEN, nullptr, 0, &answer, sizeof answer,
                                          &answer_bytes, nullptr) != FALSE;
    if (!answered || answer.semaphore == 0 || !look_at_section(answer.section)) {
        if (answered && answer.semaphore != 0) {
            CloseHandle(from_word<HANDLE>(answer.semaphore));
        }
        CloseHandle(handle);
        return false;
    }
    opened = answer;
    device.store(handle, std::memory_order_release);
    return true;
}

const volatile orv_status_block& client_port::status() const noexcept {
    return *from_word<const volatile orv_status_block*>(opened.section);
}

volatile orv_slot* client_port::acquire_slot(const orv_request& request) noexcept {
    if (!connect() || status().state == 0) {
        return nullptr;
    }
    volatile orv_slot* slot = claim_slot();
    if (slot != nullptr) {
        post(*slot, request);
        ReleaseSemaphore(from_word<HANDLE>(opened.semaphore), 1, nullptr);
    }
    return slot;
}

// The system is asked only about a slot that was not there to be written when the section was opened: one
// that has grown since, or lies behind one that cannot be written.
bool client_port::is_writable(const volatile orv_slot& slot, std::uint64_t slot_end) const noexcept {
    return slot_end <= writable_end || mapping::writable_bytes(&slot) >= ORV_SLOT_BYTES;
}

volatile orv_slot* client_port::claim_slot() noexcept {
    auto* const section = from_word<volatile std::uint8_t*>(opened.section);
    const auto process_id = static_cast<LONG>(GetCurrentProcessId());
    for (int pass = 0; pass < claim_passes; ++pass) {
        std::uint64_t slot_end = ORV_STATUS_BLOCK_BYTES;
        // The first slot is tried whatever the size word says. The word is read anew before each further one:
        // the driver may change it at any time. Nothing beyond the mapping is a slot.
        do {
            auto* const slot = reinterpret_cast<volatile orv_slot*>(section + slot_end);
            slot_end += ORV_SLOT_BYTES;
            if (is_writable(*slot, slot_end) &&
                InterlockedCompareExchange(exchangeable(slot->owner), process_id, 0) == 0) {
                return slot;
            }
        } while (slot_end + ORV_SLOT_BYTES <= std::min<std::uint64_t>(status().section_bytes, mapped_bytes));
    }
    return nullptr;
}

// Most answers come within a fraction of a millisecond; the first sleep would turn that into 10 ms. Until the
// limit this thread gives its processor to whoever can use it, the service above all.
void client_port::yield_to_service(const volatile orv_slot& slot) const noexcept {
    const LONGLONG started_us = now_us();
    while (slot.state != ORV_SLOT_REPLIED && status().state != 0 && now_us() - started_us < yield_limit_us) {
        SwitchToThread();
    }
}

void client_port::wait_for_reply(const volatile orv_slot& slot) noexcept {
    const DWORD started = GetTickCount();
    while (slot.state != ORV_SLOT_REPLIED) {
        SleepEx(poll_interval_ms, TRUE);
        // Unsigned subtraction, which is right also when the tick count has wrapped.
        if (GetTickCount() - started > timeout_ms || !connect() || status().state == 0) {
            return;
        }
    }
}

bool client_port::post_one_way(const orv_request& request) noexcept {
    if (!connect()) {
        return true;
    }
    volatile orv_slot* slot = acquire_slot(request);
    if (slot == nullptr) {
        return false;
    }
    abandon(*slot);
    return true;
}

bool client_port::transact(const orv_request& request, char* reply, std::uint32_t& reply_bytes) noexcept {
    if (reply == nullptr) {
        return post_one_way(request);
    }
    volatile orv_slot* slot = acquire_slot(request);
    if (slot == nullptr) {
        return false;
    }
    yield_to_service(*slot);
    wait_for_reply(*slot);
    // Checked once more after the wait has ended: a reply that came during the last sleep is taken.
    if (load_acquire(slot->state) != ORV_SLOT_REPLIED) {
        abandon(*slot);
        return false;
    }
    reply_bytes = take_reply(*slot, reply);
    release(*slot);
    return true;
}

}  // namespace ov::ipc::drvport::details
