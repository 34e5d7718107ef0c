#include "testkit/registry/registry_watch.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "testkit/imports/import_patch.h"

namespace ov::test {

namespace {

registry_watch* current = nullptr;

std::string narrow(const wchar_t* text, std::size_t length) {
    std::string out;
    for (std::size_t i = 0; i < length; ++i) {
        out += text[i] == L'\0' ? std::string("\\0") : std::string(1, static_cast<char>(text[i]));
    }
    return out;
}

std::string quoted(const wchar_t* text) {
    return text == nullptr ? "(default)" : std::string("\"").append(narrow(text, wcslen(text))).append("\"");
}

std::string hex(std::uint32_t number) {
    char text[16];
    std::snprintf(text, sizeof text, "%X", number);
    return text;
}

std::string value_text(DWORD type, const BYTE* data, DWORD size) {
    const std::string size_text = std::string(" ").append(std::to_string(size)).append(" ");
    if (type == REG_DWORD && size == sizeof(std::uint32_t)) {
        std::uint32_t number = 0;
        std::memcpy(&number, data, sizeof number);
        return "REG_DWORD" + size_text + hex(number);
    }
    if (type == REG_SZ || type == REG_EXPAND_SZ) {
        const auto* text = reinterpret_cast<const wchar_t*>(data);
        return (type == REG_SZ ? "REG_SZ" : "REG_EXPAND_SZ") + size_text + '"' + narrow(text, size / 2) + '"';
    }
    return "type " + std::to_string(type) + size_text;
}

}  // namespace

struct registry_doubles {
    static LSTATUS WINAPI create(HKEY root, LPCWSTR path, DWORD reserved, LPWSTR class_name, DWORD options,
                                 REGSAM access, const LPSECURITY_ATTRIBUTES security, PHKEY key,
                                 LPDWORD disposition);
    static LSTATUS WINAPI open(HKEY root, LPCWSTR path, DWORD options, REGSAM access, PHKEY key);
    static LSTATUS WINAPI set(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                              DWORD size);
    static LSTATUS WINAPI close(HKEY key);
    static LSTATUS WINAPI delete_key(HKEY root, LPCWSTR path);
    static LSTATUS WINAPI delete_tree(HKEY root, LPCWSTR path);
    static LSTATUS WINAPI query(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                                LPDWORD size);
    static LSTATUS WINAPI delete_value(HKEY key, LPCWSTR name);
};

/// A patch of one function, if the module imports it at all.
template <class Function>
class optional_patch {
  public:
    optional_patch(HMODULE module, const char* name, Function* replacement) {
        if (imports(module, "advapi32.dll", name)) {
            patch_.emplace(module, "advapi32.dll", name, replacement);
        }
    }
    [[nodiscard]] Function* original() const { return patch_.value().original(); }

  private:
    std::optional<import_patch<Function>> patch_;
};

struct registry_watch::patches {
    explicit patches(HMODULE module)
        : create(module, "RegCreateKeyExW", registry_doubles::create),
          open(module, "RegOpenKeyExW", registry_doubles::open),
          set(module, "RegSetValueExW", registry_doubles::set),
          close(module, "RegCloseKey", registry_doubles::close),
          delete_key(module, "RegDeleteKeyW", registry_doubles::delete_key),
          delete_tree(module, "RegDeleteTreeW", registry_doubles::delete_tree),
          query(module, "RegQueryValueExW", registry_doubles::query),
          delete_value(module, "RegDeleteValueW", registry_doubles::delete_value) {}

