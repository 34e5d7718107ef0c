#include "tests/unit/companions/devservice/model/model_world.h"

#include <iterator>

#include "companions/devservice/calls/dispatcher.h"
#include "companions/devservice/copies/folder_walk.h"
#include "companions/devservice/copies/retention.h"
#include "companions/devservice/copies/take_copy.h"
#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/text.h"
#include "companions/devservice/store/sha256.h"
#include "testkit/process/child_process.h"

namespace ov::devservice {
namespace {

std::string request(service_call number, const json& parameters) {
    return json{{"serviceCall", static_cast<std::int64_t>(number)}, {"parameters", parameters}}.dump();
}

constexpr DWORD patience_ms = 60'000;
constexpr const wchar_t* state_variable = L"ORV_TEST_VICTIM_STATE";
constexpr const wchar_t* request_variable = L"ORV_TEST_VICTIM_REQUEST";
constexpr const wchar_t* end_variable = L"ORV_TEST_VICTIM_ENDS_AT";
constexpr const wchar_t* full_variable = L"ORV_TEST_VICTIM_FULL_FROM";
constexpr std::wstring_view beside_suffix = L".orvrestore";

const std::wstring folders[] = {L"docs", L"pictures"};
const std::wstring names[] = {L"a.txt",       L"b.txt",           L"c.txt",
                              L"deep\\d.txt", L"deep\\er\\e.txt", L"12:30 f.txt"};

std::wstring variable(const wchar_t* name) {
    std::wstring value(4'096, L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    return value;
}

std::wstring object_name_of(const std::string& content) {
    sha256 hash;
    hash.add(content.data(), content.size());
    const std::string digest = hash.finish();
    return std::wstring(digest.begin(), digest.end());
}

std::wstring folder_of(const std::wstring& relative) {
    return relative.substr(0, relative.find(L'\\'));
}

}  // namespace

int model_world::kills = 0;

void play_the_victim() {
    vault store(variable(state_variable));
    const std::string request = to_utf8(variable(request_variable)).value();
    call_context context{store, {}, {}, {}};
    if (store.reload() != ERROR_SUCCESS) {
        ExitProcess(100);
    }
    const fault_injection faults({.end_at_call = std::stoi(variable(end_variable)),
                                  .full_from_write = std::stoi(variable(full_variable))});
    if (request == "restore point") {
        std::int64_t number = 0;
        problems left_out;
        static_cast<void>(take_restore_point(store, number, left_out));
    } else {
        static_cast<void>(answer_request(context, request));
    }
    TerminateProcess(GetCurrentProcess(), 0);  // what remains is the test program's own end
    Sleep(INFINITE);
    std::abort();
}

void model_world::run_in_a_process(const std::string& request) {
    constexpr int calls_of_a_step = 24;
    const bool full = draw(6) == 0;
    const int moment = 1 + draw(calls_of_a_step);
    SetEnvironmentVariableW(state_variable, store.folder().c_str());
    SetEnvironmentVariableW(request_variable, from_utf8(request).value().c_str());
    SetEnvironmentVariableW(end_variable, full ? L"0" : std::to_wstring(moment).c_str());
    SetEnvironmentVariableW(full_variable, full ? std::to_wstring(moment / 4).c_str() : L"0");
    test::child_process victim(test::this_program(),
                               {L"--gtest_also_run_disabled_tests", L"--gtest_filter=Victim.*"});
    const std::optional<DWORD> code = victim.wait(patience_ms);
    ASSERT_TRUE(code == DWORD{0} || code == DWORD{fault_injection::ended_exit_code}) << code.value_or(~0u);
    kills += code == DWORD{fault_injection::ended_exit_code} ? 1 : 0;
    store = vault(store.folder());  // the second time is another run
    check_state();
}

void model_world::forget_points_that_are_past() {
    const json listed = call(service_call::get_restore_points, json::object()).at("data").at("restorePoints");
    if (listed.size() == copies_kept) {
        const auto oldest = listed.back().at("sequenceNumber").get<std::int64_t>();
        std::erase_if(points_, [&](const model_point& point) {
            return point.identity.at("sequenceNumber").get<std::int64_t>() < oldest;
        });
    }
}

void model_world::check_state() {
    ASSERT_EQ(store.reload(), 0u) << "the state is whole";
    forget_points_that_are_past();
    std::set<std::string> seen;
    for (const model_point& point : points_) {
        for (const auto& [path, content] : point.files) {
            if (content && !damaged_.contains(*content) && seen.insert(*content).second) {
                ASSERT_TRUE(store_has(*content)) << to_utf8_lossy(path) << " of a restore point";
            }
        }
    }
}

bool model_world::store_has(const std::string& content) const {
    return read(joined(joined(store.folder(), L"objects"), object_name_of(content))) == content;
}

tree model_world::look() const {
    tree found;
    problems unlisted;
    for (const found_entry& entry : walk_folder(user, std::wstring(), unlisted)) {
        if (entry.kind == entry_kind::file) {
            found[entry.relative] = read(user_path(entry.relative));
        }
    }
    EXPECT_TRUE(unlisted.empty());
    return found;
}

std::wstring model_world::some_file() {
    return files_.empty() ? std::wstring()
                          : std::next(files_.begin(), draw(static_cast<int>(files_.size())))->first;
}

bool model_world::is_protected(const std::wstring& relative) const {
    return protected_.contains(folder_of(relative));
}

json model_world::folder_parameter(const std::wstring& folder) const {
    return {{"folderName", to_utf8_lossy(user_path(folder))}};
}

void model_world::write_some_file() {
    const std::wstring path = folders[draw(2)] + L"\\" + names[draw(static_cast<int>(std::size(names)))];
    const int repeats = draw(8) == 0 ? 5'000 : 1;  // a few are larger than what is copied at once
    std::string content;
    for (int count = 0; count < repeats; ++count) {
        content += "content " + std::to_string(draw(1'000)) + "\n";
    }
    write(user_path(path), content);
    files_[path] = content;
}

void model_world::rename_some_file() {
    const std::wstring from = some_file();
    const std::wstring to = from + L".locked";
    if (!from.empty() && !files_.contains(to) && files_.size() < 20) {
        ASSERT_EQ(move_file(user_path(from), user_path(to)), 0u);
        files_[to] = files_[from];
        files_.erase(from);
    }
}

void model_world::delete_some_file() {
    const std::wstring path = some_file();
    if (!path.empty()) {
        ASSERT_EQ(remove_file(user_path(path)), 0u);
        files_.erase(path);
    }
}

void model_world::damage_some_object() {
    problems unlisted;
    const std::wstring objects = joined(store.folder(), L"objects");
    const std::vector<found_entry> found = walk_folder(objects, std::wstring(), unlisted);
    if (found.empty()) {
        return;
    }
    const std::wstring path = joined(objects, found[draw(static_cast<int>(found.size()))].relative);
    const std::string content = read(path);
    damaged_.insert(content);
    switch (draw(3)) {
        case 0:
            ASSERT_EQ(remove_file(path), 0u);
            break;
        case 1:
            write(path, content.substr(0, content.size() / 2));
            break;
        default:
            write(path, std::string(content.size(), '?'));
    }
}

/// A person's files are as the model has them: for steps that only read them.
void model_world::check_nothing_else_changed() {
    ASSERT_EQ(look(), files_);
}

/// Takes up the restore points that the state has and the model does not: each holds the files as they are
/// now.
void model_world::add_point_from_state(const std::set<std::wstring>& held) {
    const json listed = call(service_call::get_restore_points, json::object()).at("data").at("restorePoints");
    for (auto identity = listed.rbegin(); identity != listed.rend(); ++identity) {
        const auto number = identity->at("sequenceNumber").get<std::int64_t>();
        if (!points_.empty() && number <= points_.back().identity.at("sequenceNumber").get<std::int64_t>()) {
            continue;
        }
        model_point& point = points_.emplace_back();
        point.identity = *identity;
        point.folders = protected_;
        for (const auto& [path, content] : files_) {
            if (is_protected(path) && is_recordable(path)) {
                point.files[path] = held.contains(path) ? std::nullopt : std::optional(content);
                if (!held.contains(path)) {
                    damaged_.erase(content);  // looked at and, if need be, written anew
                }
            }
        }
    }
    forget_points_that_are_past();
    ASSERT_EQ(points_.size(), listed.size());
}

void model_world::take_restore_point_twice() {
    if (protected_.empty()) {
        return;
    }
    std::set<std::wstring> held_paths;
    win::unique_file held;
    if (const std::wstring path = some_file(); !path.empty() && draw(3) == 0) {
        held_paths.insert(path);
        held.reset(CreateFileW(long_form(user_path(path)).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0,
                               nullptr));
        ASSERT_TRUE(held);
    }
    run_in_a_process("restore point");
    add_point_from_state(held_paths);
    std::int64_t number = 0;
    problems left_out;
    ASSERT_EQ(take_restore_point(store, number, left_out), 0u);
    held.reset();
    add_point_from_state(held_paths);
    check_state();
    check_nothing_else_changed();
}

void model_world::protect_some_folder_twice() {
    const std::wstring folder = folders[draw(2)];
    ASSERT_EQ(make_folders(user_path(folder)), 0u);
    run_in_a_process(request(service_call::protect_folder, folder_parameter(folder)));
    check_nothing_else_changed();
    ASSERT_EQ(status_of_reply(call(service_call::protect_folder, folder_parameter(folder))), 0);
    protected_.insert(folder);
    check_state();
    check_nothing_else_changed();
}

void model_world::unprotect_some_folder_twice() {
    const std::wstring folder = folders[draw(2)];
    run_in_a_process(request(service_call::unprotect_folder, folder_parameter(folder)));
    const int status = status_of_reply(call(service_call::unprotect_folder, folder_parameter(folder)));
    ASSERT_TRUE(status == 0 || status == 4) << status;
    protected_.erase(folder);
    check_state();
    check_nothing_else_changed();
}

/// What the files are when the point is restored; `complete` when all that it saw can be.
tree model_world::rolled_back(const model_point& point, bool& complete) {
    tree wanted = files_;
    complete = true;
    for (const auto& [path, content] : files_) {
        const bool appeared = is_protected(path) && point.folders.contains(folder_of(path)) &&
                              is_recordable(path) && !point.files.contains(path);
        if (appeared) {
            wanted.erase(path);
        }
    }
    for (const auto& [path, content] : point.files) {
        const auto present = files_.find(path);
        if (!is_protected(path) || (present != files_.end() && content == present->second)) {
            continue;
        }
        if (content && store_has(*content)) {
            wanted[path] = *content;
        } else {
            complete = false;
        }
    }
    return wanted;
}

/// After a step that may have ended anywhere: each file is in its old or its new form, and of no old form a
/// byte is lost.
void model_world::check_after(const tree& before, const tree& wanted) {
    tree present = look();
    for (const auto& [path, content] : before) {
        const auto found = present.find(path);
        const auto target = wanted.find(path);
        if (target != wanted.end()) {
            ASSERT_NE(found, present.end()) << to_utf8_lossy(path) << " is absent";
            ASSERT_TRUE(found->second == content || found->second == target->second) << to_utf8_lossy(path);
        }
        if (found == present.end() || found->second != content) {
            check_aside_has(content);
        }
    }
    for (const auto& [path, content] : present) {
        const bool beside = path.ends_with(beside_suffix);
        const std::wstring place = beside ? path.substr(0, path.size() - beside_suffix.size()) : path;
        const auto target = wanted.find(place);
        const bool new_form = target != wanted.end() && target->second == content;
        const bool old_form = before.contains(path) && before.at(path) == content;
        const bool just_made = beside && content.empty();
        ASSERT_TRUE(new_form || old_form || just_made) << to_utf8_lossy(path) << " is neither old nor new";
    }
}

void model_world::check_aside_has(const std::string& content) {
    if (aside_.contains(content)) {
        return;
    }
    problems unlisted;
    const std::wstring aside = joined(store.folder(), L"aside");
    for (const found_entry& entry : walk_folder(aside, std::wstring(), unlisted)) {
        if (entry.kind == entry_kind::file && aside_paths_.insert(entry.relative).second) {
            aside_.insert(read(joined(aside, entry.relative)));
        }
    }
    ASSERT_TRUE(aside_.contains(content)) << "lost: " << content.substr(0, 40);
}

void model_world::roll_back_twice() {
    if (points_.empty()) {
        return;
    }
    const model_point& point = points_[draw(static_cast<int>(points_.size()))];
    bool complete = true;
    const tree wanted = rolled_back(point, complete);
    run_in_a_process(request(service_call::restore_from_point, point.identity));
    check_after(files_, wanted);
    const int status = status_of_reply(call(service_call::restore_from_point, point.identity));
    const bool all_kept = std::all_of(point.files.begin(), point.files.end(),
                                      [](const auto& file) { return file.second.has_value(); });
    if (complete && all_kept) {
        ASSERT_EQ(status, 0);
    } else {
        ASSERT_TRUE(status == 0 || status == 5) << status;
    }
    check_after(files_, wanted);
    files_ = wanted;
    check_state();
    check_nothing_else_changed();
}

void model_world::restore_some_chronel_twice() {
    if (points_.empty() || points_.back().files.empty()) {
        return;
    }
    const model_point& point = points_.back();
    const auto& [path, content] = *std::next(point.files.begin(), draw(static_cast<int>(point.files.size())));
    if (!content || !is_protected(path)) {
        return;
    }
    const json parameters = {
        {"fileName", to_utf8_lossy(user_path(path))},
        {"cloneFileName", std::to_string(point.identity.at("sequenceNumber").get<std::int64_t>())}};
    tree wanted = files_;
    // The present content is kept first, which mends the store where it was damaged.
    const bool possible = store_has(*content) || (files_.contains(path) && files_.at(path) == *content);
    if (possible) {
        wanted[path] = *content;
    }
    run_in_a_process(request(service_call::restore_file_chronel, parameters));
    check_after(files_, wanted);
    ASSERT_EQ(status_of_reply(call(service_call::restore_file_chronel, parameters)) == 0, possible);
    check_after(files_, wanted);
    files_ = look();
    for (auto& [name, ignored] : wanted) {
        ASSERT_EQ(files_[name], wanted[name]) << to_utf8_lossy(name);
    }
    check_state();
}

}  // namespace ov::devservice
