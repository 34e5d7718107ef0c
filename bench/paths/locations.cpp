#include "bench/paths/locations.h"

#include <array>

namespace ov::bench {

namespace {

void append_path(std::string& text, int number, int seed) {
    text += R"("D:\\Departments )" + std::to_string(seed) + R"(\\Team )" + std::to_string(number % 97) +
            R"(\\Project )" + std::to_string(number) + '"';
}

}  // namespace

std::string locations_document(int locations, int seed) {
    constexpr std::array others{"mgmtCustom", "oneDrive", "google", "boxSyn", "dropBox", "oneDriveBusiness"};
    const int local = locations * 2 / 3;
    std::string text = R"({"hardDrive":{"folders":[)";
    int number = 0;
    for (; number < local; ++number) {
        text += number == 0 ? "" : ",";
        append_path(text, number, seed);
    }
    text += "]}";
    for (int list = 0; list < static_cast<int>(others.size()); ++list) {
        text += ",\"" + std::string(others[list]) + "\":[";
        const int end = local + (locations - local) * (list + 1) / static_cast<int>(others.size());
        for (const int first = number; number < end; ++number) {
            text += number == first ? "" : ",";
            append_path(text, number, seed);
        }
        text += "]";
    }
    return text + "}";
}

}  // namespace ov::bench
