#include "companions/orvdialog/protect/protect_dialog.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "companions/orvdialog/control_ids.h"
#include "companions/orvdialog/layout/stack.h"
#include "companions/orvdialog/protect/folder_chooser.h"
#include "companions/orvdialog/texts/message_numbers.h"
#include "ovufc/dialog/dialog_records.h"
#include "ovufc/i18n/message_ids.h"

namespace ov::dialog {

namespace {

namespace numbers = message_numbers;

constexpr std::size_t longest_object_path_chars = std::size(ProtectDialogRequest{}.object_path) - 1;
/// The folder itself does not go through the record: it may be as long as Windows has them.
constexpr std::size_t longest_folder_chars = 32767;
constexpr UINT_PTR check_timer = 1;
constexpr UINT pause_in_typing_ms = 300;

constexpr std::array controls{
    control_text{IDC_PROTECT_FOLDER_LABEL, numbers::folder_label},
    control_text{IDC_PROTECT_ABOUT, numbers::about_protection},
    control_text{IDC_PROTECT_THIS, numbers::protect_this_folder},
    control_text{IDC_PROTECT_OTHER, numbers::protect_other_path},
    control_text{IDC_PROTECT_LABEL, numbers::path_label},
    control_text{IDC_PROTECT_BROWSE, numbers::browse},
    control_text{IDOK, numbers::protect},
    control_text{IDCANCEL, numbers::cancel},
};

struct problem_text {
    path_problem problem;
    std::uint32_t number;
};
constexpr std::array problem_texts{
    problem_text{path_problem::no_full_path, numbers::problem_no_full_path},
    problem_text{path_problem::root, numbers::problem_root},
    problem_text{path_problem::network, numbers::problem_network},
    problem_text{path_problem::too_long, numbers::problem_too_long},
    problem_text{path_problem::gone, numbers::problem_gone},
};

std::wstring text_of(HWND control) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)) + 1, L'\0');
    text.resize(
        static_cast<std::size_t>(GetWindowTextW(control, text.data(), static_cast<int>(text.size()))));
    return text;
}

bool is_same_path(const std::wstring& left, const std::wstring& right) noexcept {
    return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_EQUAL;
}

}  // namespace

protect_dialog::protect_dialog(const dialog_texts& texts, std::wstring folder, bool is_protected)
    : modal_dialog(texts, numbers::protect_title, controls),
      folder_(std::move(folder)),
      is_protected_(is_protected) {}

void protect_dialog::on_open() {
    show_path(IDC_PROTECT_FOLDER, folder_);
    read_left_to_right(IDC_PROTECT_OBJECT);
    if (is_protected_) {
        SetWindowTextW(control(IDC_PROTECT_NOTE), note().c_str());
        ShowWindow(control(IDC_PROTECT_NOTE), SW_SHOW);
    }
    choose(IDC_PROTECT_THIS);
    // The answer is Enter away, where there is one.
    focus(IsWindowEnabled(control(IDOK)) != FALSE ? IDOK : IDC_PROTECT_THIS);
}

void protect_dialog::on_command(WORD control_id, WORD code) {
    if (control_id == IDC_PROTECT_OBJECT && code == EN_CHANGE) {
        return on_edited();
    }
    if (code != BN_CLICKED) {
        return;
    }
    switch (control_id) {
        case IDOK:
            return accept();
        case IDCANCEL:
            return end(IDCANCEL);
        case IDC_PROTECT_THIS:
        case IDC_PROTECT_OTHER:
            return choose(control_id);
        case IDC_PROTECT_BROWSE:
            return browse();
        default:
            return;
    }
}

std::optional<LRESULT> protect_dialog::on_message(UINT message, WPARAM wparam, LPARAM /*lparam*/) {
    if (message == WM_TIMER && wparam == check_timer) {
        check();
        return 0;
    }
    if (message == WM_ACTIVATE && LOWORD(wparam) != WA_INACTIVE) {
        check();  // things may have changed outside meanwhile
    }
    return std::nullopt;
}

bool protect_dialog::other_is_chosen() const noexcept {
    return IsDlgButtonChecked(window(), IDC_PROTECT_OTHER) == BST_CHECKED;
}

std::wstring protect_dialog::typed_path() const {
    return tidy_path(text_of(control(IDC_PROTECT_OBJECT)));
}

void protect_dialog::choose(int control_id) {
    CheckRadioButton(window(), IDC_PROTECT_THIS, IDC_PROTECT_OTHER, control_id);
    const BOOL other = control_id == IDC_PROTECT_OTHER ? TRUE : FALSE;
    EnableWindow(control(IDC_PROTECT_LABEL), other);
    EnableWindow(control(IDC_PROTECT_OBJECT), other);
    check();
}

/// What is typed is looked at when the hand rests. Until then it counts as good, so that Enter is not lost on
/// who types fast: `accept` looks again.
void protect_dialog::on_edited() {
    if (!other_is_chosen()) {
        choose(IDC_PROTECT_OTHER);
    }
    EnableWindow(control(IDOK), TRUE);
    SetTimer(window(), check_timer, pause_in_typing_ms, nullptr);
}

