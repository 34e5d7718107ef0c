#pragma once

namespace ov::test {

/// Stops the driver as an administrator would, and waits until it has stopped. False when it has not.
[[nodiscard]] bool stop_driver();
/// Starts it again; true also when it runs already.
[[nodiscard]] bool start_driver();

}  // namespace ov::test
