#pragma once

#include "app/Popover.h"

class QCheckBox;
class QComboBox;

namespace quillory {

class Document;
struct DocumentEnvironment;

/// Shows and changes the form in which a document is saved. Lies over the lower right corner of
/// its window.
class SettingsPopover : public Popover
{
    Q_OBJECT

public:
    enum class Reason
    {
        Asked,      ///< by the user: takes the keyboard
        NewDocument ///< leaves the keyboard to the text, and can be asked not to come again
    };

    SettingsPopover(Document& document, const DocumentEnvironment& environment, QWidget* window);

    void open(Reason reason);

Q_SIGNALS:
    /// The user chose the encoding that the document now has.
    void encodingChosen();

protected:
    void place() override;

private:
    void build();
    void showRecord();
    void chooseLanguage(int index);
    void chooseEncoding(int index);
    void chooseLineBreaks(int index);

    Document& m_document;
    const DocumentEnvironment& m_environment;
    QComboBox* m_language = nullptr;
    QComboBox* m_encoding = nullptr;
    QComboBox* m_lineBreaks = nullptr;
    QCheckBox* m_mark = nullptr;
    QCheckBox* m_dontAsk = nullptr;
};

} // namespace quillory
