#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "ovufc/win/srw_lock.h"
#include "testkit/service/scripted_service.h"

namespace ov::test {

/// The service side of the real driver, which serves one protected-locations document as the product's own
/// does: in a file that it writes into the folder named by the request. Any thread may set what is served.
class document_service {
  public:
    document_service();

    /// Serves `document` from now on, under the next configuration generation.
    void publish(const std::string& document);
    /// The next fetches end with a non-zero status, until something is published.
    void fail();
    void set_delay(DWORD delay_ms) noexcept { delay_ms_ = delay_ms; }
    void set_generation(std::uint32_t value) noexcept { service_.set_generation(value); }
    void set_flags(std::uint32_t value) noexcept { service_.set_flags(value); }

    /// How often the document was asked for.
    [[nodiscard]] int fetches() const noexcept { return fetches_; }
    /// True while a file that was served is still there.
    [[nodiscard]] bool last_file_exists() const;

  private:
    [[nodiscard]] std::optional<scripted_reply> answer(const scripted_request& request);

    mutable SRWLOCK lock_ = SRWLOCK_INIT;
    std::string document_;
    std::wstring last_file_;
    bool fails_ = false;
    std::uint32_t generation_ = 0;
    std::atomic<int> fetches_ = 0;
    std::atomic<DWORD> delay_ms_ = 0;
    scripted_service service_;  // last: its thread uses all of the above
};

}  // namespace ov::test
