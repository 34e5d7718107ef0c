#include "testkit/checks/handle_ledger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "testkit/imports/import_patch.h"

namespace ov::test {

namespace {

// Import slots hold plain functions, which find their ledger here.
handle_ledger* current = nullptr;

struct maker {
    std::string_view function;
    std::string_view kind;
};
// What a handle must be given back as.
constexpr std::array makers{
    maker{"LoadImageW", "icon"},         maker{"GetIconInfo", "object"},
    maker{"CreateDIBSection", "object"}, maker{"CreateCompatibleDC", "dc"},
    maker{"GetDC", "screen dc"},         maker{"CreateMenu", "menu"},
    maker{"CreateFileW", "file"},        maker{"LoadLibraryExW", "library"},
};

template <class Handle>
Handle made(Handle handle, const char* function) {
    if (handle != nullptr && reinterpret_cast<HANDLE>(handle) != INVALID_HANDLE_VALUE) {
        current->note_made(handle, function);
    }
    return handle;
}

}  // namespace

// A module need not import all of these.
template <class Function>
class optional_patch {
  public:
    optional_patch(HMODULE module, const char* dll, const char* function, Function* replacement) {
        if (imports(module, dll, function)) {
            patch_.emplace(module, dll, function, replacement);
        }
    }
    [[nodiscard]] Function* original() const { return patch_->original(); }

  private:
    std::optional<import_patch<Function>> patch_;
};

struct handle_ledger::patches {
    explicit patches(HMODULE module)
        : load_image(module, "user32.dll", "LoadImageW", &on_load_image),
          get_icon_info(module, "user32.dll", "GetIconInfo", &on_get_icon_info),
          create_dib(module, "gdi32.dll", "CreateDIBSection", &on_create_dib),
          create_dc(module, "gdi32.dll", "CreateCompatibleDC", &on_create_dc),
          get_dc(module, "user32.dll", "GetDC", &on_get_dc),
          create_menu(module, "user32.dll", "CreateMenu", &on_create_menu),
          create_file(module, "kernel32.dll", "CreateFileW", &on_create_file),
          load_library(module, "kernel32.dll", "LoadLibraryExW", &on_load_library),
          destroy_icon(module, "user32.dll", "DestroyIcon", &on_destroy_icon),
          delete_object(module, "gdi32.dll", "DeleteObject", &on_delete_object),
          delete_dc(module, "gdi32.dll", "DeleteDC", &on_delete_dc),
          release_dc(module, "user32.dll", "ReleaseDC", &on_release_dc),
          destroy_menu(module, "user32.dll", "DestroyMenu", &on_destroy_menu),
          close_handle(module, "kernel32.dll", "CloseHandle", &on_close_handle),
          free_library(module, "kernel32.dll", "FreeLibrary", &on_free_library) {}

    static const patches& all() { return *current->patches_; }

    static HANDLE WINAPI on_load_image(HINSTANCE instance, LPCWSTR name, UINT type, int cx, int cy,
                                       UINT flags) {
        return made(all().load_image.original()(instance, name, type, cx, cy, flags), "LoadImageW");
    }
    static BOOL WINAPI on_get_icon_info(HICON icon, PICONINFO info) {
        const BOOL result = all().get_icon_info.original()(icon, info);
        if (result != FALSE) {
            made(info->hbmMask, "GetIconInfo");
            made(info->hbmColor, "GetIconInfo");
        }
        return result;
    }
    static HBITMAP WINAPI on_create_dib(HDC dc, const BITMAPINFO* format, UINT usage, void** pixels,
                                        HANDLE section, DWORD offset) {
        return made(all().create_dib.original()(dc, format, usage, pixels, section, offset),
                    "CreateDIBSection");
    }
    static HDC WINAPI on_create_dc(HDC like) {
        return made(all().create_dc.original()(like), "CreateCompatibleDC");
    }
    static HDC WINAPI on_get_dc(HWND window) { return made(all().get_dc.original()(window), "GetDC"); }
    static HMENU WINAPI on_create_menu() { return made(all().create_menu.original()(), "CreateMenu"); }
    static HANDLE WINAPI on_create_file(LPCWSTR path, DWORD access, DWORD share,
                                        LPSECURITY_ATTRIBUTES security, DWORD disposition, DWORD flags,
                                        HANDLE pattern) {
        return made(all().create_file.original()(path, access, share, security, disposition, flags, pattern),
                    "CreateFileW");
    }
    static HMODULE WINAPI on_load_library(LPCWSTR path, HANDLE file, DWORD flags) {
        return made(all().load_library.original()(path, file, flags), "LoadLibraryExW");
    }

