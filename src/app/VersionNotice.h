#pragma once

#include "commands/VersionCheck.h"

#include <QPointer>

namespace quillory {

class DocumentController;
class DocumentWindow;
struct DocumentEnvironment;

/// Tells of new versions of the program: a while after a start and once a day at most, while the
/// user wants that and gave the address of a version list, and when asked. What goes wrong is told
/// only when asked.
class VersionNotice : public QObject
{
    Q_OBJECT

public:
    VersionNotice(DocumentController& controller, const DocumentEnvironment& environment);

    /// Looks now, if it is wanted and due.
    void checkIfDue();
    /// Looks now, and tells in \a window what came of it.
    void checkNow(DocumentWindow& window);

private:
    void take(const std::optional<PublishedVersion>& newer);
    void show(const PublishedVersion& newer, DocumentWindow& window);
    DocumentWindow* endQuestion();
    void hide();

    DocumentController& m_controller;
    const DocumentEnvironment& m_environment;
    VersionCheck m_check;
    QPointer<DocumentWindow> m_asker; ///< null while nobody asked
    QPointer<DocumentWindow> m_shown; ///< where a new version is told of
    bool m_wasAsked = false;
};

} // namespace quillory
