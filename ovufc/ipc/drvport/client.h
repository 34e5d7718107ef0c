#pragma once

#include <cstdint>
#include <memory>

#include "ovufc/ipc/drvport/client_port.h"
#include "ovufc/noncopyable.h"

namespace ov::ipc::drvport {

/// This process's connection to the driver. Threads and errors: as client_port's members.
class client : private noncopyable {
  public:
    client();
    virtual ~client();

    [[nodiscard]] bool connect() noexcept;
    [[nodiscard]] bool transact(const orv_request& request, char* reply, std::uint32_t& reply_bytes) noexcept;

    /// The state word, or 0 when the driver is absent: non-zero while the driver serves requests.
    [[nodiscard]] std::uint32_t state() noexcept;
    /// The configuration generation, or 0 when the driver is absent.
    [[nodiscard]] std::uint32_t generation() noexcept;
    /// The flags word, or 0 when the driver is absent.
    [[nodiscard]] std::uint32_t flags() noexcept;

  private:
    std::uint32_t default_timeout_ms = details::default_timeout_ms;
    std::unique_ptr<details::client_port> port;
};

/// The one client, made by a static initialiser (nothing is opened then) and destroyed at module unload.
/// Null only when there was no memory for it while the module was loaded: go through the functions below.
extern std::unique_ptr<client> process_client;

/// `process_client`'s members, with an absent client reading as an absent driver.
[[nodiscard]] bool connect() noexcept;
[[nodiscard]] bool transact(const orv_request& request, char* reply, std::uint32_t& reply_bytes) noexcept;
[[nodiscard]] std::uint32_t state() noexcept;
[[nodiscard]] std::uint32_t generation() noexcept;
[[nodiscard]] std::uint32_t flags() noexcept;

}  // namespace ov::ipc::drvport
