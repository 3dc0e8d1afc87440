#include "app/StatisticsPopover.h"

#include "app/DocumentWindow.h"
#include "app/LoadFlow.h"
#include "document/Document.h"
#include "foundation/Background.h"
#include "text/LineBreaks.h"
#include "view/Contrast.h"

#include <QDateTime>
#include <QEvent>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>

namespace quillory {

namespace {

QColor countColour(bool isOfSelection)
{
    return isOfSelection ? QColor::fromRgbF(0.072F, 0.483F, 0.98F)
                         : QColor::fromRgbF(0.298F, 0.298F, 0.298F);
}

constexpr double leastContrast = 5; ///< on a dark desktop; WCAG 2.1 asks for 4.5 of text
constexpr int margin = 8;           ///< to the window's edges, in pixels
constexpr std::chrono::milliseconds renewalDelay{250}; ///< while one goes on typing or selecting
constexpr std::chrono::milliseconds patience{200};     ///< takes less when nobody would see it

/// What the file system tells of a file.
struct FileFacts
{
    QDateTime created; ///< invalid where the file system does not know
    QDateTime edited;
    qint64 size = 0; ///< bytes
};

QString shown(const QDateTime& time)
{
    return time.isValid() ? QLocale().toString(time, QLocale::ShortFormat) : QString();
}

/// "1,234 bytes", and in larger units before that where there are.
QString shownSize(qint64 bytes)
{
    const QString all =
        StatisticsPopover::tr("%1 bytes").arg(thousandFormatedStringFromNumber(bytes));
    return bytes < 1024 ? all
                        : QStringLiteral("%1 (%2)").arg(QLocale().formattedDataSize(bytes), all);
}

} // namespace

StatisticsPopover::StatisticsPopover(DocumentWindow& window, QWidget& button)
    : Popover(&window), m_window(window), m_button(button),
      m_statistics(window.document().textView())
{
    setAccessibleName(tr("Document information"));
    setOpener(&button);
    build();
    m_renewal.setSingleShot(true);
    m_renewal.setInterval(renewalDelay);
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_renewal, &QTimer::timeout, &m_statistics, &DocumentStatistics::generateStatistics);
    connect(&m_patience, &QTimer::timeout, this, &StatisticsPopover::showCounts);
    connect(&m_statistics, &DocumentStatistics::changed, this, &StatisticsPopover::showCounts);
    Document& document = window.document();
    const auto renew = [this] {
        if (isVisible() && !m_renewal.isActive())
            m_renewal.start();
    };
    connect(&document.textView(), &QPTextView::textDidChange, this, renew);
    connect(&document.textView(), &QPTextView::selectionDidChange, this, renew);
    connect(&window.loading(), &LoadFlow::loaded, this, renew);
    connect(&document, &Document::recordChanged, this, [this] {
        if (isVisible())
            showFile();
    });
}

void StatisticsPopover::build()
{
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(14, 12, 14, 10);
    layout->setHorizontalSpacing(12);
    layout->setVerticalSpacing(4);
    m_title = new QLabel(this);
    m_title->setTextFormat(Qt::PlainText);
    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    layout->addWidget(m_title, 0, 0, 1, 2);
    m_lineEndingsInfoField = addRow(*layout, tr("Line breaks:"), "lineEndingsInfoField");
    m_dateCreatedField = addRow(*layout, tr("Created:"), "dateCreatedField");
    m_dateEditedField = addRow(*layout, tr("Modified:"), "dateEditedField");
    m_sizeInfoInfoField = addRow(*layout, tr("Size on disk:"), "sizeInfoInfoField");
    layout->setRowMinimumHeight(layout->rowCount(), 6);
    m_charInfoField = addRow(*layout, tr("Characters:"), "charInfoField");
    m_charExclInfoField = addRow(*layout, tr("Without spaces:"), "charExclInfoField");
    m_wordInfoField = addRow(*layout, tr("Words:"), "wordInfoField");
    m_linesInfoField = addRow(*layout, tr("Lines:"), "linesInfoField");
    m_linesInfoTitleField = findChild<QLabel*>(QStringLiteral("linesInfoFieldTitle"));
    m_linesInfoTitleField->setObjectName(QStringLiteral("linesInfoTitleField"));
    m_progress = new QProgressBar(this);
    m_progress->setTextVisible(false);
    m_progress->setFixedHeight(4);
    m_progress->setAccessibleName(tr("Counted"));
    // Appears and goes without moving anything.
    QSizePolicy keepingRoom = m_progress->sizePolicy();
    keepingRoom.setRetainSizeWhenHidden(true);
    m_progress->setSizePolicy(keepingRoom);
    layout->addWidget(m_progress, layout->rowCount(), 0, 1, 2);
    layout->setColumnStretch(1, 1);
}

