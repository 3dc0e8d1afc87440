#include "view/LineNumberView.h"

#include "editing/RulerMeasures.h"
#include "view/Grain.h"
#include "view/TextViewWidget.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <iterator>

namespace quillory {

namespace {

constexpr QColor separatorColour(148, 148, 148); // white 0.58
constexpr float shadeOfBackground = 0.6F;        // the rest is black

/// The event as if it had happened at the left edge of the text.
QMouseEvent besideText(const QMouseEvent& event)
{
    return {
        event.type(),   {0, event.position().y()}, event.scenePosition(), event.globalPosition(),
        event.button(), event.buttons(),           event.modifiers(),     event.pointingDevice()};
}

} // namespace

LineNumberView::LineNumberView(TextViewWidget& view)
    : QWidget(&view), m_font(m_look.font, view.textGeometry().font())
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setCursor(Qt::ArrowCursor);
    setClientView(&view);
}

void LineNumberView::setClientView(TextViewWidget* view)
{
    const bool hidden = testAttribute(Qt::WA_WState_ExplicitShowHide) && isHidden();
    if (m_client) {
        disconnect(m_client, nullptr, this, nullptr);
        disconnect(&m_client->editor().textStorage(), nullptr, this, nullptr);
        m_client->viewport()->removeEventFilter(this);
        m_client->setRulerWidth(0);
    }
    m_client = view;
    setParent(view);
    invalidateLineIndices();
    if (!view)
        return;
    connect(&view->editor().textStorage(), &TextStorage::edited, this,
            &LineNumberView::textDidChange);
    connect(view, &TextViewWidget::refreshed, this, &LineNumberView::followView);
    view->viewport()->installEventFilter(this);
    followFont();
    setVisible(!hidden);
    update();
}

TextViewWidget* LineNumberView::clientView() const
{
    return m_client;
}

// The lines

void LineNumberView::textDidChange()
{
    invalidateLineIndices();
    // Nobody sees it yet, and it shall not be seen to grow.
    if (!isVisible())
        setRuleThickness(requiredThickness());
}

const LineIndices& LineNumberView::lineIndices()
{
    if (!m_lineIndices)
        calculateLines();
    return *m_lineIndices;
}

void LineNumberView::calculateLines()
{
    m_lineIndices.emplace(m_client ? m_client->editor().string() : TextSnapshot());
    const auto fits = [this] {
        return std::abs(requiredThickness() - m_thickness) <= thicknessTolerance;
    };
    if (fits() || std::exchange(m_thicknessPending, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this, fits] {
            m_thicknessPending = false;
            if (!fits())
                setRuleThickness(requiredThickness());
        },
        Qt::QueuedConnection);
}

LineIndex LineNumberView::lineNumberForLocation(int y) const
{
    return m_client ? m_client->textViewport().rowAtY(y).row.line : LineIndex();
}

// The markers

void LineNumberView::setMarkers(const std::vector<LineNumberMarker>& markers)
{
    m_markers.clear();
    for (const LineNumberMarker& marker : markers)
        addMarker(marker);
    update();
}

void LineNumberView::addMarker(const LineNumberMarker& marker)
{
    m_markers.insert_or_assign(marker.lineNumber.value(), marker);
    update();
}

void LineNumberView::removeMarker(const LineNumberMarker& marker)
{
    m_markers.erase(marker.lineNumber.value());
    update();
}

const LineNumberMarker* LineNumberView::markerAtLine(LineIndex line) const
{
    const auto it = m_markers.find(line.value());
    return it == m_markers.end() ? nullptr : &it->second;
}

// Looks

void LineNumberView::setLook(const LineNumberLook& look)
{
    if (look == m_look)
        return;
    m_look = look;
    m_darkBackground = {};
    if (const auto& background = look.backgroundColor)
        m_darkBackground = QColor::fromRgbF(background->redF() * shadeOfBackground,
                                            background->greenF() * shadeOfBackground,
                                            background->blueF() * shadeOfBackground);
    m_textFont = {};
    followFont();
    update();
}

/// Numbers fit the text beside them.
void LineNumberView::followFont()
{
    if (!m_client || m_textFont == m_client->textFont())
        return;
    m_textFont = m_client->textFont();
    m_font = NumberFont(m_look.font, m_client->textGeometry().font());
    invalidateLineIndices();
    update();
}

int LineNumberView::requiredThickness()
{
    const qsizetype widest = std::max(lineIndices().count(), m_expectedLines);
    return quillory::requiredThickness(m_font.widthOfDigits(digitCount(widest)));
}

