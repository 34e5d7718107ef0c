#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "companions/devdriver/service_side.h"
#include "ovufc/noncopyable.h"

namespace ov::test {

/// What the service answers. Made from a text, which is the whole of it in most tests.
struct scripted_reply {
    scripted_reply(std::string text) : bytes(std::move(text)) {}  // NOLINT: meant to be implicit
    scripted_reply(const char* text) : bytes(text) {}             // NOLINT: meant to be implicit

    std::string bytes;                         // what is written, at most 3980 bytes of it
    DWORD delay_ms = 0;                        // how long after the request
    std::optional<std::uint32_t> length_word;  // a length that is not the true one
};

using scripted_request = devdriver::request;

/// Told a request, gives the reply or nothing: nothing keeps the client waiting until it gives up. Runs on
/// the service's own thread, where GoogleTest's macros must not be used: look at `requests()` instead.
using answer_function = std::function<std::optional<scripted_reply>(const scripted_request&)>;

/// Plays the service side of the real driver, from construction to destruction, for clients in any process:
///
///     scripted_service service([](const auto&) { return R"({"statusCode":0,"data":{}})"; });
///     service.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
///     EXPECT_EQ(service_calls::protect_folder(L"C:\\x"), S_OK);
///     EXPECT_EQ(service.requests().back().text, R"({"parameters":…,"serviceCall":…})");
///
/// A lambda that stays silent at times says so: `[](const auto& r) -> std::optional<scripted_reply>`.
/// For programs declared with `orv_test_program(… LINK testkit … DRIVER)`. State word 1, generation and
/// flags 0 at first; answers at once, several clients at a time. One instance at a time; a new one waits for
/// the driver to let the last one go. Destruction puts the state word to 0. Members may be called from any
/// thread. Throws std::runtime_error when the driver will not have it.
class scripted_service : private noncopyable {
  public:
    explicit scripted_service(answer_function answer);
    ~scripted_service();

    /// From the next request on.
    void set_answer(answer_function answer);

    /// Words of the status block.
    void set_state(std::uint32_t value) noexcept;
    void set_generation(std::uint32_t value) noexcept;
    void set_flags(std::uint32_t value) noexcept;
    void set_section_bytes(std::uint32_t value) noexcept;

    /// The requests seen so far, oldest first.
    [[nodiscard]] std::vector<scripted_request> requests() const;
    void forget_requests();
    /// Waits until at least `count` requests were seen; false after `timeout_ms`.
    [[nodiscard]] bool wait_for_requests(std::size_t count, DWORD timeout_ms = 5000) const;

    /// The shared words themselves, for tests of the port and the driver.
    [[nodiscard]] devdriver::service_side& side() noexcept;

  private:
    class runner;
    std::unique_ptr<runner> runner_;
};

}  // namespace ov::test
