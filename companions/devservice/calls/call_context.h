#pragma once

#include <functional>
#include <string>

#include "companions/devservice/files/problem.h"
#include "companions/devservice/messages/reply.h"
#include "companions/devservice/store/vault.h"

namespace ov::devservice {

/// What the answers to service calls are made from.
struct call_context {
    vault& store;

    /// Where exports go; empty for the desktop of the user that the service runs as.
    std::wstring desktop;

    /// Opens a file as a double-click would; not called when empty.
    std::function<void(const std::wstring& file)> open_file;

    /// One line for whoever reads the service's output.
    std::function<void(const std::string& line)> log;

    void note(const std::string& line) const {
        if (log) {
            log(line);
        }
    }
    void note(const problems& left_out) const;
};

/// One function per service call; `parameters` is an object from outside.
[[nodiscard]] reply get_folder_status(call_context& context, const json& parameters);
[[nodiscard]] reply protect_folder(call_context& context, const json& parameters);
[[nodiscard]] reply protect_folder_as(call_context& context, const json& parameters);
[[nodiscard]] reply unprotect_folder(call_context& context, const json& parameters);
[[nodiscard]] reply export_folder(call_context& context, const json& parameters);
[[nodiscard]] reply get_protected_folders(call_context& context, const json& parameters);

[[nodiscard]] reply get_file_chronels(call_context& context, const json& parameters);
[[nodiscard]] reply restore_file_chronel(call_context& context, const json& parameters);
[[nodiscard]] reply open_file_chronel(call_context& context, const json& parameters);

[[nodiscard]] reply get_restore_points(call_context& context, const json& parameters);
[[nodiscard]] reply get_restore_folders(call_context& context, const json& parameters);
[[nodiscard]] reply restore_from_point(call_context& context, const json& parameters);
[[nodiscard]] reply get_last_timestamp(call_context& context, const json& parameters);

}  // namespace ov::devservice
