#include "companions/devservice/copies/marks.h"

#include <algorithm>
#include <utility>

#include "companions/devservice/copies/folder_walk.h"
#include "companions/devservice/copies/mark.h"
#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/text.h"
#include "companions/devservice/store/sha256.h"

namespace ov::devservice {
namespace {

constexpr std::uint64_t longest_reminder_bytes = std::uint64_t{128} * 1024;

std::wstring volume_of(const std::wstring& folder) {
    std::wstring root(folder.size() + MAX_PATH, L'\0');
    if (!GetVolumePathNameW(folder.c_str(), root.data(), static_cast<DWORD>(root.size()))) {
        return {};
    }
    root.resize(root.find(L'\0'));
    return root;
}

bool keeps_reparse_points(const std::wstring& volume) {
    DWORD flags = 0;
    return !volume.empty() &&
           GetVolumeInformationW(volume.c_str(), nullptr, 0, nullptr, nullptr, &flags, nullptr, 0) &&
           (flags & FILE_SUPPORTS_REPARSE_POINTS) != 0;
}

/// Marks a file of our own, which goes with its handle whatever happens to this process.
bool trial_succeeds(const std::wstring& folder) {
    const std::wstring path = free_name(joined(folder, L".orvane mark trial"));
    const win::unique_file file(CreateFileW(
        long_form(path).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, CREATE_NEW,
        FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    constexpr char content[] = "trial";
    DWORD written = 0;
    return file && WriteFile(file.get(), content, sizeof content, &written, nullptr) &&
           set_mark(file.get(), path) == ERROR_SUCCESS;
}

}  // namespace

marks::marks(std::wstring state_folder)
    : state_folder_(std::move(state_folder)), reminders_(joined(state_folder_, L"marked")) {}

marks::changes marks::update(const service_state& state) {
    changes done;
    for (const std::wstring& folder : remembered()) {
        const bool there = is_plain_folder(folder);  // else its volume may be away
        if (there && (protection_of(state, folder) == nullptr || !can_be_marked(folder))) {
            unmark_folder(folder, done);
        }
    }
    for (const protected_folder& folder : state.folders) {
        if (is_plain_folder(folder.path) && can_be_marked(folder.path)) {
            mark_folder(folder.path, done);
        }
    }
    return done;
}

bool marks::can_be_marked(const std::wstring& folder) {
    const std::wstring volume = volume_of(folder);
    const auto known = volumes_.find(volume);
    if (known != volumes_.end()) {
        return known->second;
    }
    const bool answer = keeps_reparse_points(volume) && trial_succeeds(folder);
    volumes_.emplace(volume, answer);
    return answer;
}

void marks::mark_folder(const std::wstring& folder, changes& done) const {
    if (make_folders(reminders_) != ERROR_SUCCESS) {
        return;
    }
    const DWORD noted = write_new_file(reminder(folder), to_utf8_lossy(folder));
    if (noted != ERROR_SUCCESS && noted != ERROR_FILE_EXISTS) {
        return;
    }
    problems unreadable;
    for (const found_entry& entry : walk_folder(folder, state_folder_, unreadable)) {
        const std::wstring path = joined(folder, entry.relative);
        if (entry.marked && !opens_for_others(path)) {
            done.taken_away += unmark_file(path) == ERROR_SUCCESS ? 1 : 0;
        } else if (entry.kind == entry_kind::file && !entry.marked) {
            done.set += mark_file(path) == ERROR_SUCCESS ? 1 : 0;
        }
    }
}

void marks::unmark_folder(const std::wstring& folder, changes& done) const {
    problems failed;
    problems unlisted;
    const std::vector<found_entry> found = walk_folder(folder, state_folder_, unlisted);
    for (const problem& one : unlisted) {
        failed.push_back({joined(folder, one.path), one.error});
    }
    for (const found_entry& entry : found) {
        if (entry.marked) {
            const std::wstring path = joined(folder, entry.relative);
            const DWORD error = unmark_file(path);
            done.taken_away += error == ERROR_SUCCESS ? 1 : 0;
            if (error != ERROR_SUCCESS) {
                failed.push_back({path, error});
            }
        }
    }
    if (failed.empty()) {
        static_cast<void>(remove_file(reminder(folder)));
    }
    done.failed.insert(done.failed.end(), failed.begin(), failed.end());
}

std::wstring marks::reminder(const std::wstring& folder) const {
    sha256 hash;
    hash.add(folder.data(), folder.size() * sizeof(wchar_t));
    const std::string digest = hash.finish();
    return joined(reminders_, std::wstring(digest.begin(), digest.end()) + L".txt");
}

std::vector<std::wstring> marks::remembered() const {
    std::vector<std::wstring> folders;
    problems unreadable;
    for (const found_entry& entry : walk_folder(reminders_, std::wstring(), unreadable)) {
        std::string text;
        if (read_whole_file(joined(reminders_, entry.relative), longest_reminder_bytes, text) ==
            ERROR_SUCCESS) {
            if (auto folder = clean_path(from_utf8(text).value_or(std::wstring()))) {
                folders.push_back(std::move(*folder));
            }
        }
    }
    return folders;
}

}  // namespace ov::devservice
