#include "ovufc/json_bounded.h"

#include <string>
#include <utility>

#include "ovufc/owned_json.h"

namespace ov {
namespace {

/// The library's own builder with a count of open levels. The parser is a template over its handler and calls
/// these members by name, so hiding the builder's is enough.
///
/// The library's own way to look at a text while it is parsed, a callback, can leave values out but not stop:
/// too deep a text would come out as another document and not be refused, unless the callback throws, which
/// expected failures must not (JsonBounded, and ExpectedFailures in tests/unit/service). Checking the
/// depth after parsing would be too late: by then the text has taken memory for each of its levels, and a
/// deep value overflows the stack when it is copied or written.
class bounded_builder : public detail::json_sax_dom_parser<json> {
    using base = detail::json_sax_dom_parser<json>;

  public:
    bounded_builder(json& root, bool throws) : base(root, throws), throws_(throws) {}

    bool start_object(std::size_t elements) { return enter() && base::start_object(elements); }
    bool end_object() { return leave() && base::end_object(); }
    bool start_array(std::size_t elements) { return enter() && base::start_array(elements); }
    bool end_array() { return leave() && base::end_array(); }

  private:
    bool enter() {
        if (depth_ == json_depth_limit) {
            if (throws_) {
                throw json::parse_error::create(unexpected_input, 0, "the text is nested too deeply",
                                                nullptr);
            }
            return false;
        }
        ++depth_;
        return true;
    }

    bool leave() noexcept {
        --depth_;
        return true;
    }

    // The library's number for input that its parser does not take.
    static constexpr int unexpected_input = 101;

    std::size_t depth_ = 0;
    bool throws_;
};

json parse(std::string_view text, bool throws) {
    owned_json built{json()};
    bounded_builder builder(built.value, throws);
    if (!json::sax_parse(text.begin(), text.end(), &builder)) {
        return json(json::value_t::discarded);
    }
    return std::move(built.value);
}

}  // namespace

json parse_bounded(std::string_view text) {
    return parse(text, false);
}

json parse_bounded_or_throw(std::string_view text) {
    return parse(text, true);
}

}  // namespace ov
