#include "companions/devservice/command_line/commands.h"
#include "companions/devservice/command_line/console.h"
#include "companions/devservice/command_line/flag_names.h"
#include "companions/devservice/command_line/remote.h"
#include "companions/devservice/files/text.h"
#include "companions/devservice/files/time_text.h"

namespace ov::devservice {
namespace {

void print_paths(const char* heading, const std::vector<std::wstring>& paths) {
    for (const std::wstring& path : paths) {
        print(std::string(heading) + to_utf8_lossy(path));
    }
}

void print_copy(const stored_copy& copy) {
    std::size_t files = 0;
    std::wstring folders;
    for (const folder_copy& folder : copy.folders) {
        for (const file_record& record : folder.records) {
            files += record.kept() ? 1 : 0;
        }
        folders += L", ";
        folders += folder.folder;
    }
    print("copy " + std::to_string(copy.number) + ": " + words_for(copy.kind) + " of " +
          to_utf8_lossy(file_name_time(copy.taken_on)) + ", " + std::to_string(files) + " files" +
          to_utf8_lossy(folders));
}

std::string flags_text(std::uint32_t flags) {
    std::string text;
    for (const flag_name& flag : flag_names) {
        if ((flags & flag.bit) != 0) {
            text += ' ';
            text += to_utf8_lossy(flag.option + 2);
        }
    }
    return text.empty() ? " none" : text;
}

}  // namespace

int command_list(command_call& call) {
    call.words.expect_end();
    const service_state& state = call.store.state();
    const DWORD running = remote(call.store.folder()).process_id();
    print("service: " + (running == 0 ? "not running" : "running, process " + std::to_string(running)));
    print("state: " + to_utf8_lossy(call.store.folder()) + ", generation " +
          std::to_string(state.generation));
    print("flags:" + flags_text(state.flags));
    for (const protected_folder& folder : state.folders) {
        print("protected: " + to_utf8_lossy(folder.path));
        if (!folder.object_path.empty()) {
            print("  as " + to_utf8_lossy(folder.object_path));
        }
    }
    print_paths("rule: ", state.rules);
    print_paths("managed: ", state.managed);
    for (std::size_t provider = 0; provider < cloud_providers.size(); ++provider) {
        const std::string heading = std::string(cloud_providers[provider]) + ": ";
        print_paths(heading.c_str(), state.cloud[provider]);
    }
    if (state.fixed_document) {
        print("document: given on the command line; the lists above are not in it");
    }
    for (const stored_copy& copy : state.copies) {
        print_copy(copy);
    }
    return exit_done;
}

}  // namespace ov::devservice
