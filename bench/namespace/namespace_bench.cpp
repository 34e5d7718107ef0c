// Time and memory of the namespace folder by the number of protected locations: fetching the document from
// the driver, making a folder of it (parsing included), and enumerating all its items.
//
//     scripts/wine-run.sh --timeout 120 --driver -- build/x64-release/bin/namespace_bench.exe

#include <windows.h>
#include <objbase.h>
#include <shlobj.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/namespace/counted_memory.h"
#include "namespace/folder/orv_name_space.h"
#include "namespace/locations/protected_locations.h"
#include "ovufc/com/adopt.h"
#include "testkit/imports/import_patch.h"
#include "testkit/process/module_attach.h"
#include "tests/module/namespace/document_service.h"
#include "tools/command_line/program.h"

namespace {

using ov::name_space::orvNameSpace;

constexpr std::array location_counts{1'000, 10'000, 100'000};
constexpr int rounds = 11;

struct measurement {
    double fetch_ms = 0;
    double make_ms = 0;
    double enumerate_ms = 0;
    double document_kib = 0;
    double make_peak_kib = 0;  // above what was live before
    double kept_kib = 0;       // by a folder
    double copy_kib = 0;       // by an enumerator
    double allocations_per_item = 0;
};

class stopwatch {
  public:
    stopwatch() { QueryPerformanceCounter(&start_); }
    [[nodiscard]] double ms() const {
        LARGE_INTEGER now;
        LARGE_INTEGER frequency;
        QueryPerformanceCounter(&now);
        QueryPerformanceFrequency(&frequency);
        return 1000.0 * static_cast<double>(now.QuadPart - start_.QuadPart) /
               static_cast<double>(frequency.QuadPart);
    }

  private:
    LARGE_INTEGER start_;
};

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double kib(std::int64_t bytes) {
    return static_cast<double>(bytes) / 1024;
}

void append_path(std::string& text, int number) {
    text += "\"D:\\\\Departments\\\\Team ";
    text += std::to_string(number % 97);
    text += "\\\\Project ";
    text += std::to_string(number);
    text += '"';
}

// Two thirds local folders, the rest spread evenly over the managed and the cloud folders.
std::string document_of(int locations) {
    constexpr std::array others{"mgmtCustom", "oneDrive", "google", "boxSyn", "dropBox", "oneDriveBusiness"};
    const int local = locations * 2 / 3;
    std::string text = R"({"hardDrive":{"folders":["C:\\Users\\[^\\\\]*\\Desktop\\")";
    int number = 0;
    for (; number < local; ++number) {
        text += ',';
        append_path(text, number);
    }
    text += "]}";
    for (int list = 0; list < static_cast<int>(others.size()); ++list) {
        text += ",\"";
        text += others[list];
        text += "\":[";
        const int end = local + (locations - local) * (list + 1) / static_cast<int>(others.size());
        for (const int first = number; number < end; ++number) {
            text += number == first ? "" : ",";
            append_path(text, number);
        }
        text += "]";
    }
    return text + "}";
}

std::int64_t task_allocations = 0;

void* WINAPI counted_task_memory(SIZE_T size) {
    ++task_allocations;
    static const auto real = reinterpret_cast<decltype(&CoTaskMemAlloc)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ole32.dll"), "CoTaskMemAlloc")));
    return real(size);
}

// Takes all items of a new enumerator and frees them.
int enumerate(orvNameSpace& folder) {
    Microsoft::WRL::ComPtr<IEnumIDList> list;
    if (folder.EnumObjects(nullptr, SHCONTF_FOLDERS, &list) != S_OK) {
        return 0;
    }
    int items = 0;
    PITEMID_CHILD entry = nullptr;
    ULONG fetched = 0;
    while (list->Next(1, &entry, &fetched) == S_OK) {
        CoTaskMemFree(entry);
        ++items;
    }
    return items;
}

measurement measure(ov::test::document_service& service, int locations) {
    measurement result;
    {
        const std::string document = document_of(locations);
        result.document_kib = kib(static_cast<std::int64_t>(document.size()));
        service.publish(document);
    }
    const stopwatch fetching;
    ov::name_space::refresh_protected_locations();
    result.fetch_ms = fetching.ms();

    std::vector<double> made;
    std::vector<double> enumerated;
    made.reserve(rounds);
    enumerated.reserve(rounds);
    for (int round = 0; round < rounds; ++round) {
        const auto before = ov::bench::memory_now();
        ov::bench::restart_peak();
        const stopwatch making;
        const auto folder = ov::com::adopt(ov::com::make_object<orvNameSpace>());
        made.push_back(making.ms());
        const auto after = ov::bench::memory_now();
        result.make_peak_kib = kib(after.peak_bytes - before.live_bytes);
        result.kept_kib = kib(after.live_bytes - before.live_bytes);

        const stopwatch enumerating;
        const int items = enumerate(*folder.Get());
        enumerated.push_back(enumerating.ms());
        if (items < locations) {
            std::printf("only %d items of %d locations\n", items, locations);
        }
    }
    result.make_ms = median(made);
    result.enumerate_ms = median(enumerated);

    const auto folder = ov::com::adopt(ov::com::make_object<orvNameSpace>());
    const auto before = ov::bench::memory_now();
    ov::bench::restart_peak();
    const ov::test::import_patch<decltype(CoTaskMemAlloc)> count(GetModuleHandleW(nullptr), "ole32.dll",
                                                                 "CoTaskMemAlloc", counted_task_memory);
    task_allocations = 0;
    const int items = enumerate(*folder.Get());
    result.copy_kib = kib(ov::bench::memory_now().peak_bytes - before.live_bytes);
    result.allocations_per_item = static_cast<double>(task_allocations) / items;
    return result;
}

void print_row(const char* name, const std::array<measurement, 3>& all, double measurement::*figure) {
    const auto ratio = [&](int i) {
        return all[i - 1].*figure == 0 ? 0 : all[i].*figure / (all[i - 1].*figure);
    };
    std::printf("%-34s %11.3f %11.3f %11.3f   %6.1f %6.1f\n", name, all[0].*figure, all[1].*figure,
                all[2].*figure, ratio(1), ratio(2));
}

int run(ov::command_line::arguments& words) {
    words.expect_end();
    (void)CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    std::array<measurement, 3> all;
    {
        ov::test::document_service service;
        for (std::size_t i = 0; i < all.size(); ++i) {
            all[i] = measure(service, location_counts[i]);
        }
    }
    std::printf("%-34s %11d %11d %11d   %6s %6s\n", "locations", location_counts[0], location_counts[1],
                location_counts[2], "x", "x");
    print_row("document, KiB", all, &measurement::document_kib);
    print_row("fetch through the driver, ms", all, &measurement::fetch_ms);
    print_row("make a folder, ms (median)", all, &measurement::make_ms);
    print_row("  highest use meanwhile, KiB", all, &measurement::make_peak_kib);
    print_row("  kept by the folder, KiB", all, &measurement::kept_kib);
    print_row("enumerate all, ms (median)", all, &measurement::enumerate_ms);
    print_row("  copy of the items, KiB", all, &measurement::copy_kib);
    print_row("  task allocations an item", all, &measurement::allocations_per_item);
    CoUninitialize();
    return 0;
}

}  // namespace

int main() {
    return ov::command_line::run_program(
        L"namespace_bench", L"namespace_bench\n\nTimes the namespace folder by its number of locations.",
        ov::command_line::words_of_process(), run);
}
