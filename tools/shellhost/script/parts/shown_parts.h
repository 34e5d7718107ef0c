#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace ov::shellhost {

/// A node of the navigation pane.
struct pane_node {
    unsigned depth = 0;
    std::wstring text;
    bool is_selected = false;
    /// On the screen; empty for a node that is scrolled out of sight.
    RECT place{};
};

/// What a script points at in the browser's window: the parts that are the system's own, and that no shell
/// interface tells the places of.
class shown_parts {
  public:
    virtual ~shown_parts() = default;

    /// The nodes that are shown or could be scrolled to, from top to bottom.
    [[nodiscard]] virtual std::vector<pane_node> nodes() const = 0;
    /// Opens the first node of that text. False when there is none.
    [[nodiscard]] virtual bool expand(const std::wstring& node) const = 0;
    /// Where an item of the view, which is scrolled into sight, shows its name; `index` is its place in the
    /// view.
    [[nodiscard]] virtual std::optional<RECT> place_of_item(const std::wstring& name, int index) const = 0;
};

}  // namespace ov::shellhost
