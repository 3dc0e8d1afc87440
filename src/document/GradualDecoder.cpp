#include "document/GradualDecoder.h"

#include <thread>

namespace quillory {

namespace {

constexpr unsigned mostUnderway = 4; ///< parts; more bytes than that come from no disk meanwhile

} // namespace

GradualDecoder::GradualDecoder(StringEncoding encoding, const ByteLayout& layout, TextSnapshot text,
                               qsizetype used, ByteUse use)
    : m_encoding(decodesInParts(encoding) ? encoding : StringEncoding::none), m_layout(layout),
      m_use(use), m_text(std::move(text)), m_handedOut(used)
{}

void GradualDecoder::take(const ByteBuffer& bytes, bool atEnd)
{
    if (m_encoding == StringEncoding::none || !m_valid)
        return;
    const QByteArrayView fresh = bytes.view().sliced(m_handedOut);
    const QByteArrayView part = atEnd ? fresh : fresh.first(wholeCharacters(fresh, m_encoding));
    m_handedOut += part.size();
    if (!part.isEmpty())
        m_underway.push_back(std::async(std::launch::async, [this, bytes, part] {
            return decodePart(bytes, part, m_encoding, m_layout, m_use);
        }));
    collect(std::clamp(std::thread::hardware_concurrency(), 1U, mostUnderway));
}

/// Puts what is decoded behind the text, until at most \a most parts are under way.
void GradualDecoder::collect(size_t most)
{
    using namespace std::chrono_literals;
    while (!m_underway.empty() && (m_underway.size() > most ||
                                   m_underway.front().wait_for(0s) == std::future_status::ready)) {
        const std::optional<TextSnapshot> part = m_underway.front().get();
        m_underway.pop_front();
        m_valid = m_valid && part;
        if (m_valid)
            m_text = m_text.replacing({m_text.length(), 0}, *part);
    }
}

KnownText GradualDecoder::finish()
{
    collect(0);
    return {m_encoding, m_valid ? std::optional(m_text) : std::nullopt};
}

} // namespace quillory
