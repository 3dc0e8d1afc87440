#pragma once

#include "text/CharacterSet.h"

#include <QSet>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

namespace quillory {

class ICUPattern;

/// What colouring a document reads on every pass, made from its definition by prepareColoring.
/// Where a definition lacks a key, some fields keep what the definition before it had put there.
struct ColouringState
{
    using Words = QSet<QString>;

    Words keywords;
    Words values;
    Words main;
    Words ns;
    Words statements;
    Words types;
    Words enums;
    Words conts; ///< never filled
    Words functs;
    Words simple;
    Words autocompleteWords;

    /// Every word of every list once, by UTF-16 code units.
    QStringList autocompletionArray;

    bool keywordsCaseSensitive = false;
    bool shouldBeRecolered = false;
    bool colorNumbers = false;

    // Delimiters; empty where there is none.
    QString beginCommand;
    QString endCommand;
    QString beginInstruction;
    QString endInstruction;
    QString firstString;
    QString secondString;
    QString firstSingleLineComment;
    QString secondSingleLineComment;
    QString beginFirstMultiLineComment;
    QString endFirstMultiLineComment;
    QString beginSecondMultiLineComment;
    QString endSecondMultiLineComment;
    char16_t firstStringUnichar = 0;
    char16_t secondStringUnichar = 0;

    std::optional<CharacterSet> beginVariable; ///< none until a definition has had one
    CharacterSet endVariable;
    CharacterSet letterCharacterSet;
    CharacterSet keywordStartCharacterSet;
    CharacterSet keywordEndCharacterSet;
    CharacterSet attributesCharacterSet;

    QString functionDefinition;
    QString ignoreAsAFunctionComponent;

    /// Find a literal and the one character before it; null where the pattern did not compile.
    std::shared_ptr<ICUPattern> firstStringPattern;
    std::shared_ptr<ICUPattern> secondStringPattern;

    /// Which of the three kinds of string pattern the two were made from.
    bool colourMultiLineStrings = false;
};

} // namespace quillory
