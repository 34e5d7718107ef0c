#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "companions/devservice/calls/call_context.h"
#include "companions/devservice/store/vault.h"
#include "ovufc/json.h"
#include "ovufc/protocol/service_calls.h"

namespace ov::devservice {

using protocol::service_call;

/// A folder of its own for each test, removed at its end: "user" is what a person's files are in, "state" is
/// the service's, "desktop" takes the exports.
class vault_fixture : public ::testing::Test {
  protected:
    vault_fixture();
    ~vault_fixture() override;

    [[nodiscard]] std::wstring user_path(const std::wstring& relative) const;
    void write(const std::wstring& path, const std::string& content) const;
    /// Content of a file; a text that no test writes when it cannot be read.
    [[nodiscard]] static std::string read(const std::wstring& path);
    [[nodiscard]] static bool exists(const std::wstring& path);
    /// Every file below `folder` that holds `content`.
    [[nodiscard]] static std::size_t count_with_content(const std::wstring& folder,
                                                        const std::string& content);
    [[nodiscard]] static std::size_t count_files(const std::wstring& folder);

    /// Sends a call through the dispatcher; the parsed reply.
    [[nodiscard]] json call(service_call number, const json& parameters);
    [[nodiscard]] static int status_of_reply(const json& reply) { return reply.at("statusCode").get<int>(); }
    /// The text of the file that a reply names, which is then deleted.
    [[nodiscard]] static std::string handed_over(const json& reply);

    /// Removes a folder with all that it holds; follows no link that shows an attribute.
    static void remove_tree(const std::wstring& folder);

    void protect_user_folder();
    /// Takes a restore point that leaves out so many files; its identity as call parameters.
    [[nodiscard]] json take_point(std::size_t left_out_expected = 0);

    /// Makes a symbolic link that leads to `target`.
    void link(const std::wstring& path, const std::wstring& target);

    std::wstring root;
    std::wstring user;
    std::wstring desktop;
    std::string user_utf8;
    std::string temp_utf8;
    vault store;
    call_context context;
    std::vector<std::wstring> links;
};

}  // namespace ov::devservice
