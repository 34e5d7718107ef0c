#pragma once

#include <windows.h>
#include <msi.h>
#include <msiquery.h>

#include <string>
#include <vector>

namespace ov::setup {

/// A run of the installer, as an action of ours sees it. The handle stays the installer's.
class session {
  public:
    explicit session(MSIHANDLE handle) noexcept : handle_(handle) {}

    /// The value of a property; empty when it has none.
    [[nodiscard]] std::wstring property(const wchar_t* name) const;
    [[nodiscard]] bool set_property(const wchar_t* name, const std::wstring& value) const;
    /// A line in the installer's log.
    void log(const std::wstring& text) const;
    /// The run ends with "success, restart needed"; for actions behind the last deferred one.
    void ask_for_restart() const;

  private:
    MSIHANDLE handle_;
};

/// The parts of `text` between the bars.
[[nodiscard]] std::vector<std::wstring> split(const std::wstring& text);

}  // namespace ov::setup
