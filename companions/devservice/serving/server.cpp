#include "companions/devservice/serving/server.h"

#include "companions/devservice/calls/dispatcher.h"
#include "companions/devservice/command_line/console.h"

namespace ov::devservice {
namespace {

constexpr std::uint32_t serving = 1;
// A service that has just been stopped may still be closing its side of the driver.
constexpr DWORD open_patience_ms = 3'000;
constexpr DWORD look_for_driver_ms = 250;

}  // namespace

DWORD server::run() {
    if (const DWORD error = side_.open(open_patience_ms); error != ERROR_SUCCESS) {
        return error;
    }
    begin();
    when_serving_();
    while (!shown_.stopping()) {
        // Requests may follow each other without a pause, so the event is looked at in between as well.
        if (WaitForSingleObject(shown_.wake_event(), 0) == WAIT_OBJECT_0) {
            take_up_changes();
            continue;
        }
        const std::optional<devdriver::request> request = side_.next_request(INFINITE, shown_.wake_event());
        if (request) {
            answer(*request);
        } else if (!side_.is_served()) {
            wait_for_driver();
        } else {
            take_up_changes();
        }
    }
    side_.close();
    context_.note("stopped");
    return ERROR_SUCCESS;
}

void server::begin() {
    take_up_changes();
    side_.set_state(serving);
    context_.note("serving");
}

void server::wait_for_driver() {
    side_.close();
    context_.note("the driver has gone; waiting for it");
    while (!shown_.stopping()) {
        if (side_.open() == ERROR_SUCCESS) {
            begin();
            return;
        }
        if (WaitForSingleObject(shown_.wake_event(), look_for_driver_ms) == WAIT_OBJECT_0) {
            take_up_changes();
        }
    }
}

void server::answer(const devdriver::request& request) {
    const std::string text = answer_request(context_, request.text);
    // First what the reply is about: a client that has read it may look at the status block at once.
    show_state();
    side_.reply(request, text);
    keep_marks();
}

void server::take_up_changes() {
    if (const DWORD error = context_.store.reload(); error != ERROR_SUCCESS) {
        context_.note("the state file cannot be read; serving the state before it: " + describe(error));
    }
    show_state();
    keep_marks();
}

void server::show_state() {
    const service_state& state = context_.store.state();
    if (side_.is_open()) {
        side_.set_flags(state.flags);
        side_.set_generation(state.generation);
    }
    shown_.publish(state.revision);
}

void server::keep_marks() {
    const service_state& state = context_.store.state();
    if (state.revision == marked_revision_) {
        return;
    }
    const marks::changes done = marks_.update(state);
    marked_revision_ = state.revision;
    if (done.set != 0 || done.taken_away != 0) {
        context_.note("  marks set: " + std::to_string(done.set) +
                      ", taken away: " + std::to_string(done.taken_away));
    }
    context_.note(done.failed);
}

}  // namespace ov::devservice
