#include "installer/actions/session.h"

namespace ov::setup {

std::wstring session::property(const wchar_t* name) const {
    DWORD length_chars = 0;
    wchar_t none[] = L"";
    if (MsiGetPropertyW(handle_, name, none, &length_chars) != ERROR_MORE_DATA) {
        return {};
    }
    std::wstring value(length_chars, L'\0');
    ++length_chars;  // the terminating zero
    if (MsiGetPropertyW(handle_, name, value.data(), &length_chars) != ERROR_SUCCESS) {
        return {};
    }
    value.resize(length_chars);
    return value;
}

bool session::set_property(const wchar_t* name, const std::wstring& value) const {
    return MsiSetPropertyW(handle_, name, value.c_str()) == ERROR_SUCCESS;
}

void session::log(const std::wstring& text) const {
    const MSIHANDLE record = MsiCreateRecord(1);
    MsiRecordSetStringW(record, 0, L"Orvane Vaultkeep: [1]");
    MsiRecordSetStringW(record, 1, text.c_str());
    MsiProcessMessage(handle_, INSTALLMESSAGE_INFO, record);
    MsiCloseHandle(record);
}

void session::ask_for_restart() const {
    MsiSetMode(handle_, MSIRUNMODE_REBOOTATEND, TRUE);
}

std::vector<std::wstring> split(const std::wstring& text) {
    std::vector<std::wstring> parts;
    size_t start = 0;
    for (size_t bar = text.find(L'|'); bar != std::wstring::npos; bar = text.find(L'|', start)) {
        parts.push_back(text.substr(start, bar - start));
        start = bar + 1;
    }
    parts.push_back(text.substr(start));
    return parts;
}

}  // namespace ov::setup
