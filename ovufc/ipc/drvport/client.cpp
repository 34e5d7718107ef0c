#include "ovufc/ipc/drvport/client.h"

#include <new>

namespace ov::ipc::drvport {

namespace {

std::unique_ptr<client> make_process_client() noexcept {
    try {
        return std::make_unique<client>();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace

std::unique_ptr<client> process_client = make_process_client();

client::client() : port(std::make_unique<details::client_port>(default_timeout_ms)) {}

client::~client() = default;

bool client::connect() noexcept {
    return port->connect();
}

bool client::transact(const orv_request& request, char* reply, std::uint32_t& reply_bytes) noexcept {
    return port->transact(request, reply, reply_bytes);
}

std::uint32_t client::state() noexcept {
    return port->connect() ? port->status().state : 0;
}

std::uint32_t client::generation() noexcept {
    return port->connect() ? port->status().generation : 0;
}

std::uint32_t client::flags() noexcept {
    return port->connect() ? port->status().flags : 0;
}

bool connect() noexcept {
    return process_client != nullptr && process_client->connect();
}

bool transact(const orv_request& request, char* reply, std::uint32_t& reply_bytes) noexcept {
    if (process_client == nullptr) {
        return reply == nullptr;  // as the port answers for an absent driver
    }
    return process_client->transact(request, reply, reply_bytes);
}

std::uint32_t state() noexcept {
    return process_client != nullptr ? process_client->state() : 0;
}

std::uint32_t generation() noexcept {
    return process_client != nullptr ? process_client->generation() : 0;
}

std::uint32_t flags() noexcept {
    return process_client != nullptr ? process_client->flags() : 0;
}

}  // namespace ov::ipc::drvport
