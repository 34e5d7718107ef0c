#pragma once

#include <windows.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ovufc/noncopyable.h"
#include "ovufc/protocol/service_calls.h"
#include "testkit/process/shipped_module.h"
#include "testkit/files/temp_folder.h"
#include "testkit/imports/message_texts.h"
#include "testkit/process/watchdog.h"
#include "testkit/service/scripted_service.h"
#include "testkit/shell/data_object.h"
#include "testkit/shell/menu_reader.h"

namespace ov::test {

using protocol::service_call;

/// The shipped module in a host of its own, with the real driver and a service that answers by a table.
///
/// A fresh module for each test: its port to the driver is closed at first. Message numbers stand for texts.
class menus_fixture : public testing::Test {
  protected:
    menus_fixture();
    ~menus_fixture() override;

    /// Sets the reply to one service call; {"statusCode":0,"data":{}} otherwise.
    void reply(service_call number, const std::string& text);
    /// The folder-status reply.
    void reply_folder_status(bool is_protected, const std::string& ui_level = {});
    /// The reply of a service call whose answer is a file that the driver writes.
    void reply_with_file(service_call number, const std::string& content);

    /// The texts of the requests sent since the last call of this.
    std::vector<std::string> sent();

    Microsoft::WRL::ComPtr<IContextMenu> make_menu(REFCLSID rclsid) const;
    /// A file and folder menu, initialised with `selection`.
    Microsoft::WRL::ComPtr<IContextMenu> menu_on(IDataObject* selection) const;
    Microsoft::WRL::ComPtr<IContextMenu> menu_on(const std::wstring& path) const;

    watchdog dog_{60'000};
    shipped_module module_;
    scripted_service service_;
    temp_folder folder_;

  private:
    std::map<service_call, std::string> replies_;
    void publish_replies();
    // The resource library is loaded by the first class object that the module hands out.
    bool has_texts_;
    message_texts texts_;
};

HRESULT initialize(IUnknown* object, IDataObject* selection);

/// `InvokeCommand` by offset, or by whatever the pointer is.
HRESULT invoke(IContextMenu* menu, UINT_PTR verb);

/// What `QueryContextMenu` makes of a host's menu of two items, at position 1 with ids from 100.
struct queried_menu : private noncopyable {
    queried_menu(IContextMenu* menu, UINT flags);
    ~queried_menu();

    static constexpr UINT first_id = 100;

    HMENU host;
    HRESULT result;
    /// What was added, between the host's two items.
    std::vector<menu_item> added;
    /// The items of the first added item's submenu.
    std::vector<menu_item> submenu;
};

/// A request as it stands on the wire.
std::string request_text(service_call number, const std::string& parameters);
/// A UTF-16 text as a JSON string, with its quotation marks.
std::string json_text(const std::wstring& text);

/// The header of the namespace folder's first column, as a new folder shows it.
[[nodiscard]] std::wstring first_header(const shipped_module& module);

}  // namespace ov::test
