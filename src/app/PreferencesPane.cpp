#include "app/PreferencesPane.h"

#include "app/PreferenceBindings.h"
#include "app/PreferencesController.h"
#include "foundation/UserDefaults.h"

#include <QCheckBox>
#include <QFontComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QStyle>

namespace quillory {

namespace {

// Columns: the headings, the check boxes, the fields behind them.
constexpr int headingColumn = 0;
constexpr int boxColumn = 1;
constexpr int fieldColumn = 2;
constexpr int fieldColumns = 2; ///< from the check boxes on

constexpr int groupGap = 10; ///< above a heading, beside the layout's own, in pixels
constexpr int tallStretch = 100;
constexpr int textWidth = 24; ///< characters that a text field shows at least

template<class... Cases>
struct Either : Cases...
{
    using Cases::operator()...;
};
template<class... Cases>
Either(Cases...) -> Either<Cases...>;

/// In fainter ink than the rest, in whatever colours the desktop has.
class FaintLabel : public QLabel
{
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setOpacity(0.65);
        const QRect room =
            QStyle::visualRect(layoutDirection(), rect(), rect().adjusted(indent(), 0, 0, 0));
        style()->drawItemText(&painter, room,
                              int(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft)) |
                                  Qt::AlignVCenter,
                              palette(), isEnabled(), text(), QPalette::WindowText);
    }
};

/// For who cannot see what stands before a field.
QString spoken(const char* label)
{
    QString name = preferenceText(label).remove(u'&');
    if (name.endsWith(u':'))
        name.chop(1);
    return name;
}

} // namespace

PreferencesPane::PreferencesPane(const PreferencesPaneDefinition& definition,
                                 PreferencesController& controller, PreferenceBindings& bindings)
    : m_controller(controller), m_bindings(bindings), m_layout(new QGridLayout(this))
{
    m_layout->setColumnStretch(fieldColumn, 1);
    for (const PreferenceRow& row : definition.rows)
        addRow(row);
    m_layout->setRowStretch(m_layout->rowCount(), 1);
}

void PreferencesPane::addRow(const PreferenceRow& row)
{
    int line = m_layout->count() > 0 ? m_layout->rowCount() : 0;
    const auto* const own = std::get_if<OwnField>(&row.field);
    const bool isTall = own && own->isTall;
    QLabel* heading = nullptr;
    if (row.heading) {
        if (line > 0)
            m_layout->setRowMinimumHeight(line++, groupGap);
        heading = new QLabel(preferenceText(row.heading), this);
        m_layout->addWidget(heading, line, headingColumn, isTall ? Qt::AlignTop : Qt::AlignVCenter);
    }
    QCheckBox* const box = newBox(row);
    QWidget* const field = newField(row);
    if (box)
        m_layout->addWidget(box, line, boxColumn, 1, field ? 1 : fieldColumns);
    if (field) {
        m_layout->addWidget(field, line, box ? fieldColumn : boxColumn, 1, box ? 1 : fieldColumns);
        if (field->accessibleName().isEmpty())
            field->setAccessibleName(spoken(box ? row.label : row.heading));
        if (box)
            connectFieldTo(*box, *field, row);
        else
            heading->setBuddy(field->focusProxy() ? field->focusProxy() : field);
    }
    if (isTall)
        m_layout->setRowStretch(line, tallStretch);
    if (row.help)
        addHelp(preferenceText(row.help), line + 1);
}

/// Below the label of a check box, in fainter ink.
void PreferencesPane::addHelp(const QString& text, int line)
{
    auto* help = new FaintLabel(text, this);
    help->setIndent(style()->pixelMetric(QStyle::PM_IndicatorWidth) +
                    style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing));
    m_layout->addWidget(help, line, boxColumn, 1, fieldColumns);
}

QCheckBox* PreferencesPane::newBox(const PreferenceRow& row)
{
    if (!row.label)
        return nullptr;
    auto* box = new QCheckBox(preferenceText(row.label), this);
    if (row.help)
        box->setAccessibleDescription(preferenceText(row.help));
    std::visit(
        Either{[](std::monostate) {},
               [&](const DefaultsKey<bool>* key) { m_bindings.bind(*box, *key, row.isInverted); },
               [&](const DefaultsKey<int>* key) { m_bindings.bind(*box, *key); }},
        row.flag);
    return box;
}

QWidget* PreferencesPane::newField(const PreferenceRow& row)
{
    return std::visit(Either{[](std::monostate) -> QWidget* { return nullptr; },
                             [&](const TextField& text) -> QWidget* {
                                 auto* field = new QLineEdit(this);
                                 field->setMinimumWidth(field->fontMetrics().averageCharWidth() *
                                                        textWidth);
                                 m_bindings.bind(*field, *text.key);
                                 return field;
                             },
                             [&](const ChoiceField& choice) -> QWidget* {
                                 auto* field = new QComboBox(this);
                                 for (const char* text : choice.texts)
                                     field->addItem(preferenceText(text));
                                 m_bindings.bind(*field, *choice.key);
                                 return field;
                             },
                             [&](const FontField& font) -> QWidget* {
                                 auto* field = new QFontComboBox(this);
                                 field->setEditable(false);
                                 m_bindings.bind(*field, *font.key);
                                 return field;
                             },
                             [&](const OwnField& own) -> QWidget* {
                                 QWidget* field = own.make(m_controller, m_bindings);
                                 field->setParent(this);
                                 return field;
                             }},
                      row.field);
}

void PreferencesPane::connectFieldTo(QCheckBox& box, QWidget& field, const PreferenceRow& row)
{
    field.setEnabled(box.isChecked());
    connect(&box, &QCheckBox::toggled, &field, &QWidget::setEnabled);
    const auto* const text = std::get_if<TextField>(&row.field);
    if (!text)
        return;
    // An empty field is an empty text, not one that was never written.
    connect(&box, &QCheckBox::clicked, this, [this, key = text->key](bool isChecked) {
        UserDefaults& defaults = m_controller.defaults();
        if (isChecked && !defaults.isWritten(*key))
            defaults.setValue(*key, QString());
    });
}

} // namespace quillory
