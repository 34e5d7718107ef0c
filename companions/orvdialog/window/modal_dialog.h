#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "companions/orvdialog/layout/dialog_metrics.h"
#include "companions/orvdialog/layout/placing.h"
#include "companions/orvdialog/texts/dialog_texts.h"
#include "ovufc/noncopyable.h"

namespace ov::dialog {

/// Which text a control shows.
struct control_text {
    int control_id;
    std::uint32_t number;
};

/// A modal dialog made from a template of this library, which names the controls and their order alone: texts
/// come from the resource library, and places from the texts and the font of the user's display. For the
/// thread that shows it.
///
/// Follows the display while it is open: another number of dots per inch, font, colours or contrast.
class modal_dialog : private noncopyable, private nonmoveable {
  public:
    virtual ~modal_dialog() = default;

    /// Shows the dialog before `owner` (may be null) and returns the value that it was ended with; -1 when it
    /// could not be shown or what it does has thrown.
    [[nodiscard]] INT_PTR show(WORD template_id, HWND owner) noexcept;

  protected:
    modal_dialog(const dialog_texts& texts, std::uint32_t title, std::span<const control_text> controls)
        : texts_(texts), title_(title), controls_(controls) {}

    /// The controls are there with their texts, and nothing is visible yet.
    virtual void on_open() = 0;
    /// A button was pressed or a control has something to tell (its BN_, EN_ code).
    virtual void on_command(WORD control_id, WORD code) = 0;
    /// A common control has something to tell; the value goes back to it.
    virtual LRESULT on_notify(NMHDR& /*notification*/) { return 0; }
    /// Any other message; an empty answer leaves it to the system.
    virtual std::optional<LRESULT> on_message(UINT /*message*/, WPARAM /*wparam*/, LPARAM /*lparam*/) {
        return std::nullopt;
    }
    /// The dialog has new metrics, and is laid out next; the first time before `on_open`.
    virtual void on_metrics() {}

    /// The smallest size that everything fits; also the size of a dialog that cannot be resized.
    [[nodiscard]] virtual SIZE least_size() const = 0;
    /// The size to open with.
    [[nodiscard]] virtual SIZE first_size() const { return least_size(); }
    virtual void lay_out(placing& controls, SIZE client) const = 0;

    [[nodiscard]] HWND window() const noexcept { return window_; }
    [[nodiscard]] HWND control(int id) const noexcept { return GetDlgItem(window_, id); }
    [[nodiscard]] const dialog_metrics& metrics() const noexcept { return *metrics_; }
    [[nodiscard]] const dialog_texts& texts() const noexcept { return texts_; }
    void focus(int control_id) noexcept;
    /// A path in a read-only field without a frame, in line with what stands above it.
    void show_path(int control_id, const std::wstring& path) noexcept;
    /// Paths are written from left to right in every language.
    void read_left_to_right(int control_id) noexcept;
    void end(INT_PTR value) noexcept { EndDialog(window_, value); }

  private:
    static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
    bool handle(UINT message, WPARAM wparam, LPARAM lparam);
    bool handle_measured(UINT message, WPARAM wparam, LPARAM lparam);
    void open();
    void take_metrics(UINT dpi);
    void measure_again(UINT dpi, POINT at);
    void move_to_owner() noexcept;
    void lay_out_again() const;
    [[nodiscard]] bool is_resizable() const noexcept;

    const dialog_texts& texts_;
    const std::uint32_t title_;
    const std::span<const control_text> controls_;
    HWND window_ = nullptr;
    std::optional<dialog_metrics> metrics_;
};

/// The open dialog of this thread; null when there is none.
[[nodiscard]] HWND dialog_of_this_thread() noexcept;

/// The window that a dialog of this thread belongs to: its active one, if people see it; else null.
[[nodiscard]] HWND owner_window() noexcept;

}  // namespace ov::dialog
