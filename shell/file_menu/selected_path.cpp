#include "shell/file_menu/selected_path.h"

#include <shellapi.h>

#include <array>
#include <cstring>

#include "ovufc/noncopyable.h"

namespace ov::shell {

namespace {

// The longest path that is taken, in characters.
constexpr UINT path_limit_chars = 260;

/// The storage of a file list, asked of a selection and kept locked in memory for the length of a scope.
class locked_file_list : private noncopyable {
  public:
    explicit locked_file_list(IDataObject& selection) noexcept {
        FORMATETC format{CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
        obtained_ = SUCCEEDED(selection.GetData(&format, &medium_));
        if (!obtained_ || medium_.tymed != TYMED_HGLOBAL || medium_.hGlobal == nullptr) {
            return;
        }
        block_ = GlobalLock(medium_.hGlobal);
        whole_ = block_ != nullptr && is_whole_file_list(block_, GlobalSize(medium_.hGlobal));
    }
    ~locked_file_list() {
        if (block_ != nullptr) {
            GlobalUnlock(medium_.hGlobal);
        }
        if (obtained_) {
            ReleaseStgMedium(&medium_);
        }
    }

    /// Null unless the list is there and whole.
    [[nodiscard]] HDROP get() const noexcept {
        return whole_ ? static_cast<HDROP>(medium_.hGlobal) : nullptr;
    }

  private:
    STGMEDIUM medium_{};
    bool obtained_ = false;
    void* block_ = nullptr;
    bool whole_ = false;
};

// The list ends with an empty text: two terminators in a row, or one where the first text would begin.
template <class Char>
bool list_ends_within(const std::byte* first, std::size_t size_bytes) noexcept {
    bool at_start_of_text = true;
    for (std::size_t offset = 0; offset + sizeof(Char) <= size_bytes; offset += sizeof(Char)) {
        Char character{};
        std::memcpy(&character, first + offset, sizeof character);
        if (character == 0 && at_start_of_text) {
            return true;
        }
        at_start_of_text = character == 0;
    }
    return false;
}

}  // namespace

bool is_whole_file_list(const void* block, std::size_t size_bytes) noexcept {
    DROPFILES header{};
    if (size_bytes < sizeof header) {
        return false;
    }
    std::memcpy(&header, block, sizeof header);
    if (header.pFiles < sizeof header || header.pFiles > size_bytes) {
        return false;
    }
    const auto* texts = static_cast<const std::byte*>(block) + header.pFiles;
    const std::size_t texts_bytes = size_bytes - header.pFiles;
    return header.fWide != FALSE ? list_ends_within<wchar_t>(texts, texts_bytes)
                                 : list_ends_within<char>(texts, texts_bytes);
}

std::optional<std::wstring> selected_path(IDataObject* selection) {
    if (selection == nullptr) {
        return std::nullopt;
    }
    const locked_file_list list(*selection);
    if (list.get() == nullptr || DragQueryFileW(list.get(), 0xFFFFFFFF, nullptr, 0) != 1) {
        return std::nullopt;
    }
    std::array<wchar_t, path_limit_chars + 1> path{};
    if (DragQueryFileW(list.get(), 0, path.data(), path_limit_chars + 1) == 0) {
        return std::nullopt;
    }
    path.back() = L'\0';
    return std::wstring(path.data());
}

}  // namespace ov::shell
