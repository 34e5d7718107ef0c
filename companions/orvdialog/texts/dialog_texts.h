#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "ovufc/i18n/rosetta_stone.h"
#include "ovufc/noncopyable.h"

namespace ov::dialog {

/// The texts of the dialogs: those of the resource library in the user's language, as the module chooses it;
/// where the library is missing, not signed by the maker or without a text, this library's own, in English.
///
///     const dialog_texts texts(folder + L"orvres.dll");
///     SetWindowTextW(button, texts.text(message_numbers::open).c_str());
///
/// Any thread. Throws only std::bad_alloc.
class dialog_texts : private noncopyable, private nonmoveable {
  public:
    explicit dialog_texts(const std::wstring& resource_library);
    virtual ~dialog_texts() = default;

    [[nodiscard]] virtual std::wstring text(std::uint32_t number) const;
    /// The text with `insert` in place of its "%s".
    [[nodiscard]] std::wstring text(std::uint32_t number, std::wstring_view insert) const;
    /// Whether the language of the texts is written from right to left.
    [[nodiscard]] virtual bool is_right_to_left() const noexcept { return right_to_left_; }

  protected:
    dialog_texts() = default;

  private:
    i18n::rosetta_stone library_;
    bool right_to_left_ = false;
};

/// This library's own English text, cut at `size_chars`; needs no memory. An empty one for an unknown number.
void read_own_text(std::uint32_t number, wchar_t* text, DWORD size_chars) noexcept;

/// A menu item's text without the mark of its key ("&Open...", "開く(&O)...") and without the dots at its
/// end.
[[nodiscard]] std::wstring without_mnemonic(std::wstring item);

}  // namespace ov::dialog
