#include "companions/devservice/command_line/command_line.h"

#include <algorithm>
#include <iterator>

#include "companions/devservice/command_line/commands.h"
#include "companions/devservice/command_line/console.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/text.h"
#include "ovufc/com/known_folder.h"

namespace ov::devservice {
namespace {

constexpr const wchar_t* help_text =
    L"The development service of Orvane Vaultkeep: answers the calls that come through the driver.\n"
    L"\n"
    L"  orvsvc.exe [--state DIR] COMMAND\n"
    L"\n"
    L"  run [--no-open] [--desktop DIR]     serves until Ctrl+C or stop; --no-open opens no chronels,\n"
    L"                                      --desktop takes the place of the user's desktop for exports\n"
    L"  service                             the same as a Windows service, started by the service manager\n"
    L"  stop                                ends the running service\n"
    L"  list                                shows the flags, the locations and the copies\n"
    L"  protect [--as OBJECTPATH] PATH      protects a folder and takes a first copy of its files\n"
    L"  protect --rule NAME                 lists a folder of every user's profile, such as Documents\n"
    L"  unprotect PATH | --rule NAME        takes it back; copies are kept\n"
    L"  restore-point                       takes a restore point of all protected folders\n"
    L"  flags [--FLAG on|off]...            shows or sets: --restricted --restore-hidden --exports --addons\n"
    L"                                      --details --unprotect-blocked\n"
    L"  cloud add|remove --provider NAME PATH   oneDrive, google, boxSyn, dropBox, oneDriveBusiness\n"
    L"  mgmt add|remove PATH                centrally managed folders\n"
    L"  document FILE | --none              serves a file as the protected-locations document, or no longer\n"
    L"\n"
    L"State and copies are in %ProgramData%\\Orvane\\devservice, or in DIR. Commands act on a running "
    L"service "
    L"as\n"
    L"on a stopped one. Exit codes: 0 done, 1 failed, 2 wrong usage, 3 driver or service absent, 4 done but "
    L"for\n"
    L"some files.";

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

std::wstring default_state_folder() {
    const std::wstring data = com::known_folder_path(FOLDERID_ProgramData);
    const auto folder = data.empty() ? std::nullopt : clean_path(joined(data, L"Orvane\\devservice"));
    if (!folder) {
        throw usage_error(L"the system names no folder for programs' data; give --state");
    }
    return *folder;
}

const command& take_command(command_line::arguments& words) {
    const std::wstring name = words.take_word(L"a command");
    const auto known = std::find_if(std::begin(commands), std::end(commands),
                                    [&](const command& candidate) { return name == candidate.name; });
    if (known == std::end(commands)) {
        throw usage_error(L"unknown command '" + name + L"'");
    }
    return *known;
}

int run(command_line::arguments& words) {
    const auto state_word = words.take_value(L"--state");
    const command& chosen = take_command(words);
    vault store(state_word ? path_from_word(*state_word) : default_state_folder());
    if (const DWORD error = store.reload(); error != ERROR_SUCCESS) {
        print_error("the state in " + to_utf8_lossy(store.folder()) +
                    " cannot be read and is left alone: " + describe(error));
        return exit_failed;
    }
    command_call call{store, words};
    return chosen.run(call);
}

}  // namespace

int run_command_line(std::vector<std::wstring> words) {
    return command_line::run_program(L"orvsvc", help_text, std::move(words), run);
}

}  // namespace ov::devservice
