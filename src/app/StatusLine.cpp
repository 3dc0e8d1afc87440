#include "app/StatusLine.h"

#include "app/TextPlace.h"
#include "document/Document.h"
#include "text/EncodingTable.h"
#include "text/LineBreaks.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QToolButton>

namespace quillory {

namespace {

/// \a name, or the number of an encoding that has none here.
QString encodingLabel(const Document& document)
{
    const StringEncoding encoding = document.record().encoding;
    if (document.isUndecoded() || encoding == StringEncoding::none)
        return StatusLine::tr("Unknown encoding");
    const QString name = displayName(encoding);
    const QString shown =
        name.isEmpty() ? StatusLine::tr("Encoding %1").arg(quint32(encoding)) : name;
    return document.hasByteOrderMark() ? StatusLine::tr("%1 with BOM").arg(shown) : shown;
}

/// The counts of a file with mixed breaks: "12 LF, 3 CR LF".
QString countsOf(const LineBreakCounts& counts)
{
    const QLocale locale;
    QStringList parts;
    const auto add = [&](qsizetype count, const char* name) {
        if (count > 0)
            parts += locale.toString(qlonglong(count)) + u' ' + QLatin1StringView(name);
    };
    add(counts.lf, "LF");
    add(counts.cr, "CR");
    add(counts.crLf, "CRLF");
    return parts.join(QStringLiteral(", "));
}

} // namespace

StatusLine::StatusLine(QWidget* parent) : QWidget(parent)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 1, 4, 1);
    layout->setSpacing(2);
    m_position = addField(tr("Go to a line"));
    m_selection = new QLabel(this);
    m_activity = new QLabel(this);
    layout->addWidget(m_selection);
    layout->addStretch(1);
    layout->addWidget(m_activity);
    m_cancel = addField(tr("Cancel"));
    m_cancel->setText(QStringLiteral("✕"));
    m_cancel->setAccessibleName(tr("Cancel"));
    m_cancel->hide();
    layout->addStretch(1);
    m_definition = addField(tr("Language"));
    m_lineBreaks = addField(tr("Line breaks with which the file is saved"));
    m_encoding = addField(tr("Encoding in which the file is saved"));
    connect(m_position, &QToolButton::clicked, this, &StatusLine::positionClicked);
    connect(m_cancel, &QToolButton::clicked, this, &StatusLine::activityCancelled);
    for (QToolButton* field : {m_definition, m_lineBreaks, m_encoding})
        connect(field, &QToolButton::clicked, this, &StatusLine::formClicked);
}

QToolButton* StatusLine::addField(const QString& toolTip)
{
    auto* field = new QToolButton(this);
    field->setAutoRaise(true);
    field->setFocusPolicy(Qt::NoFocus);
    field->setToolTip(toolTip);
    layout()->addWidget(field);
    return field;
}

void StatusLine::showPosition(Document& document)
{
    const TextSnapshot& text = document.completeString();
    QPTextView& editor = document.textView();
    const QLocale locale;
    const TextPlace place = placeOf(text, editor.primarySelection().head);
    m_position->setText(
        tr("Line %1, Column %2").arg(locale.toString(place.line), locale.toString(place.column)));

    qsizetype selected = 0;
    for (const Selection& selection : editor.selections())
        selected += characterCount(text, selection.range());
    QString shown;
    if (selected > 0)
        shown = selected == 1
                    ? tr("1 character selected")
                    : tr("%1 characters selected").arg(locale.toString(qlonglong(selected)));
    if (editor.selections().size() > 1)
        shown = tr("%1 places").arg(editor.selections().size()) +
                (shown.isEmpty() ? QString() : QStringLiteral(", ") + shown);
    m_selection->setText(shown);
}

void StatusLine::showForm(const Document& document)
{
    const DocumentRecord& record = document.record();
    m_definition->setText(record.definitionTitle.isEmpty() ? tr("Text") : record.definitionTitle);
    m_encoding->setText(encodingLabel(document));
    const LineBreakCounts& onDisk = document.lineBreaksOnDisk();
    m_lineBreaks->setText(onDisk.isMixed() ? tr("Mixed: %1").arg(countsOf(onDisk))
                                           : label(LineBreakFormat(record.lbFormat)));
    // Where all fields are not seen at once, "UTF-8" says too little.
    m_definition->setAccessibleName(tr("Language: %1").arg(definitionText()));
    m_encoding->setAccessibleName(tr("Encoding: %1").arg(encodingText()));
    m_lineBreaks->setAccessibleName(tr("Line breaks: %1").arg(lineBreaksText()));
}

void StatusLine::setActivity(const QString& activity, bool canCancel)
{
    m_activity->setText(activity);
    m_cancel->setVisible(canCancel);
}

QString StatusLine::positionText() const
{
    return m_position->text();
}

QString StatusLine::selectionText() const
{
    return m_selection->text();
}

QString StatusLine::encodingText() const
{
    return m_encoding->text();
}

QString StatusLine::lineBreaksText() const
{
    return m_lineBreaks->text();
}

QString StatusLine::definitionText() const
{
    return m_definition->text();
}

QString StatusLine::activityText() const
{
    return m_activity->text();
}

} // namespace quillory
