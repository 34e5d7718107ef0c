#include "companions/devservice/command_line.h"

#include <windows.h>
#include <shlobj.h>

#include <algorithm>
#include <iterator>

#include "companions/devservice/commands.h"
#include "companions/devservice/console.h"
#include "companions/devservice/path.h"
#include "companions/devservice/text.h"

namespace ov::devservice {
namespace {

constexpr const char* help_text =
    "The development service of Orvane Vaultkeep: answers the calls that come through the driver.\n"
    "\n"
    "  orvsvc.exe [--state DIR] COMMAND\n"
    "\n"
    "  run [--no-open] [--desktop DIR]     serves until Ctrl+C or stop; --no-open opens no chronels,\n"
    "                                      --desktop takes the place of the user's desktop for exports\n"
    "  service                             the same as a Windows service, started by the service manager\n"
    "  stop                                ends the running service\n"
    "  list                                shows the flags, the locations and the copies\n"
    "  protect [--as OBJECTPATH] PATH      protects a folder and takes a first copy of its files\n"
    "  protect --rule NAME                 lists a folder of every user's profile, such as Documents\n"
    "  unprotect PATH | --rule NAME        takes it back; copies are kept\n"
    "  restore-point                       takes a restore point of all protected folders\n"
    "  flags [--FLAG on|off]...            shows or sets: --restricted --restore-hidden --exports --addons\n"
    "                                      --details --unprotect-blocked\n"
    "  cloud add|remove --provider NAME PATH   oneDrive, google, boxSyn, dropBox, oneDriveBusiness\n"
    "  mgmt add|remove PATH                centrally managed folders\n"
    "  document FILE | --none              serves a file as the protected-locations document, or no longer\n"
    "\n"
    "State and copies are in %ProgramData%\\Orvane\\devservice, or in DIR. Commands act on a running service "
    "as\n"
    "on a stopped one. Exit codes: 0 done, 1 failed, 2 wrong usage, 3 driver or service absent, 4 done but "
    "for\n"
    "some files.";

struct command {
    const wchar_t* name;
    int (*run)(command_call&);
};

constexpr command commands[] = {
    {L"run", command_run},
    {L"service", command_service},
    {L"stop", command_stop},
    {L"list", command_list},
    {L"protect", command_protect},
    {L"unprotect", command_unprotect},
    {L"restore-point", command_restore_point},
    {L"flags", command_flags},
    {L"cloud", command_cloud},
    {L"mgmt", command_mgmt},
    {L"document", command_document},
};

std::optional<std::wstring> default_state_folder() {
    PWSTR path = nullptr;
    const HRESULT result = SHGetKnownFolderPath(FOLDERID_ProgramData, 0, nullptr, &path);
    std::optional<std::wstring> folder;
    if (SUCCEEDED(result)) {
        folder = clean_path(joined(path, L"Orvane\\devservice"));
    }
    CoTaskMemFree(path);
    if (!folder) {
        print_error("the system names no folder for programs' data; give --state");
    }
    return folder;
}

}  // namespace

int run_command_line(std::vector<std::wstring> words) {
    if (words.empty() || take_switch(words, L"--help") || take_switch(words, L"-h")) {
        print(help_text);
        return exit_done;
    }
    std::wstring state_word;
    const std::optional<std::wstring> folder =
        take_option(words, L"--state", state_word) ? path_from_word(state_word) : default_state_folder();
    if (!folder || words.empty()) {
        return folder ? bad_usage("name a command") : static_cast<int>(exit_usage);
    }
    const auto known = std::find_if(std::begin(commands), std::end(commands),
                                    [&](const command& candidate) { return words[0] == candidate.name; });
    if (known == std::end(commands)) {
        return bad_usage("unknown command '" + to_utf8_lossy(words[0]) + "'");
    }
    vault store(*folder);
    if (const DWORD error = store.reload(); error != ERROR_SUCCESS) {
        print_error("the state in " + to_utf8_lossy(*folder) +
                    " cannot be read and is left alone: " + describe(error));
        return exit_failed;
    }
    words.erase(words.begin());
    command_call call{store, std::move(words)};
    return known->run(call);
}

}  // namespace ov::devservice
