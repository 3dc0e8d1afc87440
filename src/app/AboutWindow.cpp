#include "app/AboutWindow.h"

#include "app/DocumentController.h"
#include "app/Guides.h"
#include "app/LinkLabel.h"
#include "commands/Sandbox.h"
#include "document/DocumentEnvironment.h"
#include "foundation/ApplicationFolders.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QSysInfo>
#include <QVBoxLayout>
#include <unicode/uchar.h>
#include <unicode/uversion.h>

namespace quillory {

namespace {

constexpr int iconSize = 64; ///< logical pixels
constexpr int detailLines = 8;

QString icuVersion()
{
    UVersionInfo version;
    u_getVersion(version);
    std::array<char, U_MAX_VERSION_STRING_LENGTH> text{};
    u_versionToString(version, text.data());
    return QString::fromLatin1(text.data());
}

/// Links to the guides that are installed, in one line of HTML; empty without any.
QString guideLinks(const ApplicationFolders& folders)
{
    const std::pair<QString, QString> guides[]{
        {QStringLiteral("users-guide.md"), AboutWindow::tr("User's guide")},
        {QStringLiteral("definitions.md"), AboutWindow::tr("Definitions and themes")},
        {QStringLiteral("formats.md"), AboutWindow::tr("File formats")},
    };
    QStringList links;
    for (const auto& [file, title] : guides) {
        if (const QString path = guidePath(folders, file); !path.isEmpty())
            links += QStringLiteral("<a href=\"%1\">%2</a>")
                         .arg(path.toHtmlEscaped(), title.toHtmlEscaped());
    }
    return links.join(QStringLiteral(" · "));
}

} // namespace

QString AboutWindow::details()
{
    const Sandbox sandbox = Sandbox::aroundThisProgram();
    const auto variable = [](const char* name) {
        const QString value = qEnvironmentVariable(name);
        return value.isEmpty() ? QStringLiteral("–") : value;
    };
    const QStringList lines{
        QStringLiteral("Quillory %1").arg(QLatin1StringView(QUILLORY_VERSION)),
        QStringLiteral("Qt %1 (built with %2)")
            .arg(QLatin1StringView(qVersion()), QLatin1StringView(QT_VERSION_STR)),
        QStringLiteral("ICU %1, Unicode %2")
            .arg(icuVersion(), QLatin1StringView(U_UNICODE_VERSION)),
        QStringLiteral("%1, kernel %2, %3")
            .arg(QSysInfo::prettyProductName(), QSysInfo::kernelVersion(),
                 QSysInfo::currentCpuArchitecture()),
        QStringLiteral("Platform %1, style %2, scale %3")
            .arg(QGuiApplication::platformName(), QApplication::style()->name())
            .arg(qApp->devicePixelRatio()),
        QStringLiteral("Desktop %1, session %2, language %3")
            .arg(variable("XDG_CURRENT_DESKTOP"), variable("XDG_SESSION_TYPE"),
                 QLocale::system().name()),
        QStringLiteral("Sandbox %1").arg(sandbox.name.isEmpty() ? tr("none") : sandbox.name),
    };
    return lines.join(u'\n');
}

AboutWindow::AboutWindow(DocumentWindow& window) : QDialog(&window)
{
    setWindowTitle(tr("About Quillory"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* head = new QHBoxLayout;
    head->setSpacing(14);
    auto* icon = new QLabel(this);
    icon->setPixmap(
        QIcon(QStringLiteral(":/icons/quillory.svg")).pixmap(QSize(iconSize, iconSize)));
    auto* name = new QLabel(QStringLiteral("<big><b>%1</b></big><br>%2<br>%3")
                                .arg(tr("Quillory %1").arg(QLatin1StringView(QUILLORY_VERSION)),
                                     tr("An editor for text and source code."),
                                     tr("Free software under the MIT licence.")),
                            this);
    head->addWidget(icon);
    head->addWidget(name, 1);

    auto* text = new QPlainTextEdit(details(), this);
    text->setReadOnly(true);
    text->setTabChangesFocus(true);
    text->setAccessibleName(tr("Details"));
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setMinimumWidth(text->fontMetrics().averageCharWidth() * 62);
    text->setFixedHeight(text->fontMetrics().lineSpacing() * detailLines +
                         2 * (text->frameWidth() + int(text->document()->documentMargin())));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    auto* copy = buttons->addButton(tr("Co&py Details"), QDialogButtonBox::ActionRole);
    connect(copy, &QPushButton::clicked, this,
            [] { QGuiApplication::clipboard()->setText(details()); });
    auto* qt = buttons->addButton(tr("About &Qt"), QDialogButtonBox::ActionRole);
    connect(qt, &QPushButton::clicked, qApp, &QApplication::aboutQt);
    connect(buttons, &QDialogButtonBox::rejected, this, &QWidget::close);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(head);
    if (const QString links = guideLinks(window.environment().folders); !links.isEmpty()) {
        auto* guides = new LinkLabel(links, this);
        connect(guides, &QLabel::linkActivated, this, [this, &window](const QString& path) {
            close();
            window.controller().open({{path, {}}}, &window);
        });
        layout->addWidget(guides);
    }
    layout->addWidget(text);
    layout->addWidget(buttons);
}

} // namespace quillory
