#include "tests/module/menus/menus_fixture.h"

#include <array>

#include "module/state/class_ids.h"
#include "ovufc/json.h"
#include "ovufc/win/handle.h"
#include "ovufc/win/utf8.h"

namespace ov::test {

namespace {

using Microsoft::WRL::ComPtr;

constexpr const char* empty_success = R"({"data":{},"statusCode":0})";

service_call service_call_of(const std::string& request) {
    const auto parsed = ov::json::parse(request, nullptr, /*allow_exceptions=*/false);
    return service_call{parsed.is_object() ? parsed.value("serviceCall", -1) : -1};
}

}  // namespace

menus_fixture::menus_fixture()
    : service_([](const auto&) { return empty_success; }),
      has_texts_(make_menu(class_ids::shell_extension) != nullptr),
      texts_(module_.handle()) {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    EXPECT_TRUE(has_texts_);
}

menus_fixture::~menus_fixture() {
    EXPECT_EQ(module_.can_unload_now(), S_OK) << "an object was left over";
    CoUninitialize();
}

void menus_fixture::publish_replies() {
    service_.set_answer([replies = replies_](const scripted_request& request) -> scripted_reply {
        const auto found = replies.find(service_call_of(request.text));
        return found == replies.end() ? empty_success : found->second;
    });
}

void menus_fixture::reply(service_call number, const std::string& text) {
    replies_[number] = text;
    publish_replies();
}

void menus_fixture::reply_folder_status(bool is_protected, const std::string& ui_level) {
    std::string data = is_protected ? R"("protectedFolder":true)" : R"("protectedFolder":false)";
    if (!ui_level.empty()) {
        data += R"(,"uiLevel":")" + ui_level + "\"";
    }
    reply(service_call::get_folder_status, R"({"data":{)" + data + R"(},"statusCode":0})");
}

void menus_fixture::reply_with_file(service_call number, const std::string& content) {
    const std::wstring name = L"reply" + std::to_wstring(static_cast<int>(number)) + L".json";
    DeleteFileW((folder_.path() + L"\\" + name).c_str());
    const std::wstring path = folder_.make_file(name, content);
    reply(number, R"({"data":{"objPath":)" + json_text(path) + R"(},"statusCode":0})");
}

std::vector<std::string> menus_fixture::sent() {
    std::vector<std::string> texts;
    for (const auto& request : service_.requests()) {
        texts.push_back(request.text);
    }
    service_.forget_requests();
    return texts;
}

ComPtr<IContextMenu> menus_fixture::make_menu(REFCLSID rclsid) const {
    ComPtr<IContextMenu> menu;
    EXPECT_EQ(module_.create(rclsid, IID_PPV_ARGS(&menu)), S_OK);
    return menu;
}

ComPtr<IContextMenu> menus_fixture::menu_on(IDataObject* selection) const {
    auto menu = make_menu(class_ids::shell_extension);
    EXPECT_EQ(initialize(menu.Get(), selection), S_OK);
    return menu;
}

ComPtr<IContextMenu> menus_fixture::menu_on(const std::wstring& path) const {
    const auto selection = select_paths({path});
    auto menu = menu_on(selection.Get());
    EXPECT_EQ(selection->references(), 1U) << "the selection's memory was not given back";
    EXPECT_EQ(selection->lock_count(), 0U);
    return menu;
}

HRESULT initialize(IUnknown* object, IDataObject* selection) {
    ComPtr<IShellExtInit> init;
    EXPECT_EQ(object->QueryInterface(IID_PPV_ARGS(&init)), S_OK);
    return init->Initialize(nullptr, selection, nullptr);
}

HRESULT invoke(IContextMenu* menu, UINT_PTR verb) {
    CMINVOKECOMMANDINFO info{};
    info.cbSize = sizeof info;
    info.lpVerb = reinterpret_cast<LPCSTR>(verb);
    return menu->InvokeCommand(&info);
}

queried_menu::queried_menu(IContextMenu* menu, UINT flags) : host(CreatePopupMenu()) {
    AppendMenuW(host, MF_STRING, 1, L"first");
    AppendMenuW(host, MF_STRING, 2, L"last");
    result = menu->QueryContextMenu(host, 1, first_id, 0x7FFF, flags);
    const auto items = read_menu(host);
    EXPECT_EQ(items.front().text, L"first");
    EXPECT_EQ(items.back().text, L"last");
    added.assign(items.begin() + 1, items.end() - 1);
    if (!added.empty()) {
        submenu = read_menu(added.front().submenu);
    }
}

queried_menu::~queried_menu() {
    DestroyMenu(host);
}

std::string request_text(service_call number, const std::string& parameters) {
    return R"({"parameters":)" + parameters + R"(,"serviceCall":)" +
           std::to_string(static_cast<int>(number)) + "}";
}

std::string json_text(const std::wstring& text) {
    return ov::json(win::to_utf8(text).value()).dump();
}

std::wstring first_header(const shipped_module& module) {
    ComPtr<IShellFolder2> folder;
    EXPECT_EQ(module.create(class_ids::namespace_folder, IID_PPV_ARGS(&folder)), S_OK);
    SHELLDETAILS header{};
    EXPECT_EQ(folder->GetDetailsOf(nullptr, 0, &header), S_OK);
    std::wstring text = header.str.pOleStr;
    CoTaskMemFree(header.str.pOleStr);
    return text;
}

}  // namespace ov::test
