#pragma once

#include <QString>

namespace quillory {

class DocumentWindow;
struct EncodingFailure;
struct SaveResult;

// What a window's messages say, and the ways out that they offer.

/// What the user must know before the first save: an encoding that was not recognised, mixed line
/// breaks, bytes that saving would not write as they were.
void showStateMessages(DocumentWindow& window);

/// Says again what saving does to mixed line breaks, after another form of them was chosen.
void updateLineBreaksMessage(DocumentWindow& window);

void showSaveProblem(DocumentWindow& window, const SaveResult& result);
/// Reading the file again failed; \a undecodable: another encoding may help.
void showReadProblem(DocumentWindow& window, const QString& text, bool undecodable);

/// Says in one line which definition is at fault, and in which key; nothing where none is.
void showDefinitionFaults(DocumentWindow& window);

/// The encoding just chosen lacks a character of the text.
void showUnencodable(DocumentWindow& window, const EncodingFailure& failure);

} // namespace quillory
