#include <windows.h>

#include <cstdio>
#include <exception>

#include "installer/actions/moved_files.h"
#include "installer/actions/server_call.h"
#include "installer/actions/session.h"
#include "module/registration/registration.h"

// The entry points that installer/vaultkeep.wxs names as actions. The deferred ones run as the system in a
// process of the installer's and learn all they know from CustomActionData, which Prepare has written for
// each.

namespace {

using ov::setup::outcome;
using ov::setup::session;

/// What every entry point runs in: no exception may get into the installer.
template <class Body>
UINT guarded(MSIHANDLE handle, Body body) noexcept {
    try {
        return body(session(handle)) ? ERROR_SUCCESS : ERROR_INSTALL_FAILURE;
    } catch (const std::exception&) {
        return ERROR_INSTALL_FAILURE;
    }
}

/// The moment as a number: names this run of the installer.
std::wstring mark_of_this_run() {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    wchar_t text[17];
    swprintf(text, std::size(text), L"%08lx%08lx", now.dwHighDateTime, now.dwLowDateTime);
    return text;
}

std::wstring code_text(HRESULT code) {
    wchar_t text[11];
    swprintf(text, std::size(text), L"0x%08lX", code);
    return text;
}

const wchar_t* word_for(outcome what) {
    switch (what) {
        case outcome::done:
            return L"done";
        case outcome::failed:
            return L"failed";
        default:
            return L"not needed";
    }
}

/// CustomActionData is MARK|FILE|FILE...; a file that cannot be moved is left to the installer, which then
/// asks for a restart by itself.
template <class Move>
bool move_files(const session& run, const wchar_t* title, Move move) {
    const auto words = ov::setup::split(run.property(L"CustomActionData"));
    for (size_t i = 1; i < words.size(); ++i) {
        run.log(std::wstring(title) + L" " + words[i] + L": " + word_for(move(words[i], words[0])));
    }
    return true;
}

outcome delete_old(const std::wstring& path, const std::wstring& /*mark*/) {
    return ov::setup::delete_old(path);
}

void log_result(const session& run, const wchar_t* what, const std::wstring& path, HRESULT result) {
    run.log(std::wstring(what) + L" " + path + L": " + code_text(result));
}

}  // namespace

/// Writes what the deferred actions are told. `ShippedFiles` holds the files that may be in use, the module
/// first.
extern "C" UINT WINAPI Prepare(MSIHANDLE handle) {
    return guarded(handle, [](const session& run) {
        const std::wstring files = run.property(L"ShippedFiles");
        const std::wstring moved = mark_of_this_run() + L"|" + files;
        const std::wstring module_path = ov::setup::split(files).front();
        bool is_set = true;
        for (const wchar_t* action : {L"MoveAside", L"PutBack", L"MoveAsideUndone", L"DeleteOld"}) {
            is_set = run.set_property(action, moved) && is_set;
        }
        for (const wchar_t* action : {L"Register", L"RegisterUndone", L"Unregister", L"UnregisterUndone"}) {
            is_set = run.set_property(action, module_path) && is_set;
        }
        for (const wchar_t* action : {L"LeaveNoFolder", L"FoldersUndone"}) {
            is_set = run.set_property(action, run.property(L"ProductFolders")) && is_set;
        }
        return is_set;
    });
}

extern "C" UINT WINAPI MoveAside(MSIHANDLE handle) {
    return guarded(
        handle, [](const session& run) { return move_files(run, L"Moving aside", ov::setup::move_aside); });
}

extern "C" UINT WINAPI PutBack(MSIHANDLE handle) {
    return guarded(handle,
                   [](const session& run) { return move_files(run, L"Putting back", ov::setup::put_back); });
}

/// Runs when a later step has failed. The installer has taken its own steps back by then, or, under Wine, has
/// put files of its own there.
extern "C" UINT WINAPI TakeBack(MSIHANDLE handle) {
    return guarded(handle, [](const session& run) {
        move_files(run, L"Putting back", ov::setup::put_back);
        return move_files(run, L"Deleting the other", delete_old);
    });
}

/// Runs when all has gone well.
extern "C" UINT WINAPI DeleteOld(MSIHANDLE handle) {
    return guarded(handle,
                   [](const session& run) { return move_files(run, L"Deleting the former", delete_old); });
}

/// Runs behind DeleteOld on a removal: the installer could not remove the folders, for they held the files
/// that had been moved aside.
extern "C" UINT WINAPI LeaveNoFolder(MSIHANDLE handle) {
    return guarded(handle, [](const session& run) {
        const auto folders = ov::setup::split(run.property(L"CustomActionData"));
        const bool is_one_left = ov::setup::is_old_one_left(folders.front() + L"*");
        for (const std::wstring& folder : folders) {
            const outcome result = ov::setup::remove_folder(folder, is_one_left);
            run.log(L"Removing " + folder + L": " + word_for(result));
        }
        return true;
    });
}

extern "C" UINT WINAPI Register(MSIHANDLE handle) {
    return guarded(handle, [](const session& run) {
        const std::wstring path = run.property(L"CustomActionData");
        const HRESULT result = ov::setup::call_server(path, "DllRegisterServer");
        log_result(run, L"Registering", path, result);
        return SUCCEEDED(result);
    });
}

/// A module that is missing takes itself out of the registry no more: then what it would have done is done
/// here, so that a damaged product can be removed.
extern "C" UINT WINAPI Unregister(MSIHANDLE handle) {
    return guarded(handle, [](const session& run) {
        const std::wstring path = run.property(L"CustomActionData");
        HRESULT result = ov::setup::call_server(path, "DllUnregisterServer");
        log_result(run, L"Unregistering", path, result);
        if (result == HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND)) {
            result = ov::registration::unregister_server();
            log_result(run, L"Unregistering without", path, result);
        }
        return SUCCEEDED(result);
    });
}

/// Runs last. A process that still holds an old file goes on with it until it ends, so the administrator is
/// told.
extern "C" UINT WINAPI AskForRestart(MSIHANDLE handle) {
    return guarded(handle, [](const session& run) {
        for (const std::wstring& path : ov::setup::split(run.property(L"ShippedFiles"))) {
            if (ov::setup::is_old_one_left(path)) {
                run.log(L"In use until the next start: the former " + path);
                run.ask_for_restart();
            }
        }
        return true;
    });
}
