#include "tools/shellhost/script/parts/accessible_parts.h"

#include <oleauto.h>

#include <cwchar>

namespace ov::shellhost {

using Microsoft::WRL::ComPtr;

namespace {

constexpr unsigned deepest = 24;

VARIANT number(LONG value) noexcept {
    VARIANT made;
    VariantInit(&made);
    made.vt = VT_I4;
    made.lVal = value;
    return made;
}

LONG number_in(VARIANT& value) noexcept {
    const LONG read = value.vt == VT_I4 ? value.lVal : 0;
    VariantClear(&value);
    return read;
}

std::wstring text_in(BSTR text) {
    const std::wstring read(text != nullptr ? text : L"", SysStringLen(text));
    SysFreeString(text);
    return read;
}

HWND window_of(IAccessible* object) noexcept {
    HWND window = nullptr;
    (void)WindowFromAccessibleObject(object, &window);
    return window;
}

/// What a window shows, without its frame.
ComPtr<IAccessible> client_of(HWND window) noexcept {
    ComPtr<IAccessible> client;
    (void)AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                     reinterpret_cast<void**>(client.GetAddressOf()));
    return client;
}

/// A child that is an object of its own; for a window its client.
accessible_element child_object(IDispatch* found, HWND parent) noexcept {
    accessible_element child;
    (void)found->QueryInterface(IID_PPV_ARGS(child.object.GetAddressOf()));
    const HWND window = child.object != nullptr ? window_of(child.object.Get()) : nullptr;
    if (window != nullptr && window != parent) {
        child.object = client_of(window);
    }
    return child;
}

std::vector<accessible_element> children_of(const accessible_element& parent) {
    std::vector<accessible_element> children;
    long count = 0;
    if (parent.child != CHILDID_SELF || FAILED(parent.object->get_accChildCount(&count)) || count <= 0) {
        return children;
    }
    std::vector<VARIANT> found(static_cast<std::size_t>(count));
    long given = 0;
    (void)AccessibleChildren(parent.object.Get(), 0, count, found.data(), &given);
    const HWND window = window_of(parent.object.Get());
    for (VARIANT& each : found) {
        accessible_element child;
        if (each.vt == VT_I4) {
            child = {parent.object, each.lVal};
        } else if (each.vt == VT_DISPATCH && each.pdispVal != nullptr) {
            child = child_object(each.pdispVal, window);
        }
        if (child.object != nullptr) {
            children.push_back(std::move(child));
        }
        VariantClear(&each);
    }
    return children;
}

bool visit_below(const accessible_element& element, unsigned depth,
                 const std::function<bool(const accessible_element&)>& visit) {
    if (visit(element)) {
        return true;
    }
    if (depth < deepest) {
        for (const accessible_element& child : children_of(element)) {
            if (visit_below(child, depth + 1, visit)) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

long accessible_element::role() const {
    VARIANT value;
    VariantInit(&value);
    (void)object->get_accRole(number(child), &value);
    return number_in(value);
}

std::wstring accessible_element::name() const {
    BSTR text = nullptr;
    (void)object->get_accName(number(child), &text);
    return text_in(text);
}

std::wstring accessible_element::value() const {
    BSTR text = nullptr;
    (void)object->get_accValue(number(child), &text);
    return text_in(text);
}

long accessible_element::state() const {
    VARIANT value;
    VariantInit(&value);
    (void)object->get_accState(number(child), &value);
    return number_in(value);
}

RECT accessible_element::place() const {
    long left = 0;
    long top = 0;
    long width = 0;
    long height = 0;
    const bool is_shown = (state() & (STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN)) == 0;
    if (!is_shown || FAILED(object->accLocation(&left, &top, &width, &height, number(child)))) {
        return {};
    }
    return {left, top, left + width, top + height};
}

HRESULT accessible_element::do_default_action() const {
    return object->accDoDefaultAction(number(child));
}

void visit_accessible(HWND window, const std::function<bool(const accessible_element&)>& visit) {
    const accessible_element root{client_of(window)};
    if (root.object != nullptr) {
        (void)visit_below(root, 0, visit);
    }
}

std::vector<pane_node> accessible_parts::nodes() const {
    std::vector<pane_node> nodes;
    visit_accessible(browser_, [&](const accessible_element& element) {
        if (element.role() == ROLE_SYSTEM_OUTLINEITEM) {
            const unsigned long depth = std::wcstoul(element.value().c_str(), nullptr, 10);
            nodes.push_back({static_cast<unsigned>(depth), element.name(),
                             (element.state() & STATE_SYSTEM_SELECTED) != 0, element.place()});
        }
        return false;
    });
    return nodes;
}

bool accessible_parts::expand(const std::wstring& node) const {
    bool is_found = false;
    visit_accessible(browser_, [&](const accessible_element& element) {
        is_found = element.role() == ROLE_SYSTEM_OUTLINEITEM && element.name() == node;
        // A node that is open would be closed by its default action.
        if (is_found && (element.state() & STATE_SYSTEM_COLLAPSED) != 0) {
            (void)element.do_default_action();
        }
        return is_found;
    });
    return is_found;
}

std::optional<RECT> accessible_parts::place_of_item(const std::wstring& name, int /*index*/) const {
    std::optional<RECT> place;
    visit_accessible(browser_, [&](const accessible_element& element) {
        if (element.role() == ROLE_SYSTEM_LISTITEM && element.name() == name) {
            place = element.place();
        }
        return place.has_value();
    });
    return place;
}

}  // namespace ov::shellhost