    static BOOL WINAPI on_destroy_icon(HICON icon) {
        current->note_closed(icon, "icon");
        return all().destroy_icon.original()(icon);
    }
    static BOOL WINAPI on_delete_object(HGDIOBJ object) {
        current->note_closed(object, "object");
        return all().delete_object.original()(object);
    }
    static BOOL WINAPI on_delete_dc(HDC dc) {
        current->note_closed(dc, "dc");
        return all().delete_dc.original()(dc);
    }
    static int WINAPI on_release_dc(HWND window, HDC dc) {
        current->note_closed(dc, "screen dc");
        return all().release_dc.original()(window, dc);
    }
    static BOOL WINAPI on_destroy_menu(HMENU menu) {
        current->note_closed(menu, "menu");
        return all().destroy_menu.original()(menu);
    }
    static BOOL WINAPI on_close_handle(HANDLE handle) {
        current->note_closed(handle, "file");
        return all().close_handle.original()(handle);
    }
    static BOOL WINAPI on_free_library(HMODULE library) {
        current->note_closed(library, "library");
        return all().free_library.original()(library);
    }

    optional_patch<decltype(LoadImageW)> load_image;
    optional_patch<decltype(GetIconInfo)> get_icon_info;
    optional_patch<decltype(CreateDIBSection)> create_dib;
    optional_patch<decltype(CreateCompatibleDC)> create_dc;
    optional_patch<decltype(GetDC)> get_dc;
    optional_patch<decltype(CreateMenu)> create_menu;
    optional_patch<decltype(CreateFileW)> create_file;
    optional_patch<decltype(LoadLibraryExW)> load_library;
    optional_patch<decltype(DestroyIcon)> destroy_icon;
    optional_patch<decltype(DeleteObject)> delete_object;
    optional_patch<decltype(DeleteDC)> delete_dc;
    optional_patch<decltype(ReleaseDC)> release_dc;
    optional_patch<decltype(DestroyMenu)> destroy_menu;
    optional_patch<decltype(CloseHandle)> close_handle;
    optional_patch<decltype(FreeLibrary)> free_library;
};

handle_ledger::handle_ledger(HMODULE module) : patches_(std::make_unique<patches>(module)) {
    EXPECT_EQ(current, nullptr) << "one ledger at a time";
    current = this;
}

handle_ledger::~handle_ledger() {
    patches_.reset();
    current = nullptr;
}

std::vector<std::string> handle_ledger::outstanding() const {
    std::vector<std::string> functions;
    functions.reserve(open_.size());
    for (const auto& [handle, entry] : open_) {
        functions.push_back(entry.function);
    }
    std::sort(functions.begin(), functions.end());
    return functions;
}

int handle_ledger::made_by(const std::string& function) const {
    const auto found = made_.find(function);
    return found == made_.end() ? 0 : found->second;
}

void handle_ledger::note_made(void* handle, const char* function) {
    const auto* row = std::find_if(makers.begin(), makers.end(),
                                   [&](const maker& known) { return known.function == function; });
    open_[handle] = {function, std::string(row->kind)};
    ++made_[function];
}

void handle_ledger::note_closed(void* handle, const char* kind) {
    const auto found = open_.find(handle);
    if (found == open_.end()) {
        // Handles of other makers (stock objects, events) are not recorded.
        return;
    }
    EXPECT_EQ(found->second.kind, kind) << "given back by the wrong function";
    open_.erase(found);
}

}  // namespace ov::test
