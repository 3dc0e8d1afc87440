#include "view/TextClipboard.h"

#include "editing/QPTextView.h"
#include "editing/SelectionCommands.h"
#include "foundation/Background.h"
#include "foundation/UserDefaults.h"
#include "view/PendingPaste.h"
#include "view/SnapshotMimeData.h"
#include "view/X11Selection.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QSemaphore>
#include <QThreadPool>

namespace quillory {

namespace {

constexpr qsizetype longText = 500'000; // bytes or units, made ready in a few milliseconds
constexpr int quickAnswer = 30;         // milliseconds that another program may take with the user

/// The text of another program, which another thread waits for.
class ForeignText
{
public:
    explicit ForeignText(QClipboard::Mode mode)
    {
        backgroundPool().start([shared = m_shared, mode] {
            const WaitingInPool waiting;
            shared->utf8 = X11Selection::utf8Text(mode);
            shared->isThere.release();
        });
    }

    bool isThereIn(int milliseconds) const
    {
        const bool isThere = m_shared->isThere.tryAcquire(1, milliseconds);
        if (isThere)
            m_shared->isThere.release();
        return isThere;
    }
    /// Waits, on a thread of the pool where it is not there yet.
    std::optional<QByteArray> text() const
    {
        const WaitingInPool waiting;
        m_shared->isThere.acquire();
        m_shared->isThere.release();
        return m_shared->utf8;
    }

private:
    struct Shared
    {
        QSemaphore isThere;
        std::optional<QByteArray> utf8;
    };
    std::shared_ptr<Shared> m_shared = std::make_shared<Shared>();
};

QString pasteName()
{
    return QCoreApplication::translate("TextClipboard", "Paste");
}

bool isForeign(const QClipboard& clipboard, QClipboard::Mode mode)
{
    return !(mode == QClipboard::Selection ? clipboard.ownsSelection() : clipboard.ownsClipboard());
}

} // namespace

void TextClipboard::copy(const QFont& font, QClipboard::Mode mode) const
{
    QClipboard& clipboard = *QGuiApplication::clipboard();
    if (mode == QClipboard::Selection && !clipboard.supportsSelection())
        return;
    JoinedText text = joinedSelections(m_editor.string(), m_editor.selections());
    if (text.text.isEmpty())
        return;
    auto* data = new SnapshotMimeData(std::move(text), font);
    data->setByWords(m_editor.selectionGranularity() == SelectionGranularity::Word);
    clipboard.setMimeData(data, mode);
}

void TextClipboard::copyRichText(const QString& html) const
{
    JoinedText text = joinedSelections(m_editor.string(), m_editor.selections());
    if (!text.text.isEmpty())
        QGuiApplication::clipboard()->setMimeData(new SnapshotMimeData(std::move(text), html));
}

void TextClipboard::cut(const QFont& font)
{
    if (!m_editor.isEditable() || m_editor.selectedText().isEmpty())
        return;
    copy(font);
    m_editor.deleteSelection();
    m_editor.undoManager().setActionName(QCoreApplication::translate("TextClipboard", "Cut"));
}

void TextClipboard::paste(QClipboard::Mode mode, const std::function<void()>& done)
{
    const QClipboard& clipboard = *QGuiApplication::clipboard();
    if (!m_editor.isEditable() || (mode == QClipboard::Selection && !clipboard.supportsSelection()))
        return;
    if (!X11Selection::isAvailable() || !isForeign(clipboard, mode)) {
        if (const QMimeData* data = clipboard.mimeData(mode))
            pasteData(*data, done);
        return;
    }
    const ForeignText foreign(mode);
    if (!foreign.isThereIn(quickAnswer)) {
        pasteLater(
            [foreign] {
                return PastedText{foreign.text().value_or(QByteArray()), {}};
            },
            done);
    } else if (std::optional<QByteArray> text = foreign.text()) {
        pasteForeign({*std::move(text), {}}, done);
    } else if (const QMimeData* data = clipboard.mimeData(mode)) {
        pasteData(*data, done); // in another form
    }
}

void TextClipboard::pasteData(const QMimeData& data, const std::function<void()>& done)
{
    if (!offersText(data))
        return;
    if (const auto* own = qobject_cast<const SnapshotMimeData*>(&data)) {
        // A copy: what is pasted over may be what owns the clipboard's parts.
        const TextSnapshot text = own->text();
        const std::vector<TextRange> parts = own->parts();
        const UserDefaults* defaults = m_editor.defaults();
        const bool smart = own->isByWords() && defaults && defaults->value(keys::smartCopy);
        pasteText(m_editor, text, parts, pasteName(), smart);
        done();
        return;
    }
    pasteForeign(pastedText(data), done);
}

void TextClipboard::pasteForeign(PastedText text, const std::function<void()>& done)
{
    if (text.size() >= longText) {
        pasteLater([text = std::move(text)] { return text; }, done);
        return;
    }
    pasteText(m_editor, text.decoded(), {}, pasteName());
    done();
}

void TextClipboard::pasteLater(std::function<PastedText()> text, const std::function<void()>& done)
{
    auto* pending = new PendingPaste(m_editor, pasteName());
    QObject::connect(pending, &PendingPaste::finished, &m_editor, done);
    pending->start(std::move(text));
}

} // namespace quillory
