#include "tests/fuzz/mutator.h"

#include <algorithm>
#include <utility>

namespace ov::test {
namespace {

constexpr std::size_t most_changes = 8;
constexpr std::size_t longest_piece = 16;

}  // namespace

mutator::mutator(std::uint64_t seed, std::vector<std::string> texts, std::vector<std::string> words)
    : state_(seed), texts_(std::move(texts)), words_(std::move(words)) {}

std::string mutator::next() {
    std::string text = texts_[below(texts_.size())];
    for (std::size_t changes = 1 + below(most_changes); changes != 0; --changes) {
        change(text);
    }
    return text;
}

// Steele and Vigna's splitmix64: one word of state, every seed as good as another.
std::size_t mutator::below(std::size_t bound) {
    state_ += 0x9E3779B97F4A7C15;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
    return static_cast<std::size_t>((mixed ^ (mixed >> 31)) % bound);
}

void mutator::change(std::string& text) {
    const std::size_t at = below(text.size() + 1);
    const std::size_t length = 1 + below(longest_piece);
    switch (below(7)) {
        case 0:
            if (at < text.size()) {
                text[at] = static_cast<char>(text[at] ^ (1 << below(8)));
            }
            break;
        case 1:
            text.insert(at, 1, static_cast<char>(below(256)));
            break;
        case 2:
            text.erase(at, length);
            break;
        case 3:
            text.insert(at, words_[below(words_.size())]);
            break;
        case 4:
            text.insert(below(text.size() + 1), text.substr(at, length));
            break;
        case 5: {
            const std::string& other = texts_[below(texts_.size())];
            text.replace(at, length, other.substr(below(other.size() + 1), length));
            break;
        }
        default:
            text.resize(std::max(at, text.size() / 2));
            break;
    }
}

}  // namespace ov::test
