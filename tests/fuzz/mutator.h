#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ov::test {

/// Makes broken texts out of good ones, the same ones for the same seed: bytes flipped, put in and taken out,
/// words of the format put in, pieces doubled, exchanged with other texts and cut off.
class mutator {
  public:
    /// `words` are put in now and then: what a parser might trip over.
    mutator(std::uint64_t seed, std::vector<std::string> texts, std::vector<std::string> words);

    /// The next text: one of the good ones after one to eight changes.
    [[nodiscard]] std::string next();
    /// A number below `bound`, for choices that go with the text.
    [[nodiscard]] std::size_t below(std::size_t bound);

  private:
    void change(std::string& text);

    std::uint64_t state_;
    std::vector<std::string> texts_;
    std::vector<std::string> words_;
};

}  // namespace ov::test
