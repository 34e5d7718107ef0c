#include "testkit/imports/failing_calls.h"

#include <shellapi.h>
#include <shlobj.h>
#include <softpub.h>
#include <wincrypt.h>
#include <wintrust.h>

#include <algorithm>
#include <stdexcept>

namespace ov::test {

namespace {

// The one call that is to fail, or has.
struct {
    DWORD thread_id = 0;
    int calls_before = -1;
} turn;

bool is_due() noexcept {
    if (GetCurrentThreadId() != turn.thread_id || turn.calls_before < 0) {
        return false;
    }
    --turn.calls_before;
    return turn.calls_before < 0;
}

// Takes a function's place; `Number` tells functions of one type apart.
template <class Function, int Number>
struct stand_in;

template <class Result, class... Arguments, int Number>
struct stand_in<Result WINAPI(Arguments...), Number> {
    static inline Result failure{};
    static inline Result(WINAPI* passed_over)(Arguments...) = nullptr;

    static Result WINAPI call(Arguments... arguments) {
        if (is_due()) {
            SetLastError(ERROR_NOT_SUPPORTED);
            return failure;
        }
        return passed_over(arguments...);
    }

    static void pass_over(FARPROC original) {
        passed_over = reinterpret_cast<Result(WINAPI*)(Arguments...)>(reinterpret_cast<void*>(original));
    }
};

struct row {
    const char* function;
    FARPROC replacement;
    void (*pass_over)(FARPROC original);
};

template <class Function, int Number, class Failure>
row make_row(const char* function, Failure failure) {
    using replacement = stand_in<Function, Number>;
    replacement::failure = failure;
    return {function, reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&replacement::call)),
            &replacement::pass_over};
}

#define FAILS_WITH(function, failure) make_row<decltype(function), __LINE__>(#function, failure)

