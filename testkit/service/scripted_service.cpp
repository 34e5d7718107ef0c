#include "testkit/service/scripted_service.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "ovufc/win/handle.h"
#include "ovufc/win/srw_lock.h"

namespace ov::test {

namespace {

// How long the driver may take to notice that the last service side has gone.
constexpr DWORD patience_ms = 5000;
constexpr DWORD look_again_ms = 2;

// A reply that is not due yet.
struct pending_reply {
    DWORD due_tick;
    scripted_request request;
    scripted_reply reply;
};

bool is_due(DWORD tick) noexcept {
    return static_cast<LONG>(GetTickCount() - tick) >= 0;
}

}  // namespace

class scripted_service::runner : private noncopyable {
  public:
    explicit runner(answer_function answer) : answer_(std::move(answer)) {
        const DWORD error = side.open(patience_ms);
        if (error != ERROR_SUCCESS) {
            throw std::runtime_error("the driver takes no service side, error " + std::to_string(error));
        }
        side.set_generation(0);
        side.set_flags(0);
        stop_.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
        thread_.reset(CreateThread(nullptr, 0, &runner::run, this, 0, nullptr));
        if (!stop_ || !thread_) {
            throw std::runtime_error("no thread for the scripted service");
        }
        side.set_state(1);
    }
    ~runner() {
        SetEvent(stop_.get());
        WaitForSingleObject(thread_.get(), INFINITE);
    }

    void set_answer(answer_function answer) {
        const win::exclusive_lock held(lock_);
        answer_ = std::move(answer);
    }

    [[nodiscard]] std::vector<scripted_request> seen() const {
        const win::shared_lock held(lock_);
        return seen_;
    }

    void forget() {
        const win::exclusive_lock held(lock_);
        seen_.clear();
    }

    devdriver::service_side side;

  private:
    static DWORD WINAPI run(void* self) {
        static_cast<runner*>(self)->serve();
        return 0;
    }

    void serve() {
        while (WaitForSingleObject(stop_.get(), 0) == WAIT_TIMEOUT) {
            if (auto taken = side.next_request(until_next_reply(), stop_.get())) {
                answer(std::move(*taken));
            }
            send_due();
        }
    }

    void answer(scripted_request taken) {
        answer_function ask;
        {
            const win::exclusive_lock held(lock_);
            ask = answer_;
            seen_.push_back(taken);
        }
        if (auto reply = ask(taken)) {
            const DWORD due_tick = GetTickCount() + reply->delay_ms;
            pending_.push_back({due_tick, std::move(taken), std::move(*reply)});
        }
    }

    void send_due() {
        std::erase_if(pending_, [this](const pending_reply& pending) {
            if (!is_due(pending.due_tick)) {
                return false;
            }
            const auto own_length = static_cast<std::uint32_t>(pending.reply.bytes.size());
            side.reply_claiming(pending.request, pending.reply.bytes,
                                pending.reply.length_word.value_or(own_length));
            return true;
        });
    }

    [[nodiscard]] DWORD until_next_reply() const noexcept {
        DWORD wait_ms = INFINITE;
        for (const pending_reply& pending : pending_) {
            wait_ms = std::min(wait_ms, is_due(pending.due_tick) ? 0 : pending.due_tick - GetTickCount());
        }
        return wait_ms;
    }

    mutable SRWLOCK lock_ = SRWLOCK_INIT;  // guards the two below; the rest is the thread's own
    answer_function answer_;
    std::vector<scripted_request> seen_;

    std::vector<pending_reply> pending_;
    win::unique_kernel_handle stop_;
    win::unique_kernel_handle thread_;
};

scripted_service::scripted_service(answer_function answer)
    : runner_(std::make_unique<runner>(std::move(answer))) {}

scripted_service::~scripted_service() = default;

void scripted_service::set_answer(answer_function answer) {
    runner_->set_answer(std::move(answer));
}

void scripted_service::set_state(std::uint32_t value) noexcept {
    runner_->side.set_state(value);
}

void scripted_service::set_generation(std::uint32_t value) noexcept {
    runner_->side.set_generation(value);
}

void scripted_service::set_flags(std::uint32_t value) noexcept {
    runner_->side.set_flags(value);
}

void scripted_service::set_section_bytes(std::uint32_t value) noexcept {
    runner_->side.status().section_bytes = value;
}

std::vector<scripted_request> scripted_service::requests() const {
    return runner_->seen();
}

void scripted_service::forget_requests() {
    runner_->forget();
}

bool scripted_service::wait_for_requests(std::size_t count, DWORD timeout_ms) const {
    const DWORD started = GetTickCount();
    while (runner_->seen().size() < count) {
        if (GetTickCount() - started > timeout_ms) {
            return false;
        }
        Sleep(look_again_ms);
    }
    return true;
}

devdriver::service_side& scripted_service::side() noexcept {
    return runner_->side;
}

}  // namespace ov::test
