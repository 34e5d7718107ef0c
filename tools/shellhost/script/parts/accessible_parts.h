#pragma once

#include <windows.h>
#include <oleacc.h>
#include <wrl/client.h>

#include <functional>

#include "tools/shellhost/script/parts/shown_parts.h"

namespace ov::shellhost {

/// One element of a window as Microsoft Active Accessibility tells of it: an object, or a number below one.
struct accessible_element {
    Microsoft::WRL::ComPtr<IAccessible> object;
    LONG child = CHILDID_SELF;

    [[nodiscard]] long role() const;
    [[nodiscard]] std::wstring name() const;
    /// For a node of a tree its depth, in digits.
    [[nodiscard]] std::wstring value() const;
    [[nodiscard]] long state() const;
    /// On the screen; empty for what is not shown.
    [[nodiscard]] RECT place() const;
    [[nodiscard]] HRESULT do_default_action() const;
};

/// The window's element and all below it, parents first, until `visit` returns true.
void visit_accessible(HWND window, const std::function<bool(const accessible_element&)>& visit);

/// The parts of Windows' browser, by role and name.
class accessible_parts final : public shown_parts {
  public:
    explicit accessible_parts(HWND browser) noexcept : browser_(browser) {}

    [[nodiscard]] std::vector<pane_node> nodes() const override;
    [[nodiscard]] bool expand(const std::wstring& node) const override;
    [[nodiscard]] std::optional<RECT> place_of_item(const std::wstring& name, int index) const override;

  private:
    HWND browser_;
};

}  // namespace ov::shellhost
