#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "companions/devdriver/service_wire.h"
#include "ovufc/noncopyable.h"
#include "ovufc/win/handle.h"

namespace ov::devdriver {

/// One request as it was found in a slot: copied, bounded, otherwise as untrusted as the client that wrote
/// it.
struct request {
    std::uint32_t slot = 0;  // index of the slot to answer in
    std::uint32_t process_id = 0;
    std::uint32_t thread_id = 0;
    std::uint32_t session_id = 0;
    std::string text;  // up to the first NUL, at most 2048 bytes
};

/// The service side of the driver: takes requests out of the slots and writes replies into them.
///
/// One thread takes requests; any thread may answer them and set status words. The mapping goes away when
/// this object is closed or destroyed, so no other call may be under way then. While it is open no client's
/// slot changes hands between taking a request and answering it.
class service_side : private noncopyable {
  public:
    service_side() noexcept = default;
    ~service_side() { close(); }

    /// Becomes the service side. ERROR_SUCCESS or why not: ERROR_FILE_NOT_FOUND without a driver,
    /// ERROR_ACCESS_DENIED for a caller that is not an administrator, ERROR_BUSY when another service side
    /// has not gone after `patience_ms`. The state word stays 0 until `set_state`.
    [[nodiscard]] DWORD open(DWORD patience_ms = 0) noexcept;

    /// State word 0, then gone. Requests taken and not answered count as given up.
    void close() noexcept;

    [[nodiscard]] bool is_open() const noexcept { return section_ != nullptr; }

    /// False when the state word is 0, which is how a driver that goes says so. Who has set another value and
    /// sees this false closes and opens again; that also mends what a client wrote there.
    [[nodiscard]] bool is_served() noexcept { return status().state != 0; }

    /// The next posted request; nothing after `timeout_ms` without one, as soon as `stop` (an event, or null)
    /// is set, or soon after the state word has become 0. A slot whose content is not a request is given up
    /// and skipped.
    [[nodiscard]] std::optional<request> next_request(DWORD timeout_ms, HANDLE stop = nullptr);

    /// Answers; clients take at most 2048 bytes, a slot has room for 3980 and what is beyond that is cut.
    void reply(const request& answered, std::string_view bytes) noexcept;
    /// The same with a length word of one's own: what a faulty driver would do.
    void reply_claiming(const request& answered, std::string_view bytes,
                        std::uint32_t claimed_bytes) noexcept;
    /// Leaves a request without an answer: the client waits until its time is over, then the driver frees the
    /// slot.
    void give_up(const request& unanswered) noexcept;

    /// The state word: non-zero while this side serves.
    void set_state(std::uint32_t value) noexcept { status().state = value; }
    void set_generation(std::uint32_t value) noexcept { status().generation = value; }
    void set_flags(std::uint32_t value) noexcept { status().flags = value; }

    /// The shared words themselves; only while open.
    [[nodiscard]] volatile orv_status_block& status() noexcept;
    [[nodiscard]] volatile orv_slot& slot(std::uint32_t index) noexcept;
    [[nodiscard]] std::uint32_t slot_count() const noexcept { return slot_count_; }

  private:
    [[nodiscard]] std::optional<request> take_posted();
    void answer_leftovers() noexcept;

    win::unique_file device_;
    win::unique_kernel_handle semaphore_;
    std::uint8_t* section_ = nullptr;
    std::uint32_t slot_count_ = 0;
    std::uint32_t next_slot_ = 0;  // where looking begins: no slot is served twice before its neighbours once
};

}  // namespace ov::devdriver
