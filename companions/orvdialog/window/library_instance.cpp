#include "companions/orvdialog/window/library_instance.h"

// The linker's name for the start of this image.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace ov::dialog {

HINSTANCE library_instance() noexcept {
    return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

std::wstring library_folder() {
    std::wstring path(MAX_PATH, L'\0');
    DWORD length_chars = GetModuleFileNameW(library_instance(), path.data(), MAX_PATH);
    if (length_chars >= path.size()) {
        path.resize(UNICODE_STRING_MAX_CHARS);
        length_chars = GetModuleFileNameW(library_instance(), path.data(), UNICODE_STRING_MAX_CHARS);
    }
    path.resize(length_chars);
    path.resize(path.find_last_of(L'\\') + 1);
    return path;
}

}  // namespace ov::dialog
