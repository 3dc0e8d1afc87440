#include "app/WebPreview.h"

#include "app/DocumentWindow.h"
#include "app/MessageArea.h"
#include "commands/PreviewBase.h"
#include "commands/PreviewSource.h"
#include "document/Document.h"
#include "document/DocumentEnvironment.h"
#include "foundation/UserDefaults.h"

#include <QLocale>

namespace quillory {

WebPreview::WebPreview(DocumentWindow& window)
    : m_window(window), m_texts(window.environment().folders.caches),
      m_program(window.environment().folders.plugins), m_title(tr("Preview"))
{
    connect(&m_program, &PreviewProgram::received, this, &WebPreview::receive);
    connect(&m_program, &PreviewProgram::failed, this, [this](const QString& reason) {
        m_isLoading = false;
        m_isStale = false;
        setVisible(false);
        tellProblem(tr("The web preview cannot be shown. %1").arg(reason));
    });
    connect(&window.document().changeTracking(), &ChangeTracking::createPreviewRequested, this,
            &WebPreview::createPreview);
    connect(&window.document(), &Document::textViewSettingsApplied, this, [this] {
        if (m_visible)
            tellInspector();
    });
}

WebPreview::~WebPreview() = default;

void WebPreview::showPreview()
{
    if (m_visible) {
        setVisible(false);
        m_program.tell({{QStringLiteral("do"), QStringLiteral("hide")}});
        return;
    }
    m_window.messages().clear(MessageArea::Subject::Preview);
    setVisible(true);
    tellInspector();
    m_program.tell({{QStringLiteral("do"), QStringLiteral("show")}});
    m_isAsked = true;
    createPreview();
}

void WebPreview::reload()
{
    m_isAsked = true;
    load();
}

void WebPreview::createPreview()
{
    if (m_visible)
        load();
}

/// One text at a time is on its way; what is typed meanwhile comes after it.
void WebPreview::load()
{
    if (m_isLoading) {
        m_isStale = true;
        return;
    }
    const Document& document = m_window.document();
    const DocumentRecord& record = document.record();
    const PreviewBase base = PreviewBase::of(record.baseURL, document.path());
    const PreviewSource source{
        document.completeString(), record.previewFormat, base.server,
        PreviewSource::styleSheetIn(m_window.environment().folders.resources)};
    if (source.isTooLong()) {
        // Not at every pause in typing.
        if (!std::exchange(m_isTooLong, true) || m_isAsked)
            tellProblem(
                tr("The text is too long to be shown as a web page: it has %L1 characters, and "
                   "at most %L2 are shown.")
                    .arg(source.text.length())
                    .arg(PreviewSource::longest));
        m_isAsked = false;
        return;
    }
    m_isTooLong = false;
    m_isLoading = true;
    m_isStale = false;
    m_texts.write(
        [source](const ByteSink& sink) {
            sink(source.page());
            return std::nullopt;
        },
        QStringLiteral("html"),
        [this, base](const Result<QString>& path) {
            if (path) {
                send(*path, base);
                return;
            }
            finishLoad();
            tellProblem(tr("The web preview cannot be written to “%1”: %2. Make room there.")
                            .arg(m_window.environment().folders.caches, path.failure().message));
        });
}

void WebPreview::send(const QString& file, const PreviewBase& base)
{
    if (!m_program.isRunning()) {
        m_texts.remove(file);
        m_isLoading = false;
        return;
    }
    m_window.messages().clear(MessageArea::Subject::Preview);
    m_texts.remove(std::exchange(m_before, m_file));
    m_file = file;
    m_program.tell({{QStringLiteral("do"), QStringLiteral("load")},
                    {QStringLiteral("file"), file},
                    {QStringLiteral("path"), base.path},
                    {QStringLiteral("folder"), base.folder},
                    {QStringLiteral("isAsked"), std::exchange(m_isAsked, false)}});
}

void WebPreview::finishLoad()
{
    m_isLoading = false;
    Q_EMIT loaded();
    if (std::exchange(m_isStale, false))
        createPreview();
}

void WebPreview::receive(const QJsonObject& message)
{
    const QString told = message[QStringLiteral("tell")].toString();
    if (told == QLatin1StringView("loaded")) {
        finishLoad();
    } else if (told == QLatin1StringView("reload")) {
        reload();
    } else if (told == QLatin1StringView("visible")) {
        const bool visible = message[QStringLiteral("value")].toBool();
        const bool appeared = visible && !m_visible;
        setVisible(visible);
        if (appeared)
            createPreview();
    } else if (told == QLatin1StringView("state")) {
        m_title = message[QStringLiteral("title")].toString();
        m_canGoBack = message[QStringLiteral("canGoBack")].toBool();
        m_canGoNext = message[QStringLiteral("canGoNext")].toBool();
        Q_EMIT stateChanged();
    }
}

void WebPreview::tellInspector()
{
    m_program.tell({{QStringLiteral("do"), QStringLiteral("inspect")},
                    {QStringLiteral("value"),
                     bool(m_window.environment().defaults.value(keys::webKitDeveloperExtras))}});
}

void WebPreview::setVisible(bool visible)
{
    if (std::exchange(m_visible, visible) != visible)
        Q_EMIT visibleChanged();
}

void WebPreview::tellProblem(const QString& text)
{
    m_window.messages().show(MessageArea::Subject::Preview,
                             {Message::Kind::Problem,
                              text,
                              {{tr("&Try Again"), [this] {
                                    m_window.messages().clear(MessageArea::Subject::Preview);
                                    m_visible ? reload() : showPreview();
                                }}}});
}

} // namespace quillory
