#include "SampleText.h"

#include <random>

namespace quillory::bench {

namespace {

constexpr unsigned seed = 20261121;
constexpr const char* words[] = {"the",    "quick", "brown",    "fox",     "jumps",
                                 "over",   "lazy",  "int",      "const",   "auto",
                                 "return", "value", "compute(", "result);"};
constexpr const char* foreign[] = {"größe", "été", "привет", "日本語", "—", "naïve"};

QByteArray lines(qsizetype size, bool mixed)
{
    std::minstd_rand random(seed);
    QByteArray text;
    text.reserve(size + 200);
    while (text.size() < size) {
        for (auto count = random() % 14; count > 0; --count)
            text.append(words[random() % std::size(words)]).append(' ');
        if (mixed)
            text.append(foreign[random() % std::size(foreign)]);
        text.append('\n');
    }
    return text;
}

} // namespace

QByteArray sampleText(qsizetype size)
{
    return lines(size, false);
}

QByteArray mixedText(qsizetype size)
{
    return lines(size, true);
}

} // namespace quillory::bench
