#pragma once

#include "text/StringEncoding.h"

#include <QLocale>
#include <vector>

namespace quillory {

/// The encodings that web pages in the language of \a locale are in, the commonest first; UTF-8 and
/// Windows Latin 1 are among them everywhere. What browsers fall back to by locale is in the HTML
/// standard, 13.2.3.2, and the encodings that were used beside them before are the registered ones.
std::vector<StringEncoding> webTextEncodings(const QLocale& locale);

} // namespace quillory
