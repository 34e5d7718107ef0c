#pragma once

#include <functional>
#include <string>

#include "companions/devservice/calls/reply.h"
#include "companions/devservice/files/problem.h"
#include "companions/devservice/store/vault.h"

namespace ov::devservice {

/// What the answers to service calls are made from.
struct answering {
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
[[nodiscard]] reply get_folder_status(answering& context, const json& parameters);
[[nodiscard]] reply protect_folder(answering& context, const json& parameters);
[[nodiscard]] reply protect_folder_as(answering& context, const json& parameters);
[[nodiscard]] reply unprotect_folder(answering& context, const json& parameters);
[[nodiscard]] reply export_folder(answering& context, const json& parameters);
[[nodiscard]] reply get_protected_folders(answering& context, const json& parameters);

[[nodiscard]] reply get_file_chronels(answering& context, const json& parameters);
[[nodiscard]] reply restore_file_chronel(answering& context, const json& parameters);
[[nodiscard]] reply open_file_chronel(answering& context, const json& parameters);

[[nodiscard]] reply get_restore_points(answering& context, const json& parameters);
[[nodiscard]] reply get_restore_folders(answering& context, const json& parameters);
[[nodiscard]] reply restore_from_point(answering& context, const json& parameters);
[[nodiscard]] reply get_last_timestamp(answering& context, const json& parameters);

}  // namespace ov::devservice
