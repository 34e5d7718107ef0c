#include <array>
#include <exception>
#include <string>

#include "module/registration/registration.h"
#include "module/registration/registration_table.h"
#include "module/registration/shell_notice.h"
#include "module/state/module_state.h"
#include "ovufc/win/reg_key.h"
#include "res/resource_ids.h"

namespace ov::registration {

namespace {

// The longest module path that is taken, in characters; a longer one is cut.
constexpr DWORD path_limit_chars = MAX_PATH;

struct module_texts {
    std::wstring module_path;
    std::wstring icon_location;
};

// An empty path: the system could not say where the module is.
module_texts read_module_texts() {
    std::array<wchar_t, path_limit_chars> path{};
    if (GetModuleFileNameW(module_state::module_instance, path.data(), path_limit_chars) == 0) {
        return {};
    }
    path.back() = L'\0';
    // A minus sign: a resource number, not a position.
    return {path.data(), std::wstring(path.data()) + L", " + std::to_wstring(-IDI_ORVANE)};
}

/// Writes rows in one view of the registry. Holds the key of the row before, for the rows that go on with it.
class row_writer {
  public:
    row_writer(const module_texts& texts, std::uint32_t view) : texts_(texts), view_(view) {}

    void write(const registration_row& row) {
        if (row.root == root_key::classes_root) {
            write_to(classes_root_, row);
        } else {
            write_to(local_machine_, row);
        }
    }

    void close() noexcept {
        classes_root_.close();
        local_machine_.close();
    }

  private:
    template <class RootKey>
    void write_to(RootKey& key, const registration_row& row) {
        const bool as_server_32 = view_ == win::reg_view::bits_32 && row.pass_2 == second_pass::server_32;
        const bool is_default_text =
            row.value_name[0] == L'\0' && row.kind != data::none && row.kind != data::number;
        const bool with_default = row.use == key_use::create && is_default_text && !as_server_32;

        if (row.use == key_use::create) {
            key.create(row.path, view_, with_default ? text_of(row) : std::wstring());
        } else if (row.use == key_use::reopen) {
            key.open(row.path, view_, false);
        }

        if (as_server_32) {
            key.set_text({}, REG_EXPAND_SZ, server_32_path);
        } else if (row.kind == data::number) {
            key.set_dword(row.value_name, row.number);
        } else if (row.kind != data::none && !with_default) {
            key.set_text(row.value_name, REG_SZ, text_of(row));
        }
    }

    [[nodiscard]] std::wstring text_of(const registration_row& row) const {
        switch (row.kind) {
            case data::module_path:
                return texts_.module_path;
            case data::icon_location:
                return texts_.icon_location;
            default:
                return row.text;
        }
    }

    const module_texts& texts_;
    std::uint32_t view_;
    win::classes_root_key classes_root_;
    win::local_machine_key local_machine_;
};

void write_pass(const module_texts& texts, std::uint32_t view) {
    row_writer writer(texts, view);
    const auto rows = registration_rows();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (view == win::reg_view::bits_32 && rows[i].pass_2 == second_pass::left_out) {
            continue;
        }
        writer.write(rows[i]);
        const bool next_goes_on = i + 1 < rows.size() && rows[i + 1].use == key_use::same;
        if (!next_goes_on) {
            writer.close();
        }
    }
}

}  // namespace

HRESULT register_server() noexcept {
    try {
        const module_texts texts = read_module_texts();
        if (!texts.module_path.empty()) {
            write_pass(texts, win::reg_view::native);
            write_pass(texts, win::reg_view::bits_32);
            notify_desktop_changed();
            return S_OK;
        }
    } catch (const std::exception&) {
        // Undone below: a half-registered module would be worse than none.
    }
    (void)unregister_server();
    return E_UNEXPECTED;
}

}  // namespace ov::registration
