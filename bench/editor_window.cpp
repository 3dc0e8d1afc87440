// The editor as its users start it, with a probe inside:
//
//   editor_window start FILE       start to first paint of the text, and to its being there as a
//                                  whole; memory a moment later
//   editor_window keys FILE PLACE  key press to the end of painting; PLACE is top, middle or end
//   editor_window pages FILE       Page Down to the end of painting
//   editor_window save FILE        from asking to the bytes being verified on disk

#include "Probe.h"
#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/DocumentWindow.h"
#include "document/Document.h"
#include "document/SystemFileOps.h"
#include "view/TextViewWidget.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTimer>
#include <algorithm>
#include <cstdlib>

using namespace quillory;
using namespace quillory::bench;

namespace {

constexpr int warmUps = 20;
constexpr int samples = 400;

DocumentWindow* shownWindow()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = qobject_cast<DocumentWindow*>(widget))
            return window;
    }
    return nullptr;
}

/// Sends \a key and answers the nanoseconds until everything that it caused has been painted. The
/// window is asked to paint at once: the toolkit would wait for the next frame.
qint64 press(TextViewWidget& view, int key, const QString& text)
{
    const qint64 start = now();
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(&view, &event);
    QCoreApplication::sendPostedEvents();
    QEvent paint(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(view.window(), &paint);
    const qint64 time = now() - start;
    QCoreApplication::processEvents();
    return time;
}

void reportTimes(std::vector<qint64> times)
{
    std::sort(times.begin(), times.end());
    const auto at = [&](double share) {
        return double(times[size_t(share * double(times.size() - 1))]) / 1e9;
    };
    report({{"p50", at(0.5)}, {"p95", at(0.95)}, {"p99", at(0.99)}, {"worst", at(1)}});
}

void measureKeys(TextViewWidget& view, int key, const QString& text)
{
    const PaintCounter paints(*view.viewport());
    std::vector<qint64> times;
    for (int i = 0; i < warmUps + samples; ++i) {
        const int before = paints.count();
        const qint64 time = press(view, key, text);
        if (paints.count() == before)
            std::_Exit(1); // a time without a painting would say nothing
        if (i >= warmUps)
            times.push_back(time);
    }
    reportTimes(std::move(times));
}

void goTo(TextViewWidget& view, const QString& place)
{
    const TextOffset length = view.editor().string().length();
    const TextOffset offset = place == QStringLiteral("middle") ? length / 2
                              : place == QStringLiteral("end")  ? length
                                                                : 0;
    view.editor().setSelectedRange({offset, 0});
    view.ensureVisible(offset);
    QCoreApplication::processEvents();
}

void measureSave(Document& document)
{
    document.textView().insertText(QStringLiteral("x"));
    const qint64 start = now();
    SaveResult result;
    document.writeToURL(document.path(), document.type(), &result);
    if (!result.written)
        std::_Exit(1);
    report({{"seconds", double(now() - start) / 1e9}});
}

void run(const QStringList& arguments, qint64 paintedAt, qint64 readAt)
{
    DocumentWindow& window = *shownWindow();
    const QString mode = arguments.value(1);
    if (mode == QStringLiteral("start")) {
        report({{"at", double(paintedAt)},
                {"read", double(readAt)},
                {"memory", double(residentBytes())}});
    } else if (mode == QStringLiteral("keys")) {
        goTo(window.view(), arguments.value(3));
        measureKeys(window.view(), Qt::Key_X, QStringLiteral("x"));
    } else if (mode == QStringLiteral("pages")) {
        measureKeys(window.view(), Qt::Key_PageDown, QString());
    } else if (mode == QStringLiteral("save")) {
        measureSave(window.document());
    }
    std::_Exit(0);
}

/// Calls run() a moment after the whole text is there.
void runWhenRead(const QStringList& arguments, qint64 paintedAt)
{
    if (shownWindow()->document().isLoading()) {
        QTimer::singleShot(1, [=] { runWhenRead(arguments, paintedAt); });
        return;
    }
    QTimer::singleShot(300, [=, readAt = now()] { run(arguments, paintedAt, readAt); });
}

/// The text view's viewport, once the view has a text to show.
bool showsText(QObject* object)
{
    const auto* view = qobject_cast<TextViewWidget*>(object->parent());
    return view && object == view->viewport() && !view->editor().string().isEmpty();
}

} // namespace

int main(int argc, char** argv)
{
    QApplication qtApplication(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const FirstPaint paint(showsText, [&arguments](qint64 at) { runWhenRead(arguments, at); });
    Application application;
    const auto exists = [](const QString&) { return true; };
    return application.run(parseCommandLine({arguments.value(0), arguments.value(2)}, exists));
}
