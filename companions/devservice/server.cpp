#include "companions/devservice/server.h"

#include "companions/devservice/console.h"
#include "companions/devservice/dispatcher.h"

namespace ov::devservice {
namespace {

constexpr std::uint32_t serving = 1;
// A service that has just been stopped may still be closing its side of the driver.
constexpr DWORD open_patience_ms = 3'000;

}  // namespace

DWORD server::run() {
    if (const DWORD error = side_.open(open_patience_ms); error != ERROR_SUCCESS) {
        return error;
    }
    take_up_changes();
    side_.set_state(serving);
    context_.note("serving");
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
        } else {
            take_up_changes();
        }
    }
    side_.close();
    context_.note("stopped");
    return ERROR_SUCCESS;
}

void server::answer(const devdriver::request& request) {
    const std::string text = answer_request(context_, request.text);
    // First what the reply is about: a client that has read it may look at the status block at once.
    show_state();
    side_.reply(request, text);
}

void server::take_up_changes() {
    if (const DWORD error = context_.store.reload(); error != ERROR_SUCCESS) {
        context_.note("the state file cannot be read; serving the state before it: " + describe(error));
    }
    show_state();
}

void server::show_state() {
    const service_state& state = context_.store.state();
    side_.set_flags(state.flags);
    side_.set_generation(state.generation);
    shown_.publish(state.revision);
}

}  // namespace ov::devservice
