#include "companions/devservice/copies/retention.h"

#include <algorithm>
#include <array>
#include <map>

#include "companions/devservice/files/path.h"

namespace ov::devservice {
namespace {

constexpr std::size_t copy_kinds = 4;

/// What is known of one file while the copies are looked through, the newest first.
struct file_history {
    std::size_t versions = 0;
    std::string last_digest;
    bool seen_by_point = false;
};

using histories = std::map<std::wstring, file_history, path_less>;

/// Marks the copies that stay whole, and makes restore points that do not into past points.
std::vector<bool> choose_whole_copies(std::vector<stored_copy>& copies) {
    std::vector<bool> whole(copies.size());
    std::array<std::size_t, copy_kinds> count{};
    for (std::size_t place = copies.size(); place-- > 0;) {
        copy_kind& kind = copies[place].kind;
        whole[place] =
            kind != copy_kind::past_point && ++count[static_cast<std::size_t>(kind)] <= copies_kept;
        if (!whole[place] && kind == copy_kind::restore_point) {
            kind = copy_kind::past_point;
        }
    }
    return whole;
}

/// The files that the copies which do not stay whole hold: the others need no looking into.
histories files_of_thin_copies(const std::vector<stored_copy>& copies, const std::vector<bool>& whole) {
    histories files;
    for (std::size_t place = 0; place < copies.size(); ++place) {
        if (whole[place]) {
            continue;
        }
        for (const folder_copy& folder : copies[place].folders) {
            for (const file_record& record : folder.records) {
                files.try_emplace(joined(folder.folder, record.relative));
            }
        }
    }
    return files;
}

/// Whether `point` looked at all folders on the way to `path`, so that it would have seen a file there.
bool looked_at(const stored_copy& point, const std::wstring& path) {
    for (const folder_copy& folder : point.folders) {
        if (is_within(path, folder.folder)) {
            return std::none_of(folder.unlisted.begin(), folder.unlisted.end(),
                                [&](const std::wstring& unlisted) {
                                    return is_within(path, joined(folder.folder, unlisted));
                                });
        }
    }
    return false;
}

bool all_points_looked_at(const std::vector<stored_copy>& copies, const std::wstring& path) {
    std::size_t points = 0;
    for (const stored_copy& copy : copies) {
        if (copy.kind == copy_kind::restore_point) {
            if (!looked_at(copy, path)) {
                return false;
            }
            ++points;
        }
    }
    return points == copies_kept;
}

/// Counts a record as a version of its file, unless the next newer one was the same.
bool is_new_version(file_history& file, const file_record& record) {
    if (!record.kept() || (file.versions > 0 && file.last_digest == record.digest)) {
        return false;
    }
    ++file.versions;
    file.last_digest = record.digest;
    return true;
}

}  // namespace

void let_older_copies_go(service_state& state) {
    std::vector<stored_copy>& copies = state.copies;
    const std::vector<bool> whole = choose_whole_copies(copies);
    histories files = files_of_thin_copies(copies, whole);
    if (files.empty()) {
        return;
    }
    for (const stored_copy& copy : copies) {
        for (const folder_copy& folder : copy.folders) {
            if (copy.kind != copy_kind::restore_point) {
                break;
            }
            for (const file_record& record : folder.records) {
                if (const auto file = files.find(joined(folder.folder, record.relative));
                    file != files.end()) {
                    file->second.seen_by_point = true;
                }
            }
        }
    }
    for (std::size_t place = copies.size(); place-- > 0;) {
        for (folder_copy& folder : copies[place].folders) {
            const auto let_go = [&](const file_record& record) {
                const std::wstring path = joined(folder.folder, record.relative);
                const auto found = files.find(path);
                if (found == files.end()) {
                    return false;
                }
                file_history& file = found->second;
                const bool wanted = is_new_version(file, record) && file.versions <= versions_kept &&
                                    (file.seen_by_point || !all_points_looked_at(copies, path));
                return !whole[place] && !wanted;
            };
            std::erase_if(folder.records, let_go);
        }
        if (!whole[place]) {
            std::erase_if(copies[place].folders,
                          [](const folder_copy& folder) { return folder.records.empty(); });
        }
    }
    std::erase_if(copies, [](const stored_copy& copy) {
        return copy.folders.empty() && copy.kind != copy_kind::restore_point;
    });
}

std::set<std::string> needed_objects(const service_state& state) {
    std::set<std::string> digests;
    for (const stored_copy& copy : state.copies) {
        for (const folder_copy& folder : copy.folders) {
            for (const file_record& record : folder.records) {
                if (record.kept()) {
                    digests.insert(record.digest);
                }
            }
        }
    }
    return digests;
}

}  // namespace ov::devservice
