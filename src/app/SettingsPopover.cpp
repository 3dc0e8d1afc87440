#include "app/SettingsPopover.h"

#include "document/Document.h"
#include "document/DocumentEnvironment.h"
#include "foundation/UserDefaults.h"
#include "text/LineBreaks.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QSignalBlocker>

namespace quillory {

namespace {

constexpr int margin = 8; ///< between the pop-over and the window's edges, in pixels
constexpr std::array formats{LineBreakFormat::unixLf, LineBreakFormat::macCr,
                             LineBreakFormat::windowsCrLf};

QWidget* statusLineOf(const QWidget* window)
{
    return window->findChild<QWidget*>(QStringLiteral("statusLine"));
}

} // namespace

SettingsPopover::SettingsPopover(Document& document, const DocumentEnvironment& environment,
                                 QWidget* window)
    : Popover(window), m_document(document), m_environment(environment)
{
    setAccessibleName(tr("Document settings"));
    build();
    connect(&document, &Document::recordChanged, this, &SettingsPopover::showRecord);
    connect(&document, &Document::settingsPopoverShouldClose, this, &SettingsPopover::close);
}

void SettingsPopover::build()
{
    auto* layout = new QFormLayout(this);
    layout->setContentsMargins(14, 12, 14, 12);
    auto* title = new QLabel(tr("Document Settings"), this);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    layout->addRow(title);

    m_language = new QComboBox(this);
    m_language->setMaxVisibleItems(16);
    connect(m_language, &QComboBox::activated, this, &SettingsPopover::chooseLanguage);
    layout->addRow(tr("Lan&guage:"), m_language);

    m_encoding = new QComboBox(this);
    m_encoding->setMaxVisibleItems(16);
    connect(m_encoding, &QComboBox::activated, this, &SettingsPopover::chooseEncoding);
    layout->addRow(tr("&Encoding:"), m_encoding);

    m_lineBreaks = new QComboBox(this);
    for (const LineBreakFormat format : formats)
        m_lineBreaks->addItem(label(format), int(format));
    connect(m_lineBreaks, &QComboBox::activated, this, &SettingsPopover::chooseLineBreaks);
    layout->addRow(tr("&Line breaks:"), m_lineBreaks);

    m_mark = new QCheckBox(tr("&Begin the file with a byte-order mark"), this);
    connect(m_mark, &QCheckBox::clicked, &m_document, &Document::setHasByteOrderMark);
    layout->addRow(QString(), m_mark);

    m_dontAsk = new QCheckBox(tr("&Do not show this for new documents"), this);
    connect(m_dontAsk, &QCheckBox::clicked, this,
            [this](bool checked) { m_environment.defaults.setValue(keys::dontAsk, checked); });
    layout->addRow(QString(), m_dontAsk);
}

void SettingsPopover::showRecord()
{
    const QSignalBlocker quietLanguage(m_language);
    m_language->clear();
    const DefinitionList& definitions = m_document.syntaxColouring().definitions();
    for (const Definition& definition : definitions.arrangedObjects())
        m_language->addItem(definition.title());
    m_language->setCurrentIndex(int(definitions.selectionIndex()));

    const QSignalBlocker quietEncoding(m_encoding);
    m_encoding->clear();
    const EncodingList& list = m_document.encodingsArrayController();
    for (const EncodingEntry& entry : list.arranged())
        m_encoding->addItem(entry.name, quint32(entry.number));
    m_encoding->setCurrentIndex(m_encoding->findData(quint32(m_document.record().encoding)));
    m_encoding->setEnabled(m_encoding->count() > 0 && !m_document.isUndecoded());

    m_lineBreaks->setCurrentIndex(m_lineBreaks->findData(m_document.record().lbFormat));
    m_mark->setEnabled(m_document.record().encoding == StringEncoding::utf8);
    m_mark->setChecked(m_document.hasByteOrderMark());
    m_dontAsk->setChecked(m_environment.defaults.value(keys::dontAsk));
}

void SettingsPopover::open(Reason reason)
{
    showRecord();
    m_dontAsk->setVisible(reason == Reason::NewDocument);
    setOpener(statusLineOf(parentWidget()));
    appear();
    if (reason == Reason::Asked)
        (m_encoding->isEnabled() ? m_encoding : m_lineBreaks)->setFocus(Qt::PopupFocusReason);
}

void SettingsPopover::place()
{
    resize(sizeHint());
    const QRect room = parentWidget()->rect();
    int bottom = room.height() - margin;
    if (const QWidget* status = statusLineOf(parentWidget()); status && status->isVisible())
        bottom = status->mapTo(parentWidget(), QPoint(0, 0)).y() - margin;
    move(std::max(0, room.width() - width() - margin), std::max(0, bottom - height()));
}

void SettingsPopover::chooseLanguage(int index)
{
    m_document.syntaxColouring().selectDefinition(index);
    m_document.applyDefinitionAction();
}

void SettingsPopover::chooseEncoding(int index)
{
    m_document.encodingsArrayController().selectIndex(index);
    m_document.changeEncodingAction();
    Q_EMIT encodingChosen();
}

void SettingsPopover::chooseLineBreaks(int index)
{
    const int code = m_lineBreaks->itemData(index).toInt();
    if (code == m_document.record().lbFormat)
        return;
    m_document.record().lbFormat = code;
    m_document.changeLBFormatAction(code);
}

} // namespace quillory
