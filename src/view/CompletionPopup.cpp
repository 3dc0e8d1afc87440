#include "view/CompletionPopup.h"

#include <QAccessible>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QStyledItemDelegate>

namespace quillory {

namespace {

constexpr int padding = 5;    ///< logical pixels beside a word
constexpr int rowSpacing = 3; ///< logical pixels between two rows
constexpr int leastColumns = 14;
constexpr int mostColumns = 60;
/// So many words tell the list's width.
constexpr int measuredWords = 200;

/// Paints a word, and what of it is typed already in bold.
class WordDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    qsizetype typedLength = 0;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {0, option.fontMetrics.height() + rowSpacing};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override
    {
        const bool isCurrent = option.state.testFlag(QStyle::State_Selected);
        const QPalette& palette = option.palette;
        painter->save();
        painter->fillRect(
            option.rect,
            palette.color(QPalette::Active, isCurrent ? QPalette::Highlight : QPalette::Base));
        painter->setPen(palette.color(QPalette::Active,
                                      isCurrent ? QPalette::HighlightedText : QPalette::Text));
        const QString word = index.data().toString();
        QRect rect = option.rect.adjusted(padding, 0, -padding, 0);
        QFont bold = option.font;
        bold.setBold(true);
        const QString typed = word.left(typedLength);
        painter->setFont(bold);
        painter->drawText(rect, Qt::AlignVCenter | Qt::AlignLeft, typed);
        rect.setLeft(rect.left() + QFontMetrics(bold).horizontalAdvance(typed));
        painter->setFont(option.font);
        painter->drawText(
            rect, Qt::AlignVCenter | Qt::AlignLeft,
            option.fontMetrics.elidedText(word.mid(typedLength), Qt::ElideRight, rect.width()));
        painter->restore();
    }
};

} // namespace

CompletionPopup::CompletionPopup(QWidget* parent) : QListView(parent)
{
    setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_X11NetWmWindowTypeCombo);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::Box);
    setFrameShadow(QFrame::Plain);
    setLayoutDirection(Qt::LeftToRight);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setUniformItemSizes(true);
    setAccessibleName(tr("Completions"));
    setItemDelegate(new WordDelegate(this));
    setModel(&m_model);
    connect(this, &QListView::clicked, this, &CompletionPopup::accepted);
}

void CompletionPopup::setWords(const QStringList& words, qsizetype typedLength, int index)
{
    static_cast<WordDelegate*>(itemDelegate())->typedLength = typedLength;
    m_model.setStringList(words);
    setCurrentIndex(m_model.index(index));
}

void CompletionPopup::moveBy(int rows, bool around)
{
    const int row = currentIndex().row() + rows;
    const int last = count() - 1;
    const bool isOutside = row < 0 || row > last;
    setCurrentIndex(
        m_model.index(isOutside && around ? (row < 0 ? last : 0) : std::clamp(row, 0, last)));
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::Focus);
        event.setChild(currentIndex().row());
        QAccessible::updateAccessibility(&event);
    }
}

QSize CompletionPopup::sizeForWords() const
{
    QFont bold = font();
    bold.setBold(true);
    const QFontMetrics metrics(bold);
    int width = leastColumns * metrics.averageCharWidth();
    for (int i = 0; i < std::min(count(), measuredWords); ++i)
        width = std::max(width, metrics.horizontalAdvance(word(i)));
    width = std::min(width, mostColumns * metrics.averageCharWidth()) + 2 * padding;
    if (count() > mostRows)
        width += verticalScrollBar()->sizeHint().width();
    const int rows = std::min(count(), mostRows);
    return QSize(width, rows * sizeHintForRow(0)) + QSize(2, 2) * frameWidth();
}

void CompletionPopup::showAt(const QRect& line)
{
    const QRect room = parentWidget()->screen()->availableGeometry();
    QPalette colours = parentWidget()->palette();
    colours.setColor(QPalette::WindowText, colours.color(QPalette::Mid)); // of the frame
    if (colours != palette())
        setPalette(colours);
    QSize size = sizeForWords();
    const int below = room.bottom() - line.bottom();
    const int above = line.top() - room.top();
    const bool isBelow = below >= size.height() || below >= above;
    const int row = sizeHintForRow(0);
    const int frame = 2 * frameWidth();
    if (const int height = isBelow ? below : above; size.height() > height)
        size.setHeight(std::max(1, (height - frame) / row) * row + frame);
    size.setWidth(std::min(size.width(), room.width()));
    const int x = std::clamp(line.left() - padding - frameWidth(), room.left(),
                             room.right() + 1 - size.width());
    setGeometry({{x, isBelow ? line.bottom() + 1 : line.top() - size.height()}, size});
    scrollTo(currentIndex());
    show();
    raise();
}

} // namespace quillory