void protect_dialog::browse() {
    const std::wstring typed = typed_path();
    const bool from_typed = other_is_chosen() && !typed.empty();
    const auto chosen =
        choose_folder(window(), texts().text(numbers::chooser_title), from_typed ? typed : folder_);
    if (!chosen) {
        choose(IDC_PROTECT_OTHER);
        return say(texts().text(numbers::chooser_refused));
    }
    if (!chosen->empty()) {
        SetWindowTextW(control(IDC_PROTECT_OBJECT), chosen->c_str());
        check();
    }
}

std::wstring protect_dialog::words_for(path_problem problem) const {
    const auto* const found = std::ranges::find(problem_texts, problem, &problem_text::problem);
    return found == problem_texts.end()
               ? std::wstring()
               : texts().text(found->number, std::to_wstring(longest_object_path_chars));
}

bool protect_dialog::check() {
    KillTimer(window(), check_timer);
    const path_problem problem = other_is_chosen() ? problem_of(typed_path(), longest_object_path_chars)
                                                   : problem_of(tidy_path(folder_), longest_folder_chars);
    const bool is_usable = problem == path_problem::none;
    if (!is_usable && GetFocus() == control(IDOK)) {
        focus(other_is_chosen() ? IDC_PROTECT_OBJECT : IDC_PROTECT_THIS);
    }
    EnableWindow(control(IDOK), is_usable ? TRUE : FALSE);
    say(words_for(problem));
    return is_usable;
}

void protect_dialog::say(const std::wstring& problem) {
    const HWND said = control(IDC_PROTECT_PROBLEM);
    if (text_of(said) != problem) {
        SetWindowTextW(said, problem.c_str());
        // Screen readers read it out: the focus is elsewhere.
        NotifyWinEvent(EVENT_SYSTEM_ALERT, said, OBJID_CLIENT, CHILDID_SELF);
    }
}

void protect_dialog::accept() {
    if (!check()) {
        return;
    }
    const std::wstring path = other_is_chosen() ? typed_path() : std::wstring();
    object_path_ = is_same_path(path, tidy_path(folder_)) ? std::wstring() : path;
    end(IDOK);
}

SIZE protect_dialog::least_size() const {
    placing nothing;
    return put_all(nothing);
}

void protect_dialog::lay_out(placing& controls, SIZE /*client*/) const {
    put_all(controls);
}

SIZE protect_dialog::put_all(placing& controls) const {
    const dialog_metrics& to = metrics();
    const int width = inner_width();
    stack rows(controls, {to.across(7), to.down(7)}, width);
    const int line = static_cast<int>(to.size_of(L"x").cy);
    const int field = to.down(14);

    rows.add(IDC_PROTECT_FOLDER_LABEL, line);
    rows.gap(to.down(2));
    rows.add(IDC_PROTECT_FOLDER, line + to.down(2));
    rows.gap(to.down(7));
    rows.add(IDC_PROTECT_ABOUT, to.height_of(texts().text(numbers::about_protection), width));
    rows.gap(to.down(7));
    if (is_protected_) {
        rows.add(IDC_PROTECT_NOTE, to.height_of(note(), width));
        rows.gap(to.down(7));
    }
    rows.add(IDC_PROTECT_THIS, std::max(line, to.down(10)));
    rows.gap(to.down(2));
    rows.add(IDC_PROTECT_OTHER, std::max(line, to.down(10)));
    rows.gap(to.down(3));

    const int browse_width = to.button_width(texts().text(numbers::browse));
    rows.indent(to.across(12));
    rows.add(IDC_PROTECT_LABEL, line);
    rows.gap(to.down(2));
    rows.add_beside(IDC_PROTECT_OBJECT, IDC_PROTECT_BROWSE, browse_width, to.across(4), field);
    rows.gap(to.down(4));
    rows.add(IDC_PROTECT_PROBLEM, problem_height(rows.width()));
    rows.indent(-to.across(12));
    rows.gap(to.down(7));

    const int cancel_width = to.button_width(texts().text(numbers::cancel));
    const int protect_width = to.button_width(texts().text(numbers::protect));
    rows.add_at_end({{IDOK, protect_width}, {IDCANCEL, cancel_width}}, to.across(4), field);
    return {width + 2 * to.across(7), rows.bottom() + to.down(7)};
}

/// Wide enough for a sentence, and for every text that stands in one line.
int protect_dialog::inner_width() const {
    const int mark = metrics().across(14);
    return std::max(
        {metrics().across(270),
         static_cast<int>(metrics().size_of(texts().text(numbers::protect_this_folder)).cx) + mark,
         static_cast<int>(metrics().size_of(texts().text(numbers::protect_other_path)).cx) + mark});
}

/// As much as the longest needs, so that nothing moves when one is said.
int protect_dialog::problem_height(int width) const {
    int highest = metrics().height_of(texts().text(numbers::chooser_refused), width);
    for (const problem_text& said : problem_texts) {
        highest = std::max(highest, metrics().height_of(words_for(said.problem), width));
    }
    return highest;
}

std::wstring protect_dialog::note() const {
    const std::wstring item = without_mnemonic(texts().text(i18n::message_ids::menu_unprotect));
    return texts().text(numbers::already_protected, item);
}

}  // namespace ov::dialog
