// The editor as its users start it, with a probe inside:
//
//   editor_window start FILE       start to first paint of the text, and to its being there as a
//                                  whole; memory a moment later
//   editor_window keys FILE PLACE [aids]
//                                  key press to the end of painting; PLACE is top, middle or end;
//                                  with aids, everything that follows typing is turned on
//   editor_window pages FILE       Page Down to the end of painting
//   editor_window save FILE        from asking to the bytes being verified on disk
//   editor_window tour FILE [wrap] the slowest of a few of each: typing, End and Home, selecting to
//                                  the end, scrolling, Page Down, resizing, the line wrapped or not

#include "Probe.h"
#include "app/Application.h"
#include "app/DocumentWindow.h"
#include "app/Preloading.h"
#include "app/StartOptions.h"
#include "document/Document.h"
#include "document/SystemFileOps.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"
#include "view/TextViewWidget.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>
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

/// Does \a work and answers the nanoseconds until everything that it caused has been painted. The
/// window is asked to paint at once: the toolkit would wait for the next frame.
template<class Work>
qint64 timeOf(TextViewWidget& view, Work work)
{
    const qint64 start = now();
    work();
    QCoreApplication::sendPostedEvents();
    QEvent paint(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(view.window(), &paint);
    const qint64 time = now() - start;
    QCoreApplication::processEvents();
    return time;
}

qint64 press(TextViewWidget& view, int key, const QString& text = {},
             Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    return timeOf(view, [&] {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
        QCoreApplication::sendEvent(&view, &event);
    });
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

/// Turns on all that is done while somebody types.
void turnOnAids(const DocumentWindow& window)
{
    const DocumentEnvironment& environment = window.environment();
    for (const DefaultsKey<bool>& key :
         {keys::highlight, keys::constrainScroll, keys::checkSpelling, keys::showCompletions,
          keys::wrapLines, keys::textReplacement, keys::smartCopy, keys::indentNewLinesBraces,
          keys::insertClosingParenthesisandBrace})
        environment.defaults.setValue(key, true);
    environment.notifications.post(notifications::preferencesDidChange);
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

void measureTour(DocumentWindow& window, bool wraps)
{
    TextViewWidget& view = window.view();
    constexpr int rounds = 30;
    const auto worst = [](auto work) {
        qint64 longest = 0;
        for (int i = 0; i < rounds; ++i)
            longest = std::max(longest, work(i));
        return double(longest) / 1e9;
    };
    const auto typingAt = [&](const char* place) {
        goTo(view, QLatin1String(place));
        return worst([&](int) { return press(view, Qt::Key_X, QStringLiteral("x")); });
    };
    const auto dragging = [&](QScrollBar* bar) {
        return worst([&](int i) {
            return timeOf(view, [&] {
                bar->setValue(int(qint64(bar->maximum()) * (i * 7 % rounds) / rounds));
            });
        });
    };
    const double wrapping = double(timeOf(view, [&] { view.setWrapLines(wraps); })) / 1e9;
    const double top = typingAt("top");
    const double middle = typingAt("middle");
    const double end = typingAt("end");
    const double jumps = worst([&](int i) {
        return press(view, i % 2 == 0 ? Qt::Key_End : Qt::Key_Home, {},
                     wraps ? Qt::ControlModifier : Qt::NoModifier);
    });
    const double selecting = worst([&](int i) {
        return press(view, i % 2 == 0 ? Qt::Key_End : Qt::Key_Home, {},
                     Qt::ControlModifier | Qt::ShiftModifier);
    });
    goTo(view, QStringLiteral("middle"));
    const double pages = worst([&](int) { return press(view, Qt::Key_PageDown); });
    const double pagesUp = worst([&](int) { return press(view, Qt::Key_PageUp); });
    const double steps = worst([&](int) { return timeOf(view, [&] { view.scrollBy(90, 30); }); });
    const double bars = dragging(wraps ? view.verticalScrollBar() : view.horizontalScrollBar());
    const QSize size = window.size();
    const double resizing = worst(
        [&](int i) { return timeOf(view, [&] { window.resize(size - QSize(i * 11, i * 3)); }); });
    report({{"wrap", wrapping},
            {"type at top", top},
            {"type in middle", middle},
            {"type at end", end},
            {"End, Home", jumps},
            {"select to end", selecting},
            {"Page Down", pages},
            {"Page Up", pagesUp},
            {"scroll", steps},
            {"bar", bars},
            {"resize", resizing}});
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
        if (arguments.value(4) == QStringLiteral("aids"))
            turnOnAids(window);
        goTo(window.view(), arguments.value(3));
        measureKeys(window.view(), Qt::Key_X, QStringLiteral("x"));
    } else if (mode == QStringLiteral("pages")) {
        measureKeys(window.view(), Qt::Key_PageDown, QString());
    } else if (mode == QStringLiteral("tour")) {
        measureTour(window, arguments.value(3) == QStringLiteral("wrap"));
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
    Preloading preloading;
    QApplication qtApplication(argc, argv);
    preloading.waitForFonts();
    const QStringList arguments = QCoreApplication::arguments();
    const PaintProbe paint(showsText, [&arguments](qint64 at) { runWhenRead(arguments, at); });
    Application application;
    const auto exists = [](const QString&) { return true; };
    return application.run(parseStartOptions({arguments.value(0), arguments.value(2)}, exists));
}
