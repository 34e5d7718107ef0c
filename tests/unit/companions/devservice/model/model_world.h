#pragma once

#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/unit/companions/devservice/model/fault_injection.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {

/// Contents of files by their paths below the user's folder.
using tree = std::map<std::wstring, std::string>;

/// A restore point as the model knows it: what it saw, and the content where it could be kept.
struct model_point {
    json identity;
    std::set<std::wstring> folders;
    std::map<std::wstring, std::optional<std::string>> files;
};

/// A folder of files, the service's copies of it, and beside them the model: what must be there. Each step of
/// a person or of the service is checked against it, whether the service was killed in the middle or not.
class model_world : public vault_fixture {
  protected:
    // What a person does.
    void write_some_file();
    void rename_some_file();
    void delete_some_file();
    void damage_some_object();

    // What the service does, in a process that may be killed or find the disk full, and then once more.
    void take_restore_point_twice();
    void protect_some_folder_twice();
    void unprotect_some_folder_twice();
    void roll_back_twice();
    void restore_some_chronel_twice();

    /// A number from 0 to `count` - 1.
    [[nodiscard]] int draw(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }

    std::mt19937 random;
    static int kills;

  private:
    void run_in_a_process(const std::string& request);
    void check_after(const tree& before, const tree& wanted);
    void check_nothing_else_changed();
    void forget_points_that_are_past();
    void check_state();
    void check_aside_has(const std::string& content);
    void add_point_from_state(const std::set<std::wstring>& held);
    [[nodiscard]] tree rolled_back(const model_point& point, bool& complete);
    [[nodiscard]] bool store_has(const std::string& content) const;
    [[nodiscard]] tree look() const;
    [[nodiscard]] std::wstring some_file();
    [[nodiscard]] bool is_protected(const std::wstring& relative) const;
    [[nodiscard]] json folder_parameter(const std::wstring& folder) const;

    tree files_;
    std::set<std::wstring> protected_;
    std::vector<model_point> points_;
    std::set<std::string> damaged_;  // contents whose object a step damaged
    std::set<std::string> aside_;    // contents that were seen in the aside folder
    std::set<std::wstring> aside_paths_;
};

/// The other side of run_in_a_process: does what the environment says, and ends the process.
[[noreturn]] void play_the_victim();

}  // namespace ov::devservice
