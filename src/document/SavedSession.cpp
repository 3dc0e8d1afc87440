#include "document/SavedSession.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quillory {

namespace {

using Dictionary = PropertyList::Dictionary;
using Array = PropertyList::Array;

constexpr qint64 formVersion = 1;
constexpr int farthest = 1'000'000; // logical pixels, and points

const QString versionKey = QStringLiteral("version");
const QString windowsKey = QStringLiteral("windows");
const QString stateKey = QStringLiteral("state");
const QString frameKey = QStringLiteral("frame");
const QString selectionsKey = QStringLiteral("selections");

/// Calls \a visit with the key and the member of each plain field.
template<class Window, class Visit>
void forEachField(Window& window, Visit&& visit)
{
    visit("path", window.path);
    visit("journal", window.journal);
    visit("left", window.wasLeft);
    visit("fileModified", window.fileModified);
    visit("screen", window.screen);
    visit("maximised", window.isMaximised);
    visit("fullScreen", window.isFullScreen);
    visit("minimised", window.isMinimised);
    visit("floating", window.isFloating);
    visit("hidesLineNumbers", window.hidesLineNumbers);
    visit("hidesStatusLine", window.hidesStatusLine);
    visit("zoom", window.zoom);
    visit("primarySelection", window.primary);
    visit("firstLine", window.firstLine);
    visit("firstColumn", window.firstColumn);
    visit("firstRowY", window.firstRowY);
    visit("scrolledX", window.scrolledX);
    visit("definitionTitle", window.definitionTitle);
    visit("encoding", window.encoding);
}

int pixels(const PropertyList& value)
{
    return int(std::clamp<qint64>(value.toInteger(), -farthest, farthest));
}

void take(const PropertyList& value, QString& field)
{
    field = value.toString();
}

void take(const PropertyList& value, bool& field)
{
    field = value.toBool();
}

void take(const PropertyList& value, int& field)
{
    field = pixels(value);
}

void take(const PropertyList& value, qint64& field)
{
    field = std::max<qint64>(0, value.toInteger());
}

void take(const PropertyList& value, size_t& field)
{
    field = size_t(std::max<qint64>(0, value.toInteger()));
}

void take(const PropertyList& value, double& field)
{
    const double real = value.toReal();
    field = std::isfinite(real) ? real : 0;
}

Array encoded(const std::vector<Selection>& selections, size_t primary)
{
    Array result;
    const auto append = [&](const Selection& selection) {
        result.append(qint64(selection.anchor));
        result.append(qint64(selection.head));
    };
    if (selections.size() > maximumSelections)
        append(selections[primary]);
    else
        std::for_each(selections.begin(), selections.end(), append);
    return result;
}

std::vector<Selection> decodedSelections(const Array& ends)
{
    std::vector<Selection> result;
    const auto end = [&](qsizetype index) {
        return TextOffset(std::max<qint64>(0, ends[index].toInteger()));
    };
    const qsizetype count = std::min(ends.size() / 2, qsizetype(maximumSelections));
    for (qsizetype i = 0; i < count; ++i)
        result.push_back({end(2 * i), end(2 * i + 1)});
    return result;
}

Dictionary encoded(const SavedWindow& window)
{
    Dictionary result;
    forEachField(window, [&](const char* key, const auto& field) {
        if (field != std::decay_t<decltype(field)>())
            result.insert(QLatin1StringView(key), field);
    });
    if (window.selections.size() > maximumSelections)
        result.remove(QStringLiteral("primarySelection"));
    result.insert(selectionsKey, PropertyList(encoded(window.selections, window.primary)));
    const QRect& frame = window.frame;
    if (frame.isValid())
        result.insert(frameKey,
                      PropertyList(Array{frame.x(), frame.y(), frame.width(), frame.height()}));
    result.insert(stateKey, PropertyList(window.state));
    return result;
}

SavedWindow decoded(const PropertyList& list)
{
    SavedWindow window;
    forEachField(window, [&](const char* key, auto& field) {
        const QString name = QString::fromLatin1(key);
        if (list.contains(name))
            take(list[name], field);
    });
    window.selections = decodedSelections(list[selectionsKey].toArray());
    window.primary =
        window.selections.empty() ? 0 : std::min(window.primary, window.selections.size() - 1);
    const Array frame = list[frameKey].toArray();
    if (frame.size() == 4)
        window.frame = {pixels(frame[0]), pixels(frame[1]), pixels(frame[2]), pixels(frame[3])};
    window.state = list[stateKey].toDictionary();
    return window;
}

} // namespace

PropertyList encodeSession(const std::vector<SavedWindow>& windows)
{
    Array list;
    for (const SavedWindow& window : windows)
        list.append(PropertyList(encoded(window)));
    return Dictionary{{versionKey, formVersion}, {windowsKey, PropertyList(list)}};
}

Result<std::vector<SavedWindow>> decodeSession(const PropertyList& list)
{
    if (list[versionKey].toInteger() != formVersion || !list[windowsKey].as<Array>())
        return Failure{QStringLiteral("This is no list of windows.")};
    std::vector<SavedWindow> windows;
    for (const PropertyList& entry : list[windowsKey].toArray()) {
        SavedWindow window = decoded(entry);
        if (window.isWorthwhile())
            windows.push_back(std::move(window));
    }
    return windows;
}

} // namespace quillory