    optional_patch<decltype(RegCreateKeyExW)> create;
    optional_patch<decltype(RegOpenKeyExW)> open;
    optional_patch<decltype(RegSetValueExW)> set;
    optional_patch<decltype(RegCloseKey)> close;
    optional_patch<decltype(RegDeleteKeyW)> delete_key;
    optional_patch<decltype(RegDeleteTreeW)> delete_tree;
    optional_patch<decltype(RegQueryValueExW)> query;
    optional_patch<decltype(RegDeleteValueW)> delete_value;
};

registry_watch::registry_watch(HMODULE module, mode how) : mode_(how) {
    if (current != nullptr) {
        throw std::logic_error("a registry watch is already running");
    }
    current = this;
    patches_ = std::make_unique<patches>(module);
}

registry_watch::~registry_watch() {
    patches_.reset();
    current = nullptr;
}

std::string registry_watch::name_of(HKEY key) const {
    if (key == HKEY_CLASSES_ROOT) {
        return "HKCR";
    }
    if (key == HKEY_LOCAL_MACHINE) {
        return "HKLM";
    }
    if (key == HKEY_CURRENT_USER) {
        return "HKCU";
    }
    const auto found = numbers_.find(key);
    return found == numbers_.end() ? "#unknown" : std::string("#").append(std::to_string(found->second));
}

LSTATUS registry_watch::run(std::string line, const std::function<LSTATUS()>& real, HKEY* opened) {
    const auto injected = answer ? answer(calls_.size(), line) : std::nullopt;
    LSTATUS status = ERROR_SUCCESS;
    if (injected) {
        status = *injected;
        SetLastError(injected_last_error);
    } else if (mode_ == mode::pass_through) {
        status = real();
    }
    if (status != ERROR_SUCCESS) {
        line += " = " + std::to_string(status);
    } else if (opened != nullptr) {
        ++opened_;
        if (mode_ == mode::simulate || injected) {
            *opened = reinterpret_cast<HKEY>(static_cast<std::intptr_t>(0x1000 + opened_));
        }
        numbers_[*opened] = opened_;
        line += " -> #" + std::to_string(opened_);
    }
    calls_.push_back(std::move(line));
    return status;
}

LSTATUS registry_doubles::create(HKEY root, LPCWSTR path, DWORD reserved, LPWSTR class_name, DWORD options,
                                 REGSAM access, const LPSECURITY_ATTRIBUTES security, PHKEY key,
                                 LPDWORD disposition) {
    std::string line = "create " + current->name_of(root) + " " + quoted(path) + " options " + hex(options) +
                       " access " + hex(access);
    line += reserved != 0 ? " RESERVED" : "";
    line += class_name != nullptr ? " CLASS" : "";
    line += security != nullptr ? " SECURITY" : "";
    line += disposition == nullptr ? " NO DISPOSITION" : "";
    return current->run(
        line,
        [&] {
            return current->patches_->create.original()(root, path, reserved, class_name, options, access,
                                                        security, key, disposition);
        },
        key);
}

LSTATUS registry_doubles::open(HKEY root, LPCWSTR path, DWORD options, REGSAM access, PHKEY key) {
    const std::string line = "open " + current->name_of(root) + " " + quoted(path) + " options " +
                             hex(options) + " access " + hex(access);
    return current->run(
        line, [&] { return current->patches_->open.original()(root, path, options, access, key); }, key);
}

LSTATUS registry_doubles::set(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                              DWORD size) {
    std::string line =
        "set " + current->name_of(key) + " " + quoted(name) + " " + value_text(type, data, size);
    line += reserved != 0 ? " RESERVED" : "";
    return current->run(
        line, [&] { return current->patches_->set.original()(key, name, reserved, type, data, size); },
        nullptr);
}

LSTATUS registry_doubles::close(HKEY key) {
    const std::string line = "close " + current->name_of(key);
    current->numbers_.erase(key);
    return current->run(
        line, [&] { return current->patches_->close.original()(key); }, nullptr);
}

LSTATUS registry_doubles::delete_key(HKEY root, LPCWSTR path) {
    const std::string line = "delete-key " + current->name_of(root) + " " + quoted(path);
    return current->run(
        line, [&] { return current->patches_->delete_key.original()(root, path); }, nullptr);
}

LSTATUS registry_doubles::delete_tree(HKEY root, LPCWSTR path) {
    const std::string line = "delete-tree " + current->name_of(root) + " " + quoted(path);
    return current->run(
        line, [&] { return current->patches_->delete_tree.original()(root, path); }, nullptr);
}

LSTATUS registry_doubles::query(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                                LPDWORD size) {
    std::string line = "query " + current->name_of(key) + " " + quoted(name);
    line += type != nullptr ? " TYPE" : "";
    line += data != nullptr || size != nullptr ? " BUFFER" : "";
    return current->run(
        line, [&] { return current->patches_->query.original()(key, name, reserved, type, data, size); },
        nullptr);
}

LSTATUS registry_doubles::delete_value(HKEY key, LPCWSTR name) {
    const std::string line = "delete-value " + current->name_of(key) + " " + quoted(name);
    return current->run(
        line, [&] { return current->patches_->delete_value.original()(key, name); }, nullptr);
}

}  // namespace ov::test
