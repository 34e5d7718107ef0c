#include "companions/orvdialog/versions/remembered_view.h"

#include <cstring>
#include <cwchar>

#include "ovufc/win/handle.h"

// This library is loaded for one dialog and freed after it, so that nothing of its own lasts. A section named
// after the process does; its one handle is left open on purpose, for the system to close with the process.

namespace ov::dialog {

namespace {

using section_name = std::array<wchar_t, 64>;

section_name name_of_process() noexcept {
    section_name name{};
    std::swprintf(name.data(), name.size(), L"Local\\Orvane earlier versions %lu", GetCurrentProcessId());
    return name;
}

template <class Copy>
bool with_view(HANDLE section, Copy copy) noexcept {
    void* const view = section == nullptr
                           ? nullptr
                           : MapViewOfFile(section, FILE_MAP_ALL_ACCESS, 0, 0, sizeof(versions_view));
    if (view == nullptr) {
        return false;
    }
    copy(view);
    UnmapViewOfFile(view);
    return true;
}

}  // namespace

std::optional<versions_view> recall_view() noexcept {
    const win::unique_kernel_handle section(
        OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, name_of_process().data()));
    versions_view remembered{};
    const bool is_there = with_view(
        section.get(), [&](const void* view) { std::memcpy(&remembered, view, sizeof remembered); });
    return is_there ? std::optional(remembered) : std::nullopt;
}

void remember_view(const versions_view& view) noexcept {
    win::unique_kernel_handle section(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                                         sizeof view, name_of_process().data()));
    const bool is_first = GetLastError() != ERROR_ALREADY_EXISTS;
    if (with_view(section.get(), [&](void* to) { std::memcpy(to, &view, sizeof view); }) && is_first) {
        (void)section.release();
    }
}

}  // namespace ov::dialog
