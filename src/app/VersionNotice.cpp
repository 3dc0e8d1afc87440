#include "app/VersionNotice.h"

#include "app/DocumentController.h"
#include "app/MessageArea.h"
#include "app/StatusLine.h"
#include "app/UserQuestions.h"
#include "document/DocumentEnvironment.h"
#include "foundation/ApplicationFolders.h"
#include "foundation/UserDefaults.h"

#include <QDateTime>
#include <QDesktopServices>
#include <QLocale>

namespace quillory {

namespace {

constexpr qint64 aDay = qint64(24) * 60 * 60; ///< seconds

QString activity()
{
    return VersionNotice::tr("Looking for a new version…");
}

} // namespace

VersionNotice::VersionNotice(DocumentController& controller, const DocumentEnvironment& environment)
    : m_controller(controller), m_environment(environment),
      m_check(environment.folders.plugins, QStringLiteral(QUILLORY_VERSION))
{
    connect(&m_check, &VersionCheck::answered, this, &VersionNotice::take);
    connect(&m_check, &VersionCheck::failed, this, [this](const QString& description) {
        if (DocumentWindow* asker = endQuestion())
            asker->questions().showAlert(asker, tr("Error!"), description);
    });
}

void VersionNotice::checkIfDue()
{
    UserDefaults& defaults = m_environment.defaults;
    const QString address = defaults.value(keys::versionListAddress).trimmed();
    if (!defaults.value(keys::checksForVersions) || address.isEmpty() || m_check.isRunning())
        return;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QDateTime last =
        QDateTime::fromString(defaults.value(keys::lastVersionCheck), Qt::ISODate);
    // A clock that was put back does not stop it for long.
    if (last.isValid() && last <= now && last.secsTo(now) < aDay)
        return;
    defaults.setValue(keys::lastVersionCheck, now.toString(Qt::ISODate));
    m_check.check(address);
}

void VersionNotice::checkNow(DocumentWindow& window)
{
    endQuestion();
    m_asker = &window;
    m_wasAsked = true;
    window.statusLine().setActivity(activity());
    m_check.check(m_environment.defaults.value(keys::versionListAddress));
}

/// Who asked, if it is still there.
DocumentWindow* VersionNotice::endQuestion()
{
    DocumentWindow* asker = m_asker;
    if (asker && asker->statusLine().activityText() == activity())
        asker->statusLine().setActivity({});
    m_asker = nullptr;
    m_wasAsked = false;
    return asker;
}

void VersionNotice::take(const std::optional<PublishedVersion>& newer)
{
    const bool wasAsked = m_wasAsked;
    DocumentWindow* asker = endQuestion();
    if (newer &&
        (wasAsked || m_environment.defaults.value(keys::skippedVersion) != newer->version)) {
        if (asker)
            show(*newer, *asker);
        else if (!m_controller.windows().empty())
            show(*newer, *m_controller.windows().front());
    } else if (!newer && asker) {
        asker->questions().showAlert(asker, tr("No New Version"),
                                     tr("This is Quillory %1; the version list has nothing newer.")
                                         .arg(QLatin1StringView(QUILLORY_VERSION)));
    }
}

void VersionNotice::show(const PublishedVersion& newer, DocumentWindow& window)
{
    const QString name =
        newer.date.isValid()
            ? tr("%1 of %2")
                  .arg(newer.version, QLocale().toString(newer.date, QLocale::ShortFormat))
            : newer.version;
    Message message{
        Message::Kind::Note,
        tr("Quillory %1 is available; this is %2.").arg(name, QLatin1StringView(QUILLORY_VERSION))};
    if (!newer.notes.isEmpty())
        message.waysOut.push_back({tr("&Notes…"), [&window, newer] {
                                       window.questions().showAlert(
                                           &window, tr("Quillory %1").arg(newer.version),
                                           newer.notes);
                                   }});
    if (!newer.url.isEmpty())
        message.waysOut.push_back({tr("Open &Web Page"), [this, newer] {
                                       QDesktopServices::openUrl(newer.url);
                                       hide();
                                   }});
    message.waysOut.push_back({tr("&Skip This Version"), [this, newer] {
                                   m_environment.defaults.setValue(keys::skippedVersion,
                                                                   newer.version);
                                   hide();
                               }});
    hide();
    m_shown = &window;
    window.messages().show(MessageArea::Subject::Version, message);
}

void VersionNotice::hide()
{
    if (m_shown)
        m_shown->messages().clear(MessageArea::Subject::Version);
}

} // namespace quillory
