#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace ov::name_space {

/// A text that never changes and that its copies own together: copying one allocates nothing, and what it
/// stands in is freed with the last. A folder of many items, its enumerators and the document that names them
/// have each name once.
///
///     const shared_text name(path);             // its own block
///     const shared_text part(block, in_block);  // one of many in a block
///
/// Copies may be used and freed on different threads.
class shared_text {
  public:
    shared_text() noexcept = default;
    /// Throws std::bad_alloc only.
    explicit shared_text(std::wstring_view text) {
        const auto copy = std::make_shared_for_overwrite<wchar_t[]>(text.size());
        std::copy(text.begin(), text.end(), copy.get());
        text_ = {copy.get(), text.size()};
        block_ = copy;
    }
    /// `text` stands in `block`.
    shared_text(std::shared_ptr<const wchar_t[]> block, std::wstring_view text) noexcept
        : block_(std::move(block)), text_(text) {}

    [[nodiscard]] std::wstring_view view() const noexcept { return text_; }

  private:
    std::shared_ptr<const wchar_t[]> block_;
    std::wstring_view text_;
};

}  // namespace ov::name_space
