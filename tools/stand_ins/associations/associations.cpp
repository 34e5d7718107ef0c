#include "tools/stand_ins/associations/associations.h"

#include <shlwapi.h>
#include <wrl/client.h>

#include <string>
#include <utility>

#include "ovufc/com/adopt.h"
#include "ovufc/com/com_object.h"
#include "ovufc/com/guard.h"
#include "tools/stand_ins/associations/association_keys.h"
#include "tools/stand_ins/items/interface_ids.h"

namespace ov::stand_ins {

namespace {

const HRESULT no_association = HRESULT_FROM_WIN32(ERROR_NO_ASSOCIATION);

unique_registry_key open_class(const wchar_t* parent, const wchar_t* name) {
    if (name == nullptr || *name == L'\0') {
        return {};
    }
    return open_key_to_read(HKEY_CLASSES_ROOT, (std::wstring(parent) + name).c_str());
}

/// Where the key of one association element stands.
unique_registry_key key_of(const ASSOCIATIONELEMENT& element) {
    switch (element.ac) {
        case ASSOCCLASS_SHELL_KEY:
        case ASSOCCLASS_PROGID_KEY:
        case ASSOCCLASS_CLSID_KEY:
        case ASSOCCLASS_APP_KEY:
            return element.hkClass != nullptr ? duplicate_key(element.hkClass) : unique_registry_key();
        case ASSOCCLASS_PROGID_STR:
            return open_class(L"", element.pszClass);
        case ASSOCCLASS_CLSID_STR:
            return open_class(L"CLSID\\", element.pszClass);
        case ASSOCCLASS_APP_STR:
            return open_class(L"Applications\\", element.pszClass);
        case ASSOCCLASS_SYSTEM_STR:
            return open_class(L"SystemFileAssociations\\", element.pszClass);
        case ASSOCCLASS_FOLDER:
            return open_class(L"", L"Folder");
        case ASSOCCLASS_STAR:
            return open_class(L"", L"*");
        default:
            return {};
    }
}

/// The program of a command line: its first word, without quotation marks.
std::wstring executable_of(const std::wstring& command) {
    if (!command.empty() && command.front() == L'"') {
        return command.substr(1, command.find(L'"', 1) - 1);
    }
    return command.substr(0, command.find(L' '));
}

std::wstring command_of(HKEY key, const wchar_t* verb) {
    std::wstring name = verb != nullptr ? verb : read_registry_text(key, L"shell", nullptr);
    if (name.empty()) {
        name = L"open";
    }
    return read_registry_text(key, (L"shell\\" + name + L"\\command").c_str(), nullptr);
}

std::wstring text_of(HKEY key, ASSOCSTR kind, const wchar_t* extra) {
    switch (kind) {
        case ASSOCSTR_COMMAND:
            return command_of(key, extra);
        case ASSOCSTR_EXECUTABLE:
            return executable_of(command_of(key, extra));
        case ASSOCSTR_FRIENDLYDOCNAME:
            return read_registry_text(key, nullptr, nullptr);
        case ASSOCSTR_DEFAULTICON:
            return read_registry_text(key, L"DefaultIcon", nullptr);
        case ASSOCSTR_SHELLEXTENSION:
            return extra != nullptr
                       ? read_registry_text(key, (std::wstring(L"shellex\\") + extra).c_str(), nullptr)
                       : std::wstring();
        case ASSOCSTR_INFOTIP:
            return read_registry_text(key, nullptr, L"InfoTip");
        case ASSOCSTR_QUICKTIP:
            return read_registry_text(key, nullptr, L"QuickTip");
        case ASSOCSTR_TILEINFO:
            return read_registry_text(key, nullptr, L"TileInfo");
        case ASSOCSTR_CONTENTTYPE:
            return read_registry_text(key, nullptr, L"Content Type");
        default:
            return {};
    }
}

/// Hands a text out as IQueryAssociations does: without a buffer only its size is told.
HRESULT hand_out(const std::wstring& text, ASSOCF flags, LPWSTR out, DWORD* capacity) {
    const auto needed = static_cast<DWORD>(text.size() + 1);
    if (out == nullptr) {
        *capacity = needed;
        return S_FALSE;
    }
    const bool fits = needed <= *capacity;
    if (!fits && (flags & ASSOCF_NOTRUNCATE) != 0) {
        *capacity = needed;
        return E_POINTER;
    }
    if (*capacity != 0) {
        lstrcpynW(out, text.c_str(), static_cast<int>(*capacity));
    }
    *capacity = needed;
    return fits ? S_OK : E_POINTER;
}

class class_associations final
    : public com::com_object<class_associations, com::bases<IQueryAssociations, IAssociationKeys>,
                             com::answers<com::answer<IUnknown, IQueryAssociations>,
                                          com::answer<IQueryAssociations>, com::answer<IAssociationKeys>>> {
  public:
    explicit class_associations(std::vector<unique_registry_key> keys) : keys_(std::move(keys)) {}
    virtual ~class_associations() = default;

    STDMETHODIMP
    Init(ASSOCF /*flags*/, LPCWSTR /*name*/, HKEY /*key*/, HWND /*owner*/) noexcept override {
        return E_NOTIMPL;  // The classes were given when the object was made.
    }

    STDMETHODIMP
    GetString(ASSOCF flags, ASSOCSTR kind, LPCWSTR extra, LPWSTR out, DWORD* capacity) noexcept override {
        if (capacity == nullptr) {
            return E_UNEXPECTED;
        }
        return com::guarded([&] {
            for (const unique_registry_key& key : keys_) {
                const std::wstring text = text_of(key.get(), kind, extra);
                if (!text.empty()) {
                    return hand_out(text, flags, out, capacity);
                }
            }
            return no_association;
        });
    }

    STDMETHODIMP
    GetKey(ASSOCF /*flags*/, ASSOCKEY kind, LPCWSTR /*extra*/, HKEY* key) noexcept override {
        if (key == nullptr) {
            return E_INVALIDARG;
        }
        *key = nullptr;
        if ((kind != ASSOCKEY_CLASS && kind != ASSOCKEY_SHELLEXECCLASS) || keys_.empty()) {
            return no_association;
        }
        unique_registry_key copy = duplicate_key(keys_.front().get());
        *key = copy.release();
        return *key != nullptr ? S_OK : no_association;
    }

    STDMETHODIMP
    GetData(ASSOCF /*flags*/, ASSOCDATA /*kind*/, LPCWSTR /*extra*/, LPVOID /*out*/,
            DWORD* /*size_bytes*/) noexcept override {
        return no_association;
    }
    STDMETHODIMP
    GetEnum(ASSOCF /*flags*/, ASSOCENUM /*kind*/, LPCWSTR /*extra*/, REFIID /*riid*/,
            LPVOID* result) noexcept override {
        if (result != nullptr) {
            *result = nullptr;
        }
        return E_NOTIMPL;
    }

    [[nodiscard]] const std::vector<unique_registry_key>& class_keys() const noexcept override {
        return keys_;
    }

  private:
    std::vector<unique_registry_key> keys_;
};

}  // namespace

STDAPI create_associations(const ASSOCIATIONELEMENT* classes, ULONG count, REFIID riid, void** result) {
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = nullptr;
    if (classes == nullptr || count == 0) {
        return E_INVALIDARG;
    }
    return com::guarded([&]() -> HRESULT {
        std::vector<unique_registry_key> keys;
        for (ULONG i = 0; i < count; ++i) {
            unique_registry_key key = key_of(classes[i]);
            if (key) {
                keys.push_back(std::move(key));
            }
        }
        Microsoft::WRL::ComPtr<class_associations> object;
        object = com::adopt(com::make_object<class_associations>(std::move(keys)));
        return object != nullptr ? object->QueryInterface(riid, result) : E_OUTOFMEMORY;
    });
}

}  // namespace ov::stand_ins
