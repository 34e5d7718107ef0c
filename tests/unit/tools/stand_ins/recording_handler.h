#pragma once

#include <windows.h>
#include <ole2.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <algorithm>
#include <string>
#include <vector>

#include "ovufc/com/adopt.h"
#include "ovufc/com/com_object.h"
#include "ovufc/noncopyable.h"

namespace ov::stand_ins {

/// What handlers of one test were told, and what they add to menus.
struct handler_record {
    std::vector<std::wstring> texts{L"&First", L"Second"};
    std::wstring verb = L"first";
    HRESULT initialize_result = S_OK;
    HRESULT query_result = S_OK;
    int initialised = 0;
    int alive = 0;
    Microsoft::WRL::ComPtr<IDataObject> selection;
    std::vector<UINT> flags;
    std::vector<UINT> invoked;
};

/// A context-menu handler that adds the record's items and notes what it is told. Its first command has the
/// record's verb.
class recording_handler final
    : public com::com_object<recording_handler, com::bases<IContextMenu, IShellExtInit>,
                             com::answers<com::answer<IUnknown, IContextMenu>, com::answer<IContextMenu>,
                                          com::answer<IShellExtInit>>> {
  public:
    explicit recording_handler(handler_record& record) : record_(record) { ++record_.alive; }
    virtual ~recording_handler() { --record_.alive; }

    STDMETHODIMP
    Initialize(PCIDLIST_ABSOLUTE /*folder*/, IDataObject* selection, HKEY /*key*/) noexcept override {
        ++record_.initialised;
        record_.selection = selection;
        return record_.initialize_result;
    }
    STDMETHODIMP
    QueryContextMenu(HMENU menu, UINT index, UINT first, UINT /*last*/, UINT flags) noexcept override {
        record_.flags.push_back(flags);
        if (FAILED(record_.query_result)) {
            return record_.query_result;
        }
        const auto count = static_cast<UINT>(record_.texts.size());
        for (UINT i = 0; i < count; ++i) {
            InsertMenuW(menu, index + i, MF_BYPOSITION | MF_STRING, first + i, record_.texts[i].c_str());
        }
        return MAKE_HRESULT(SEVERITY_SUCCESS, 0, count);
    }
    STDMETHODIMP
    InvokeCommand(CMINVOKECOMMANDINFO* info) noexcept override {
        record_.invoked.push_back(static_cast<UINT>(reinterpret_cast<UINT_PTR>(info->lpVerb)));
        return S_OK;
    }
    STDMETHODIMP
    GetCommandString(UINT_PTR command, UINT type, UINT* /*reserved*/, LPSTR text,
                     UINT capacity) noexcept override {
        if (command >= record_.texts.size() || (type != GCS_VERBW && type != GCS_HELPTEXTW)) {
            return E_INVALIDARG;
        }
        const std::wstring& said = type == GCS_VERBW && command == 0 ? record_.verb : record_.texts[command];
        lstrcpynW(reinterpret_cast<LPWSTR>(text), said.c_str(), static_cast<int>(capacity));
        return S_OK;
    }

  private:
    handler_record& record_;
};

/// Makes recording handlers for CoCreateInstance, registered for this process during the scope.
class handler_class final
    : public com::com_object<handler_class, com::bases<IClassFactory>,
                             com::answers<com::answer<IUnknown, IClassFactory>, com::answer<IClassFactory>>> {
  public:
    explicit handler_class(handler_record& record) : record_(record) {}
    virtual ~handler_class() = default;

    STDMETHODIMP
    CreateInstance(IUnknown* /*outer*/, REFIID riid, void** result) noexcept override {
        const auto made = com::adopt(com::make_object<recording_handler>(record_));
        return made->QueryInterface(riid, result);
    }
    STDMETHODIMP
    LockServer(BOOL /*lock*/) noexcept override { return S_OK; }

  private:
    handler_record& record_;
};

class handler_registration : private noncopyable {
  public:
    handler_registration(const CLSID& clsid, handler_record& record) {
        const auto made = com::adopt(com::make_object<handler_class>(record));
        CoRegisterClassObject(clsid, made.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
    }
    ~handler_registration() { CoRevokeClassObject(cookie_); }

  private:
    DWORD cookie_ = 0;
};

/// {D7C10A44-8E35-4B5B-93A1-0B1C7F0E9A21}
inline constexpr CLSID test_handler_class = {
    0xD7C10A44, 0x8E35, 0x4B5B, {0x93, 0xA1, 0x0B, 0x1C, 0x7F, 0x0E, 0x9A, 0x21}};
/// {D7C10A44-8E35-4B5B-93A1-0B1C7F0E9A22}
inline constexpr CLSID other_handler_class = {
    0xD7C10A44, 0x8E35, 0x4B5B, {0x93, 0xA1, 0x0B, 0x1C, 0x7F, 0x0E, 0x9A, 0x22}};

/// The test program's apartment for the length of a scope.
class test_apartment : private noncopyable {
  public:
    test_apartment() { (void)OleInitialize(nullptr); }
    ~test_apartment() { OleUninitialize(); }
};

}  // namespace ov::stand_ins
