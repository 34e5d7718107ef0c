#include "companions/devservice/serving/named_objects.h"

#include <windows.h>

#include "companions/devservice/store/sha256.h"

namespace ov::devservice {

std::wstring object_name(const std::wstring& state_folder, const wchar_t* purpose) {
    constexpr std::size_t digits_kept = 16;
    std::wstring folder = state_folder;
    CharUpperBuffW(folder.data(), static_cast<DWORD>(folder.size()));
    sha256 hash;
    hash.add(folder.data(), folder.size() * sizeof(wchar_t));
    const std::string digest = hash.finish().substr(0, digits_kept);
    return L"Global\\OrvaneDevService-" + std::wstring(digest.begin(), digest.end()) + L"-" + purpose;
}

}  // namespace ov::devservice