QLabel* StatisticsPopover::addRow(QGridLayout& layout, const QString& title, const char* field)
{
    const int row = layout.rowCount();
    auto* caption = new QLabel(title, this);
    caption->setObjectName(QLatin1StringView(field) + QStringLiteral("Title"));
    auto* value = new QLabel(this);
    value->setObjectName(QLatin1StringView(field));
    value->setTextFormat(Qt::PlainText);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    caption->setBuddy(value);
    layout.addWidget(caption, row, 0, Qt::AlignRight);
    layout.addWidget(value, row, 1);
    return value;
}

void StatisticsPopover::showInfoPopOver()
{
    if (isVisible())
        close();
    else
        infoPopoverVoid();
}

void StatisticsPopover::infoPopoverVoid()
{
    showFile();
    m_patience.start();
    m_statistics.generateStatistics();
    resize(sizeHint());
    appear();
    setFocus(Qt::PopupFocusReason);
}

/// A file system may be slow, so it is asked on another thread.
void StatisticsPopover::showFile()
{
    const Document& document = m_window.document();
    m_lineEndingsInfoField->setText(label(LineBreakFormat(document.record().lbFormat)));
    const QString path = document.path();
    if (path.isEmpty()) {
        for (QLabel* field : {m_dateCreatedField, m_dateEditedField, m_sizeInfoInfoField})
            field->clear();
        return;
    }
    runInBackground(
        this,
        [path] {
            const QFileInfo file(path);
            return FileFacts{file.birthTime(), file.lastModified(), file.size()};
        },
        [this, path](const FileFacts& facts) {
            if (path != m_window.document().path())
                return;
            m_dateCreatedField->setText(shown(facts.created));
            m_dateEditedField->setText(shown(facts.edited));
            m_sizeInfoInfoField->setText(shownSize(facts.size));
            if (isVisible())
                place();
        });
}

void StatisticsPopover::showCounts()
{
    const TextStatistics& statistics = m_statistics.statistics();
    m_title->setText(m_statistics.isOfSelection() ? tr("Selection") : tr("Document"));
    m_charInfoField->setText(thousandFormatedStringFromNumber(statistics.characters));
    m_charExclInfoField->setText(
        thousandFormatedStringFromNumber(statistics.charactersWithoutSpaces));
    m_wordInfoField->setText(QString::number(statistics.words));
    m_linesInfoField->setText(statistics.lines ? thousandFormatedStringFromNumber(*statistics.lines)
                                               : QString());
    for (QLabel* field : {m_linesInfoField, m_linesInfoTitleField})
        field->setVisible(!m_statistics.isOfSelection());
    paintCounts();
    constexpr int whole = 1000;
    m_progress->setRange(0, whole);
    m_progress->setValue(int(m_statistics.share() * whole));
    m_progress->setVisible(m_statistics.isCounting() && !m_patience.isActive());
    if (isVisible())
        place();
}

void StatisticsPopover::paintCounts()
{
    const QColor colour = lightenedFor(palette().color(QPalette::Window),
                                       countColour(m_statistics.isOfSelection()), leastContrast);
    for (QLabel* field :
         {m_charInfoField, m_charExclInfoField, m_wordInfoField, m_linesInfoField}) {
        QPalette coloured = palette();
        coloured.setColor(QPalette::WindowText, colour);
        field->setPalette(coloured);
    }
}

/// Below the button, as far as the window allows.
void StatisticsPopover::place()
{
    resize(sizeHint().expandedTo(size())); // figures that become shorter make nothing jump
    const QWidget& window = *parentWidget();
    const QPoint below = m_button.mapTo(&window, m_button.rect().bottomRight());
    const int left = below.x() + 1 - width();
    const int most = std::max(0, window.width() - width() - margin);
    move(std::clamp(left, std::min(margin, most), most),
         std::min(below.y() + 1, std::max(0, window.height() - height())));
}

void StatisticsPopover::changeEvent(QEvent* event)
{
    Popover::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_progress)
        paintCounts();
}

void StatisticsPopover::hideEvent(QHideEvent* event)
{
    Popover::hideEvent(event);
    m_renewal.stop();
    m_statistics.cancel();
}

} // namespace quillory
