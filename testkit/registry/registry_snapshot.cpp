#include "testkit/registry/registry_snapshot.h"

#include <cstdint>
#include <utility>

namespace ov::test {

namespace {

// The registry's own limits, in characters and keys.
constexpr DWORD name_limit_chars = 16384;
constexpr int depth_limit = 64;

class snapshot_reader {
  public:
    explicit snapshot_reader(registry_snapshot& snapshot) : snapshot_(snapshot) {}

    void read(HKEY parent, const std::wstring& name, const std::wstring& path, int depth) {
        HKEY key = nullptr;
        if (depth > depth_limit || RegOpenKeyExW(parent, name.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) {
            return;
        }
        snapshot_[path] = L"key";
        read_values(key, path);
        for (DWORD i = 0;; ++i) {
            DWORD length = name_limit_chars;
            if (RegEnumKeyExW(key, i, name_.data(), &length, nullptr, nullptr, nullptr, nullptr) != 0) {
                break;
            }
            const std::wstring child(name_.data(), length);
            std::wstring child_path = path;
            child_path.append(L"\\").append(child);
            read(key, child, child_path, depth + 1);
        }
        RegCloseKey(key);
    }

  private:
    void read_values(HKEY key, const std::wstring& path) {
        for (DWORD i = 0;; ++i) {
            DWORD length = name_limit_chars;
            DWORD size_bytes = static_cast<DWORD>(data_.size());
            DWORD type = 0;
            const LSTATUS status =
                RegEnumValueW(key, i, name_.data(), &length, nullptr, &type, data_.data(), &size_bytes);
            if (status == ERROR_MORE_DATA && size_bytes > data_.size()) {
                data_.resize(size_bytes);
                --i;
                continue;
            }
            if (status != ERROR_SUCCESS) {
                break;
            }
            std::wstring text = std::to_wstring(type) + L" ";
            for (DWORD byte = 0; byte < size_bytes; ++byte) {
                text += static_cast<wchar_t>(data_[byte]);
            }
            snapshot_[path + L" : " + std::wstring(name_.data(), length)] = std::move(text);
        }
    }

    registry_snapshot& snapshot_;
    std::vector<wchar_t> name_ = std::vector<wchar_t>(name_limit_chars);
    std::vector<BYTE> data_ = std::vector<BYTE>(65536);
};

}  // namespace

registry_snapshot take_registry_snapshot(HKEY root, const std::wstring& subkey) {
    registry_snapshot snapshot;
    snapshot_reader(snapshot).read(root, subkey, subkey, 0);
    return snapshot;
}

registry_difference compare(const registry_snapshot& before, const registry_snapshot& after) {
    registry_difference difference;
    for (const auto& [path, text] : after) {
        const auto old = before.find(path);
        if (old == before.end()) {
            difference.added.push_back(path);
        } else if (old->second != text) {
            difference.changed.push_back(path);
        }
    }
    for (const auto& [path, text] : before) {
        if (!after.contains(path)) {
            difference.removed.push_back(path);
        }
    }
    return difference;
}

}  // namespace ov::test
