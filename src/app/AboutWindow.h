#pragma once

#include <QDialog>

namespace quillory {

class DocumentWindow;

/// What this program is: its version, its licence, its guides, and what it runs on, to be copied
/// into a report of a problem.
class AboutWindow : public QDialog
{
    Q_OBJECT

public:
    explicit AboutWindow(DocumentWindow& window);

    /// The versions of the program and of what it runs on, a line each.
    static QString details();
};

} // namespace quillory
