#include "companions/devdriver/service_side.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace ov::devdriver {

namespace {

constexpr DWORD busy_pause_ms = 20;
constexpr DWORD look_again_ms = 500;
constexpr std::uint32_t request_header_bytes = offsetof(orv_request, text);

// The driver hands out addresses and handles as 64-bit words.
template <class To>
To from_word(std::uint64_t word) noexcept {
    return reinterpret_cast<To>(static_cast<std::uintptr_t>(word));
}

bool change_state(volatile orv_slot& slot, std::uint32_t from, std::uint32_t to) noexcept {
    return InterlockedCompareExchange(reinterpret_cast<volatile LONG*>(&slot.state), static_cast<LONG>(to),
                                      static_cast<LONG>(from)) == static_cast<LONG>(from);
}

// Reads what a client wrote; false when that is not a request.
bool read_request(const volatile orv_slot& slot, request& out) {
    const std::uint32_t kind = slot.kind;
    const std::uint32_t payload_bytes = slot.payload_bytes;
    if (kind != ORV_KIND_REQUEST || payload_bytes < request_header_bytes ||
        payload_bytes > ORV_REQUEST_BYTES) {
        return false;
    }
    orv_request copy{};
    std::memcpy(&copy, const_cast<const std::uint8_t*>(slot.payload), payload_bytes);
    out.process_id = copy.process_id;
    out.thread_id = copy.thread_id;
    out.session_id = copy.session_id;
    out.text.assign(copy.text, strnlen(copy.text, sizeof copy.text));
    return true;
}

DWORD ask_to_serve(HANDLE device, orv_serve_reply& answer) noexcept {
    DWORD bytes = 0;
    if (!DeviceIoControl(device, ORV_IOCTL_SERVE, nullptr, 0, &answer, sizeof answer, &bytes, nullptr)) {
        return GetLastError();
    }
    return bytes == sizeof answer ? ERROR_SUCCESS : ERROR_INVALID_DATA;
}

}  // namespace

DWORD service_side::open(DWORD patience_ms) noexcept {
    close();
    win::unique_file device(CreateFileW(ORV_DEVICE_PATH, GENERIC_READ, FILE_SHARE_READ, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!device) {
        return GetLastError();
    }
    orv_serve_reply answer{};
    const DWORD started = GetTickCount();
    DWORD error = ask_to_serve(device.get(), answer);
    while (error == ERROR_BUSY && GetTickCount() - started < patience_ms) {
        Sleep(busy_pause_ms);
        error = ask_to_serve(device.get(), answer);
    }
    if (error != ERROR_SUCCESS) {
        return error;
    }
    device_ = std::move(device);
    semaphore_.reset(from_word<HANDLE>(answer.semaphore));
    section_ = from_word<std::uint8_t*>(answer.section);
    slot_count_ =
        static_cast<std::uint32_t>((answer.section_bytes - ORV_STATUS_BLOCK_BYTES) / ORV_SLOT_BYTES);
    answer_leftovers();
    return ERROR_SUCCESS;
}

void service_side::close() noexcept {
    if (section_ == nullptr) {
        return;
    }
    set_state(0);
    section_ = nullptr;
    slot_count_ = 0;
    semaphore_.reset();
    device_.reset();
}

// A client that slept through the change of service sides waits for an answer that the one who took its
// request can no longer give. An empty one ends its wait.
void service_side::answer_leftovers() noexcept {
    for (std::uint32_t index = 0; index < slot_count_; ++index) {
        volatile orv_slot& left = slot(index);
        if (left.state == ORV_SLOT_GIVEN_UP) {
            left.payload_bytes = 0;
            (void)change_state(left, ORV_SLOT_GIVEN_UP, ORV_SLOT_REPLIED);
        }
    }
}

volatile orv_status_block& service_side::status() noexcept {
    return *reinterpret_cast<volatile orv_status_block*>(section_);
}

volatile orv_slot& service_side::slot(std::uint32_t index) noexcept {
    return *reinterpret_cast<volatile orv_slot*>(section_ + ORV_STATUS_BLOCK_BYTES +
                                                 std::size_t{index} * ORV_SLOT_BYTES);
}

std::optional<request> service_side::take_posted() {
    for (std::uint32_t step = 0; step < slot_count_; ++step) {
        const std::uint32_t index = (next_slot_ + step) % slot_count_;
        volatile orv_slot& posted = slot(index);
        if (posted.state != ORV_SLOT_POSTED || !change_state(posted, ORV_SLOT_POSTED, ORV_SLOT_IN_SERVICE)) {
            continue;
        }
        request taken;
        taken.slot = index;
        if (read_request(posted, taken)) {
            next_slot_ = index + 1;
            return taken;
        }
        give_up(taken);
    }
    return std::nullopt;
}

std::optional<request> service_side::next_request(DWORD timeout_ms, HANDLE stop) {
    const std::array<HANDLE, 2> waited_for{semaphore_.get(), stop};
    const DWORD started = GetTickCount();
    for (;;) {
        // Looking comes first: the signals of requests that an earlier service side left are long gone.
        if (auto taken = take_posted()) {
            return taken;
        }
        const DWORD elapsed_ms = GetTickCount() - started;
        const DWORD left_ms =
            timeout_ms == INFINITE ? INFINITE : timeout_ms - std::min<DWORD>(elapsed_ms, timeout_ms);
        const DWORD step_ms = std::min(left_ms, look_again_ms);
        const DWORD woken_by =
            WaitForMultipleObjects(stop != nullptr ? 2 : 1, waited_for.data(), FALSE, step_ms);
        const bool waits_on = woken_by == WAIT_TIMEOUT && step_ms < left_ms && is_served();
        if (woken_by != WAIT_OBJECT_0 && !waits_on) {
            return std::nullopt;
        }
    }
}

void service_side::reply(const request& answered, std::string_view bytes) noexcept {
    reply_claiming(answered, bytes,
                   static_cast<std::uint32_t>(std::min<std::size_t>(bytes.size(), ORV_PAYLOAD_BYTES)));
}

void service_side::reply_claiming(const request& answered, std::string_view bytes,
                                  std::uint32_t claimed_bytes) noexcept {
    volatile orv_slot& target = slot(answered.slot);
    std::memcpy(const_cast<std::uint8_t*>(target.payload), bytes.data(),
                std::min<std::size_t>(bytes.size(), ORV_PAYLOAD_BYTES));
    target.payload_bytes = claimed_bytes;
    (void)change_state(target, ORV_SLOT_IN_SERVICE, ORV_SLOT_REPLIED);
}

void service_side::give_up(const request& unanswered) noexcept {
    (void)change_state(slot(unanswered.slot), ORV_SLOT_IN_SERVICE, ORV_SLOT_GIVEN_UP);
}

}  // namespace ov::devdriver
