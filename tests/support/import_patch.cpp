#include "tests/support/import_patch.h"

#include <shlwapi.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace ov::test {

namespace {

/// Reads a loaded module's headers; addresses in them count from where it is loaded.
class loaded_image {
  public:
    explicit loaded_image(HMODULE module) : base_(reinterpret_cast<std::byte*>(module)) {}

    template <class T>
    [[nodiscard]] T* at(std::uintptr_t offset) const {
        return reinterpret_cast<T*>(base_ + offset);
    }

    /// The first import descriptor, or null; the list ends with an empty one.
    [[nodiscard]] const IMAGE_IMPORT_DESCRIPTOR* descriptors() const {
        const auto* dos = at<IMAGE_DOS_HEADER>(0);
        const auto* headers = at<IMAGE_NT_HEADERS>(dos->e_lfanew);
        const auto& entry = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        return entry.VirtualAddress == 0 ? nullptr : at<IMAGE_IMPORT_DESCRIPTOR>(entry.VirtualAddress);
    }

  private:
    std::byte* base_;
};

void find_in_descriptor(const loaded_image& image, const IMAGE_IMPORT_DESCRIPTOR& descriptor,
                        const std::string& function, std::vector<FARPROC*>& found) {
    // Bound slots no longer hold names, so the names are read from the table that the loader leaves alone.
    if (descriptor.OriginalFirstThunk == 0) {
        return;
    }
    const auto* names = image.at<IMAGE_THUNK_DATA>(descriptor.OriginalFirstThunk);
    auto* slots = image.at<FARPROC>(descriptor.FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++slots) {
        if (!IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal) &&
            function == image.at<IMAGE_IMPORT_BY_NAME>(names->u1.AddressOfData)->Name) {
            found.push_back(slots);
        }
    }
}

std::vector<FARPROC*> find_slots(HMODULE module, const char* dll_pattern, const char* function) {
    const loaded_image image(module);
    std::vector<FARPROC*> found;
    const auto* descriptor = image.descriptors();
    for (; descriptor != nullptr && descriptor->Name != 0; ++descriptor) {
        if (PathMatchSpecA(image.at<char>(descriptor->Name), dll_pattern)) {
            find_in_descriptor(image, *descriptor, function, found);
        }
    }
    return found;
}

void write_slot(FARPROC* slot, FARPROC value) {
    DWORD protection = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
    *slot = value;
    VirtualProtect(slot, sizeof *slot, protection, &protection);
}

std::string name_of(HMODULE module) {
    std::array<char, MAX_PATH> path{};
    GetModuleFileNameA(module, path.data(), MAX_PATH - 1);
    return PathFindFileNameA(path.data());
}

}  // namespace

bool imports(HMODULE module, const char* dll_pattern, const char* function) {
    return !find_slots(module, dll_pattern, function).empty();
}

import_slots::import_slots(HMODULE module, const char* dll_pattern, const char* function,
                           FARPROC replacement) {
    const auto slots = find_slots(module, dll_pattern, function);
    if (slots.empty()) {
        throw std::runtime_error(name_of(module) + " does not import " + function + " by name from " +
                                 dll_pattern + ": there is nothing to replace");
    }
    saved_.reserve(slots.size());
    for (FARPROC* slot : slots) {
        saved_.push_back({slot, *slot});
        write_slot(slot, replacement);
    }
}

import_slots::~import_slots() {
    for (auto slot = saved_.rbegin(); slot != saved_.rend(); ++slot) {
        write_slot(slot->address, slot->value);
    }
}

}  // namespace ov::test
