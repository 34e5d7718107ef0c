#pragma once

#include <windows.h>

#include <functional>
#include <utility>

#include "companions/devdriver/service_side.h"
#include "companions/devservice/calls/call_context.h"
#include "companions/devservice/copies/marks.h"
#include "companions/devservice/serving/presence.h"

namespace ov::devservice {

/// The loop that serves: takes requests from the driver one after the other, answers them, and keeps the
/// status block as the state says. Everything happens on the thread that calls `run`.
class server {
  public:
    /// `when_serving` is called once, when clients can be answered.
    server(call_context& context, presence& shown, std::function<void()> when_serving)
        : context_(context),
          shown_(shown),
          when_serving_(std::move(when_serving)),
          marks_(context.store.folder()) {}

    /// Serves until `presence::stopping`; when the driver goes meanwhile, waits for it and serves again.
    /// ERROR_SUCCESS at the end. Before serving once: ERROR_FILE_NOT_FOUND without a driver,
    /// ERROR_ACCESS_DENIED for a caller that is not an administrator, ERROR_BUSY while another process
    /// serves.
    [[nodiscard]] DWORD run();

  private:
    void begin();
    void wait_for_driver();
    void take_up_changes();
    void show_state();
    void keep_marks();
    void answer(const devdriver::request& request);

    call_context& context_;
    presence& shown_;
    std::function<void()> when_serving_;
    marks marks_;
    std::uint64_t marked_revision_ = 0;
    devdriver::service_side side_;
};

}  // namespace ov::devservice