// What gives something back is not here: its failure would be a leak of the test's own.
const std::vector<row>& rows() {
    static const std::vector<row> table{
        FAILS_WITH(AssocCreateForClasses, E_FAIL),
        FAILS_WITH(CertCompareCertificateName, FALSE),
        FAILS_WITH(CertFindCertificateInStore, nullptr),
        FAILS_WITH(CertGetCertificateContextProperty, FALSE),
        FAILS_WITH(CertGetNameStringW, 0U),
        FAILS_WITH(CertGetPublicKeyLength, 0U),
        FAILS_WITH(CoGetObject, E_FAIL),
        FAILS_WITH(CoTaskMemAlloc, nullptr),
        FAILS_WITH(CompareStringOrdinal, 0),
        FAILS_WITH(CreateCompatibleDC, nullptr),
        FAILS_WITH(CreateDIBSection, nullptr),
        FAILS_WITH(CreateFileW, INVALID_HANDLE_VALUE),
        FAILS_WITH(CreateMenu, nullptr),
        FAILS_WITH(CreateSemaphoreExW, nullptr),
        FAILS_WITH(CryptMsgGetParam, FALSE),
        FAILS_WITH(CryptQueryObject, FALSE),
        FAILS_WITH(DeleteFileW, FALSE),
        FAILS_WITH(DeviceIoControl, FALSE),
        FAILS_WITH(DragQueryFileW, 0U),
        FAILS_WITH(DrawIconEx, FALSE),
        FAILS_WITH(FileTimeToSystemTime, FALSE),
        FAILS_WITH(FormatMessageA, 0U),
        FAILS_WITH(FormatMessageW, 0U),
        FAILS_WITH(GetDC, nullptr),
        FAILS_WITH(GetDateFormatEx, 0),
        FAILS_WITH(GetFileAttributesW, INVALID_FILE_ATTRIBUTES),
        FAILS_WITH(GetFileInformationByHandleEx, FALSE),
        FAILS_WITH(GetFileSizeEx, FALSE),
        FAILS_WITH(GetIconInfo, FALSE),
        FAILS_WITH(GetModuleFileNameW, 0U),
        FAILS_WITH(GetModuleHandleW, nullptr),
        FAILS_WITH(GetProcAddress, nullptr),
        FAILS_WITH(GetSystemMetrics, 0),
        FAILS_WITH(GetTempPathW, 0U),
        FAILS_WITH(GetTimeFormatEx, 0),
        FAILS_WITH(GlobalAlloc, nullptr),
        FAILS_WITH(GlobalLock, nullptr),
        FAILS_WITH(GlobalSize, SIZE_T{0}),
        FAILS_WITH(ILClone, nullptr),
        FAILS_WITH(ILCombine, nullptr),
        FAILS_WITH(ILCreateFromPathW, nullptr),
        FAILS_WITH(InsertMenuW, FALSE),
        FAILS_WITH(LoadImageW, nullptr),
        FAILS_WITH(LoadLibraryExW, nullptr),
        FAILS_WITH(LoadLibraryW, nullptr),
        FAILS_WITH(LocalFileTimeToFileTime, FALSE),
        FAILS_WITH(MessageBoxW, 0),
        FAILS_WITH(MultiByteToWideChar, 0),
        FAILS_WITH(ProcessIdToSessionId, FALSE),
        FAILS_WITH(ReadFile, FALSE),
        FAILS_WITH(RegCreateKeyExW, ERROR_NOT_SUPPORTED),
        FAILS_WITH(RegDeleteKeyW, ERROR_NOT_SUPPORTED),
        FAILS_WITH(RegDeleteTreeW, ERROR_NOT_SUPPORTED),
        FAILS_WITH(RegDeleteValueW, ERROR_NOT_SUPPORTED),
        FAILS_WITH(RegOpenKeyExW, ERROR_NOT_SUPPORTED),
        FAILS_WITH(RegQueryValueExW, ERROR_NOT_SUPPORTED),
        FAILS_WITH(RegSetValueExW, ERROR_NOT_SUPPORTED),
        FAILS_WITH(ReleaseSemaphore, FALSE),
        FAILS_WITH(SHCreateDataObject, E_FAIL),
        FAILS_WITH(SHCreateDefaultContextMenu, E_FAIL),
        FAILS_WITH(SHCreateDefaultExtractIcon, E_FAIL),
        FAILS_WITH(SHCreateItemFromParsingName, E_FAIL),
        FAILS_WITH(SHCreateShellFolderView, E_FAIL),
        FAILS_WITH(SHCreateShellItemArrayFromDataObject, E_FAIL),
        FAILS_WITH(SHGetDesktopFolder, E_FAIL),
        FAILS_WITH(SHGetFileInfoW, DWORD_PTR{0}),
        FAILS_WITH(SHGetKnownFolderPath, E_FAIL),
        FAILS_WITH(SHGetSpecialFolderLocation, E_FAIL),
        FAILS_WITH(SelectObject, nullptr),
        FAILS_WITH(SetMenuItemBitmaps, FALSE),
        FAILS_WITH(SysAllocStringLen, nullptr),
        FAILS_WITH(SystemTimeToFileTime, FALSE),
        FAILS_WITH(SystemTimeToTzSpecificLocalTime, FALSE),
        FAILS_WITH(TlsAlloc, TLS_OUT_OF_INDEXES),
        FAILS_WITH(VerifyVersionInfoW, FALSE),
        FAILS_WITH(WaitForSingleObject, WAIT_FAILED),
        FAILS_WITH(WideCharToMultiByte, 0),
        FAILS_WITH(WinVerifyTrust, TRUST_E_PROVIDER_UNKNOWN),
    };
    return table;
}

#undef FAILS_WITH

}  // namespace

const std::vector<std::string>& functions_that_fail() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (const row& known : rows()) {
            all.emplace_back(known.function);
        }
        return all;
    }();
    return names;
}

failing_call::failing_call(HMODULE module, const std::string& function, int nth) {
    const auto found = std::find_if(rows().begin(), rows().end(),
                                    [&](const row& known) { return function == known.function; });
    if (found == rows().end()) {
        throw std::runtime_error(function + " is not in the table of those that fail");
    }
    turn = {.thread_id = GetCurrentThreadId(), .calls_before = -1};
    slots_.emplace(module, "*", found->function, found->replacement);
    found->pass_over(slots_->original());
    turn.calls_before = nth - 1;
}

failing_call::~failing_call() {
    slots_.reset();
    turn.calls_before = -1;
}

bool failing_call::met() const noexcept {
    return turn.calls_before < 0;
}

}  // namespace ov::test
