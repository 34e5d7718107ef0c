#pragma once

#include <algorithm>
#include <cstdint>
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
/// Shorter than 4 G units: what the texts come from is bounded at 20 MiB.
/// Copies may be used and freed on different threads.
class shared_text {
  public:
    shared_text() noexcept = default;
    /// Throws std::bad_alloc only.
    explicit shared_text(std::wstring_view text) : size_units_(static_cast<std::uint32_t>(text.size())) {
        auto copy = std::make_shared_for_overwrite<wchar_t[]>(text.size());
        std::copy(text.begin(), text.end(), copy.get());
        first_ = std::move(copy);
    }
    /// `text` stands in `block`.
    shared_text(const std::shared_ptr<const wchar_t[]>& block, std::wstring_view text) noexcept
        : first_(block, text.data()), size_units_(static_cast<std::uint32_t>(text.size())) {}

    [[nodiscard]] std::wstring_view view() const noexcept { return {first_.get(), size_units_}; }

  private:
    std::shared_ptr<const wchar_t[]> first_;  // of this text; owns the whole block
    std::uint32_t size_units_ = 0;
};

}  // namespace ov::name_space