void LineNumberView::expectLines(qsizetype count)
{
    m_expectedLines = count;
    setRuleThickness(requiredThickness());
}

void LineNumberView::setRuleThickness(int thickness)
{
    m_thickness = thickness;
    takeRoom();
}

void LineNumberView::takeRoom()
{
    if (!m_client)
        return;
    m_client->setRulerWidth(isHidden() ? 0 : m_thickness);
    setGeometry(m_client->rulerRect());
}

// Painting

std::vector<LineNumberView::Place> LineNumberView::places() const
{
    std::vector<Place> result;
    for (const TextViewport::VisibleRow& visible : m_client->textViewport().rows()) {
        if (visible.row.range.location == visible.row.content.location)
            result.push_back({visible.y, visible.row.line});
    }
    return result;
}

void LineNumberView::followView()
{
    if (!m_client || isHidden())
        return;
    followFont();
    lineIndices();
    std::vector<Place> now = places();
    std::vector<Place> changed;
    std::set_symmetric_difference(now.begin(), now.end(), m_shown.begin(), m_shown.end(),
                                  std::back_inserter(changed));
    if (changed.empty())
        return;
    m_shown = std::move(now);
    const int bottom = changed.back().y + m_client->textViewport().rowHeight();
    update(0, changed.front().y, width(), bottom - changed.front().y);
}

std::vector<LineNumberView::Label> LineNumberView::labels() const
{
    std::vector<Label> result;
    if (!m_client)
        return result;
    const int rowHeight = m_client->textViewport().rowHeight();
    const double top = labelOffset(rowHeight, m_font.height()) - rulerOrigin;
    const int baseline = int(std::round(top + m_font.ascent()));
    for (const Place& place : places()) {
        const double labelWidth = m_font.widthOf(place.line.value() + 1);
        result.push_back(
            {place.line,
             {0, place.y, width(), rowHeight},
             {width() - labelWidth - labelMargin, place.y + top, labelWidth, m_font.height()},
             place.y + baseline});
    }
    return result;
}

void LineNumberView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    drawHashMarksAndLabelsInRect(painter, event->rect());
}

void LineNumberView::drawHashMarksAndLabelsInRect(QPainter& painter, const QRect& rect)
{
    painter.fillRect(rect, m_look.backgroundColor.value_or(palette().color(QPalette::Window)));
    painter.fillRect(width() - 1, rect.top(), 1, rect.height(), separatorColour);
    std::vector<NumberFont::Placed> plain;
    std::vector<NumberFont::Placed> marked;
    for (const Label& label : labels()) {
        if (!label.row.intersects(rect))
            continue;
        const LineNumberMarker* marker = markerAtLine(label.line);
        if (marker)
            drawMarker(painter, *marker, label.row);
        (marker ? marked : plain)
            .push_back({label.line.value() + 1, QPointF(label.rect.x(), label.baseline)});
    }
    painter.setPen(m_look.textColor);
    m_font.draw(painter, plain);
    painter.setPen(m_look.alternateTextColor);
    m_font.draw(painter, marked);
    paintGrain(painter, rect);
}

void LineNumberView::drawMarker(QPainter& painter, const LineNumberMarker& marker, const QRect& row)
{
    const QPixmap image = imageFor(marker);
    painter.drawPixmap(QPointF(width() - image.deviceIndependentSize().width() - markerMargin,
                               row.y() + row.height() / 2.0 - marker.imageOrigin.y()),
                       image);
}

// Events

bool LineNumberView::event(QEvent* event)
{
    if (event->type() == QEvent::ShowToParent && m_client)
        setRuleThickness(requiredThickness());
    else if (event->type() == QEvent::HideToParent)
        takeRoom();
    return QWidget::event(event);
}

bool LineNumberView::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move) {
        setGeometry(m_client->rulerRect());
        update(); // rows that wrap may be others at once
    }
    return QWidget::eventFilter(watched, event);
}

void LineNumberView::mousePressEvent(QMouseEvent* event)
{
    if (!m_client || event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_client->pressBesideText(besideText(*event));
}

void LineNumberView::mouseDoubleClickEvent(QMouseEvent* event)
{
    mousePressEvent(event);
}

void LineNumberView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_client)
        m_client->mouse().move(besideText(*event));
}

void LineNumberView::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_client)
        m_client->mouse().release(besideText(*event));
}

void LineNumberView::wheelEvent(QWheelEvent* event)
{
    if (m_client)
        QCoreApplication::sendEvent(m_client->viewport(), event);
}

} // namespace quillory
