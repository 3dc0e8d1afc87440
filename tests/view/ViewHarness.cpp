#include "ViewHarness.h"

#include <QApplication>
#include <QKeySequence>
#include <QLoggingCategory>
#include <QTest>

namespace quillory {

ViewHarness::ViewHarness(const QString& text)
{
    // That some script has no font here is not what is tested.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.text.*=false"));
    QObject::connect(&storage, &TextStorage::edited, &overlay, &Overlay::textChanged);
    storage.replaceCharactersInRange({}, text);
    editor.setSelectedRange({});
    view.resize(800, 400);
    view.show();
    view.activateWindow();
    (void)QTest::qWaitForWindowExposed(&view);
    view.setFocus();
    settle();
}

void ViewHarness::setMarked(const QString& marked)
{
    QString plain;
    std::vector<Selection> selections;
    std::optional<TextOffset> anchor;
    bool headFirst = false;
    for (const QChar unit : marked) {
        if (unit == u'^' && headFirst)
            selections.back().anchor = plain.size();
        else if (unit == u'^')
            anchor = plain.size();
        else if (unit == u'|')
            selections.push_back({std::exchange(anchor, {}).value_or(plain.size()), plain.size()});
        else
            plain += unit;
        if (unit == u'^' || unit == u'|')
            headFirst = unit == u'|' && selections.back().isCaret() && !headFirst;
    }
    storage.replaceCharactersInRange(storage.snapshot().range(), plain);
    undo.removeAllActions();
    const size_t primary = selections.size() - 1;
    editor.setSelections(std::move(selections), primary);
    settle();
}

QString ViewHarness::marked() const
{
    QString result = text();
    const auto& selections = editor.selections();
    for (auto it = selections.rbegin(); it != selections.rend(); ++it) {
        const TextRange range = it->range();
        if (!it->isCaret())
            result.insert(range.end(), it->head > it->anchor ? u'|' : u'^');
        result.insert(range.location, it->head <= it->anchor ? u'|' : u'^');
    }
    return result;
}

void ViewHarness::press(const QStringList& keys)
{
    for (const QString& key : keys) {
        if (key.startsWith(u'\'')) {
            for (const QChar typed : key.mid(1, key.size() - 2))
                QTest::sendKeyEvent(QTest::Click, &view, Qt::Key_unknown, QString(typed),
                                    Qt::NoModifier);
            continue;
        }
        const QKeyCombination combination = QKeySequence::fromString(key)[0];
        QTest::keyClick(&view, combination.key(), combination.keyboardModifiers());
    }
    settle();
}

void ViewHarness::settle()
{
    // Paint requests come by a timer of a few milliseconds.
    QApplication::processEvents();
    QTest::qWait(10);
}

QPoint ViewHarness::pointOf(TextOffset offset)
{
    view.ensureVisible(offset);
    settle();
    return view.caretRectAt(offset).center();
}

void ViewHarness::click(TextOffset offset, Qt::KeyboardModifiers modifiers, Qt::MouseButton button)
{
    QTest::mouseClick(view.viewport(), button, modifiers, pointOf(offset));
    settle();
}

QString repeated(const QString& line, qsizetype units)
{
    return line.repeated(units / line.size() + 1).left(units);
}

} // namespace quillory
