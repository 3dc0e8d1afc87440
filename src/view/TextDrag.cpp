#include "view/TextDrag.h"

#include "editing/QPTextView.h"
#include "editing/SelectionMerging.h"
#include "view/SnapshotMimeData.h"
#include "view/TextViewWidget.h"

#include <QCoreApplication>
#include <QDrag>
#include <QPainter>
#include <QPixmap>
#include <QPointer>

namespace quillory {

namespace {

constexpr qsizetype shownLines = 4;
constexpr TextOffset shownUnits = 48; ///< of a line

/// The beginning of \a text, as it looks in the view.
QPixmap imageOf(const TextSnapshot& text, TextViewWidget& view)
{
    QStringList lines;
    for (qsizetype i = 0; i < std::min(text.lineCount(), shownLines); ++i) {
        TextRange content = text.lineContent(LineIndex(i));
        const bool isCut = content.length > shownUnits;
        content.length = std::min(content.length, shownUnits);
        QString line = text.string(content);
        line.replace(u'\t', QStringLiteral("    "));
        lines += isCut ? line + u'\u2026' : line;
    }
    if (text.lineCount() > shownLines)
        lines += QStringLiteral("\u2026");
    const QFontMetrics metrics(view.textFont());
    constexpr int margin = 4;
    int width = 0;
    for (const QString& line : lines)
        width = std::max(width, metrics.horizontalAdvance(line));
    const QSize size(std::min(width, 40 * metrics.horizontalAdvance(u'0')) + 2 * margin,
                     int(lines.size()) * metrics.lineSpacing() + 2 * margin);
    const double scale = view.devicePixelRatioF();
    QPixmap image(size * scale);
    image.setDevicePixelRatio(scale);
    QColor background = view.colours().background;
    background.setAlphaF(0.85F);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.fillRect(QRect({}, size), background);
    painter.setFont(view.textFont());
    painter.setPen(view.colours().text);
    for (int i = 0; i < lines.size(); ++i)
        painter.drawText(margin, margin + i * metrics.lineSpacing() + metrics.ascent(), lines[i]);
    return image;
}

} // namespace

void dragSelectedText(TextViewWidget& view)
{
    QPTextView& editor = view.editor();
    JoinedText joined = joinedSelections(editor.string(), editor.selections());
    if (joined.text.isEmpty())
        return;
    const TextSnapshot before = editor.string();
    const QPointer<TextViewWidget> guard(&view);
    auto* drag = new QDrag(view.viewport());
    drag->setPixmap(imageOf(joined.text, view));
    drag->setHotSpot({-12, -12});
    drag->setMimeData(new SnapshotMimeData(std::move(joined), view.textFont()));
    const Qt::DropActions allowed =
        editor.isEditable() ? Qt::CopyAction | Qt::MoveAction : Qt::CopyAction;
    const Qt::DropAction preferred = editor.isEditable() ? Qt::MoveAction : Qt::CopyAction;
    const Qt::DropAction done = drag->exec(allowed, preferred);
    // A move within the view was one edit, made where the text was dropped.
    const bool elsewhere = guard && drag->target() != view.viewport();
    if (done != Qt::MoveAction || !elsewhere || !editor.string().isSameTree(before))
        return;
    editor.deleteSelection();
    editor.undoManager().setActionName(QCoreApplication::translate("TextDrag", "Move"));
}

} // namespace quillory
