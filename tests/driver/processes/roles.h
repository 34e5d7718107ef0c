#pragma once

#include <optional>
#include <string>

#include "ovufc/win/handle.h"
#include "testkit/process/child_process.h"

/// What this test program plays when it is started as its own child.
namespace ov::test::roles {

/// The arguments that start each role; the event named `ready` is set once the role is where it should be.
inline constexpr const wchar_t* client = L"client";  // tag, count: that many exchanges, all answered in kind
inline constexpr const wchar_t* holder = L"holder";  // ready: posts a request and waits without end
inline constexpr const wchar_t* waiter = L"waiter";  // ready: opens the port, then one exchange
inline constexpr const wchar_t* idler = L"idler";    // ready: opens the port and nothing more, without end
inline constexpr const wchar_t* opener = L"opener";  // ready: opens a port anew again and again, without end
inline constexpr const wchar_t* server = L"server";  // ready: serves in silence, without end
inline constexpr const wchar_t* falterer =
    L"falterer";                                   // ready: serves, and dies halfway through its first answer
inline constexpr const wchar_t* asker = L"asker";  // asks to serve; the error is the exit code
inline constexpr const wchar_t* vandal = L"vandal";  // seed: garbage all over the section

/// Exit codes of `client` and `waiter`.
inline constexpr int exchange_done = 0;
inline constexpr int exchange_failed = 3;
inline constexpr int wrong_reply = 4;

/// Plays the role that the command line names; nothing when it names none.
[[nodiscard]] std::optional<int> play(int argument_count, wchar_t** arguments);

/// What the scripted service must answer for `client` to be content.
[[nodiscard]] std::string answer_in_kind(const std::string& text);

/// A child that plays a role with a ready event; construction returns when it is ready.
class ready_child {
  public:
    explicit ready_child(const wchar_t* role);
    child_process& process() noexcept { return *process_; }

  private:
    std::optional<child_process> process_;
};

}  // namespace ov::test::roles
