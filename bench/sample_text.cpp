// sample_text SIZE [mixed|line|marks]: prints about SIZE bytes of sample text, the same ones at
// every run; with "line" all of them in one line, with "marks" a letter and combining marks only.

#include "SampleText.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

int main(int argc, char** argv)
{
    const qsizetype size = argc > 1 ? std::atoll(argv[1]) : 0;
    const char* kind = argc > 2 ? argv[2] : "";
    QByteArray text;
    if (std::strcmp(kind, "mixed") == 0)
        text = quillory::bench::mixedText(size);
    else if (std::strcmp(kind, "marks") == 0)
        text = QByteArray("\u0301").repeated(size / 2).prepend('e');
    else
        text = quillory::bench::sampleText(size);
    if (std::strcmp(kind, "line") == 0)
        text.replace('\n', ' ');
    return std::fwrite(text.constData(), 1, size_t(text.size()), stdout) == size_t(text.size()) ? 0
                                                                                                : 1;
}
