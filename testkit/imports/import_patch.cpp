#include "testkit/imports/import_patch.h"

#include <shlwapi.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
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

// Names and slots stand side by side in two tables, each as wide as a pointer but no better aligned than the
// linker found good enough: nothing is read or written through a pointer to it. `use` is given both.
template <class Use>
void for_each_import(const loaded_image& image, const IMAGE_IMPORT_DESCRIPTOR& descriptor, Use use) {
    // Bound slots no longer hold names, so the names are read from the table that the loader leaves alone.
    if (descriptor.OriginalFirstThunk == 0) {
        return;
    }
    for (std::uintptr_t offset = 0;; offset += sizeof(ULONG_PTR)) {
        ULONG_PTR name = 0;
        std::memcpy(&name, image.at<std::byte>(descriptor.OriginalFirstThunk + offset), sizeof name);
        if (name == 0) {
            return;
        }
        if (!IMAGE_SNAP_BY_ORDINAL(name)) {
            use(image.at<char>(name + offsetof(IMAGE_IMPORT_BY_NAME, Name)),
                image.at<std::byte>(descriptor.FirstThunk + offset));
        }
    }
}

template <class Use>
void for_each_import(HMODULE module, const char* dll_pattern, Use use) {
    const loaded_image image(module);
    const auto* descriptor = image.descriptors();
    for (; descriptor != nullptr && descriptor->Name != 0; ++descriptor) {
        if (PathMatchSpecA(image.at<char>(descriptor->Name), dll_pattern)) {
            for_each_import(image, *descriptor, use);
        }
    }
}

std::vector<std::byte*> find_slots(HMODULE module, const char* dll_pattern, const std::string& function) {
    std::vector<std::byte*> found;
    for_each_import(module, dll_pattern, [&](const char* name, std::byte* slot) {
        if (function == name) {
            found.push_back(slot);
        }
    });
    return found;
}

FARPROC read_slot(const std::byte* slot) {
    FARPROC value = nullptr;
    std::memcpy(&value, slot, sizeof value);
    return value;
}

void write_slot(std::byte* slot, FARPROC value) {
    DWORD protection = 0;
    VirtualProtect(slot, sizeof value, PAGE_READWRITE, &protection);
    std::memcpy(slot, &value, sizeof value);
    VirtualProtect(slot, sizeof value, protection, &protection);
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

std::vector<std::string> imported_functions(HMODULE module, const char* dll_pattern) {
    std::vector<std::string> names;
    for_each_import(module, dll_pattern, [&](const char* name, std::byte*) { names.emplace_back(name); });
    return names;
}

import_slots::import_slots(HMODULE module, const char* dll_pattern, const char* function,
                           FARPROC replacement) {
    const auto slots = find_slots(module, dll_pattern, function);
    if (slots.empty()) {
        throw std::runtime_error(name_of(module) + " does not import " + function + " by name from " +
                                 dll_pattern + ": there is nothing to replace");
    }
    saved_.reserve(slots.size());
    for (std::byte* slot : slots) {
        saved_.push_back({slot, read_slot(slot)});
        write_slot(slot, replacement);
    }
}

import_slots::~import_slots() {
    for (auto slot = saved_.rbegin(); slot != saved_.rend(); ++slot) {
        write_slot(slot->address, slot->value);
    }
}

}  // namespace ov::test
