#pragma once

#include <windows.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "ovufc/ipc/drvport/wire.h"
#include "ovufc/noncopyable.h"
#include "ovufc/win/critical_section.h"

namespace ov::ipc::drvport::details {

/// How long a reply is waited for.
inline constexpr std::uint32_t default_timeout_ms = 30000;

/// The mailbox to the kernel driver: opened on first use, open until destruction.
///
/// Any thread may call any member; nothing here throws or allocates. The handles belong to this object, the
/// mapping of the section to the driver, which takes it away when the device handle is closed. The section is
/// memory that other processes write: `status()` is read a word at a time, each word once.
class client_port : private noncopyable {
  public:
    explicit client_port(std::uint32_t timeout = default_timeout_ms) noexcept;
    virtual ~client_port();

    /// Opens the device unless it is open. True when the semaphore and a section whose status block can be
    /// read are there. A failure leaves the port closed and the next call tries again.
    [[nodiscard]] bool connect() noexcept;

    /// The status block; only after `connect` has returned true.
    [[nodiscard]] const volatile orv_status_block& status() const noexcept;

    /// Claims a free slot, posts `request` in it and signals the driver. Null when the driver is absent or
    /// serves nothing, or when every slot stayed busy for five passes. A slot that cannot be written is never
    /// free.
    [[nodiscard]] volatile orv_slot* acquire_slot(const orv_request& request) noexcept;

    /// One exchange. `reply` is null or has room for 2048 bytes, zeroed by the caller; on true `reply_bytes`
    /// of it were filled. On false both are untouched. Blocks for at most `timeout_ms`. A null `reply` posts
    /// the request without waiting and reports true even when the driver is absent: nobody may rely on it.
    [[nodiscard]] bool transact(const orv_request& request, char* reply, std::uint32_t& reply_bytes) noexcept;

  private:
    [[nodiscard]] bool open() noexcept;
    [[nodiscard]] bool look_at_section(std::uint64_t address) noexcept;
    [[nodiscard]] bool is_writable(const volatile orv_slot& slot, std::uint64_t slot_end) const noexcept;
    [[nodiscard]] volatile orv_slot* claim_slot() noexcept;
    [[nodiscard]] bool post_one_way(const orv_request& request) noexcept;
    void yield_to_service(const volatile orv_slot& slot) const noexcept;
    void wait_for_reply(const volatile orv_slot& slot) noexcept;

    std::uint32_t timeout_ms;
    orv_open_reply opened{};  // section, semaphore and the word nobody reads
    // Stored with release order once `opened` is filled, loaded with acquire order by the path without the
    // lock: whoever sees a valid handle sees the section and the semaphore too.
    std::atomic<HANDLE> device{INVALID_HANDLE_VALUE};
    win::critical_section lock;  // serialises opening, nothing else
    // Measured at opening, from the section's start: how far its mapping reaches. The section's own size word
    // cannot be trusted, since any client can overwrite it.
    std::uint64_t mapped_bytes = 0;
    // How far it could be written then, from the first slot on.
    std::uint64_t writable_end = 0;
};

}  // namespace ov::ipc::drvport::details
