#include "app/ClipboardText.h"

#include "foundation/Background.h"
#include "view/PastedText.h"
#include "view/X11Selection.h"

#include <QClipboard>
#include <QGuiApplication>

namespace quillory {

namespace {

std::optional<QString> unlessEmpty(const TextSnapshot& text)
{
    return text.isEmpty() ? std::nullopt : std::optional(text.string());
}

std::optional<QString> ownText()
{
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    return data && offersText(*data) ? unlessEmpty(textOf(*data)) : std::nullopt;
}

} // namespace

void fetchClipboardText(QObject* context,
                        const std::function<void(const std::optional<QString>&)>& tell)
{
    if (!X11Selection::isAvailable() || QGuiApplication::clipboard()->ownsClipboard()) {
        tell(ownText());
        return;
    }
    runInBackground(
        context, [] { return X11Selection::utf8Text(QClipboard::Clipboard); },
        [tell](const std::optional<QByteArray>& utf8) {
            // What is not offered in UTF-8 is there in another form, if at all.
            tell(utf8 ? unlessEmpty(PastedText{*utf8, {}}.decoded()) : ownText());
        });
}

} // namespace quillory
