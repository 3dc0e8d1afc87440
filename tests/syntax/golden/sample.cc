// A small expression evaluator, with what makes C++ hard to colour: "strings", 'x' and
// apostrophes in comments don't count.
#pragma once

#include <algorithm>
#include <concepts>
#include<cstdint>
#include <map>
#include "Expression.h"

namespace quillory::samples {

using namespace std::string_literals;
using Number = double;
template <typename T> using Table = std::unordered_map<std::string, std::vector<T>>;

inline constexpr auto pattern = R"(^\s*"([^"\\]|\\.)*"\s*$)";
inline constexpr auto page = R"html(
<p class="note">It's a "page" // with what looks like a comment</p>
)html";
inline constexpr char marks[] = {'"', '\'', '\\', '\n', '\x7f', u8'a', '/', '*'};
inline const auto wide = L"wide \"text\"!", *url = u8"http://example.org/a//b";
inline constexpr std::uint64_t big = 0xFFFF'FFFFull, binary = 0b1010'1010, million = 1'000'000;
inline constexpr double small = 1.5e-3, half = .5f, exact = 0x1.8p3;

enum class Kind : std::uint8_t { number, name, plus = 1 << 2, minus };

struct Token
{
    Kind kind{Kind::number};
    std::string_view text;
    friend auto operator<=>(const Token&, const Token&) = default;
};

template <class F>
concept Visitor = requires(F visit, const Token& token) {
    { visit(token) } -> std::convertible_to<bool>;
};

class [[nodiscard]] Reader final : public Base<Token, std::pair<int, std::less<>>>
{
public:
    explicit Reader(std::string_view text) noexcept : m_text(text), m_at{0} {}
    ~Reader() override { flush(); }
    Reader(const Reader&) = delete;
    Reader& operator=(Reader&&) noexcept = default;

    std::optional<Token> next();
    bool atEnd() const noexcept { return m_at >= m_text.size(); }
    operator bool() const { return !atEnd(); }
    char operator[](size_t i) const { return m_text[i]; }
    Token operator()() { return next().value_or(Token{}); }

    template <Visitor F>
    void forEach(F&& visit)
    {
        while (auto token = next())
            if (!std::invoke(std::forward<F>(visit), *token))
                break;
    }

private:
    std::string_view m_text;
    size_t m_at = std::string_view::npos;
    mutable std::shared_mutex m_lock;
};

std::optional<Token> Reader::next()
{
    if (atEnd())
        return std::nullopt;
    const auto isSpace = [](char c) { return c == ' ' || c == '\t'; };
    while (m_at < m_text.size() && isSpace(m_text[m_at]))
        ++m_at;
    switch (m_text[m_at]) {
    case '+': return Token{Kind::plus, m_text.substr(m_at++, 1)};
    case '-':
        [[fallthrough]];
    default: break;
    }
    const size_t first = m_at;
    m_at = std::min(m_text.find_first_of(" +-", first), m_text.size());
    return Token{Kind::name, m_text.substr(first, m_at - first)};
}

template <typename T, std::size_t N = 16>
auto evaluate(const Table<T>& table, std::span<const Token, N> tokens)
    -> std::expected<Number, std::string>
{
    Number sum = 0;
    for (const auto& [kind, text] : tokens) {
        if (kind != Kind::name)
            continue;
        const auto found = table.find(std::string(text));
        if (found == table.end())
            return std::unexpected("no value for "s + std::string(text));
        sum += std::accumulate(found->second.begin(), found->second.end(), Number{});
    }
    return sum;
}

bool operator==(const Reader& a, const Reader& b)
{
    return &a == &b;
}

int run(int argc, char** argv) try {
    auto reader = std::make_unique<Reader>(argc > 1 ? argv[1] : "a + b");
    reader->forEach([](const Token& token) -> bool {
        std::cout << std::format("{:>8} '{}'\n", int(token.kind), token.text);
        return true;
    });
    return EXIT_SUCCESS;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return EXIT_FAILURE;
}

#ifdef __cpp_lib_format
static_assert(std::is_same_v<decltype(small), const double>, "it's a double");
#endif

} // namespace quillory::samples
