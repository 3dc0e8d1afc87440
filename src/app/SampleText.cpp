#include "app/SampleText.h"

#include "app/ViewAppearance.h"
#include "view/MarkerLineNumberView.h"
#include "view/TextViewWidget.h"

#include <QVBoxLayout>

namespace quillory {

namespace {

const QString language = QStringLiteral("JavaScript");
constexpr TextOffset caret = 120; ///< the line there has the band

/// The first line is longer than the window, so that one sees whether lines wrap.
const QString& sample()
{
    static const QString text =
        QStringLiteral("// The five largest cities within reach of a place, by name and distance\n"
                       "import { cities } from \"./atlas.js\";\n"
                       "\n"
                       "export function within(place, reach = 250) {\n"
                       "    const found = cities\n"
                       "        .filter(city => city.distance(place) < reach)\n"
                       "        .sort((a, b) => b.people - a.people);\n"
                       "    if (found.length === 0)\n"
                       "        throw new Error('nothing near ' + place);\n"
                       "    return found.slice(0, 5).map(city => city.name);\n"
                       "}\n");
    return text;
}

} // namespace

SampleText::SampleText(const DocumentEnvironment& environment, QWidget* parent)
    : QFrame(parent), m_document(environment),
      m_view(new TextViewWidget(m_document.textView(), m_document.overlay(), this,
                                ViewAppearance::fontOf(environment.defaults))),
      m_appearance(
          std::make_unique<ViewAppearance>(*m_view, environment, m_document.syntaxColouring()))
{
    setFrameShape(QFrame::StyledPanel);
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setFocusPolicy(Qt::NoFocus);
    m_view->setAccessibleName(tr("Sample of the theme and the font"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    auto* ruler = new MarkerLineNumberView(*m_view);
    connect(m_view, &TextViewWidget::coloursChanged, ruler,
            [this, ruler] { ruler->setLook(LineNumberLook::beside(m_view->colours())); });
    connect(&m_document, &Document::textViewSettingsApplied, this, &SampleText::applySettings);
    connect(m_view, &TextViewWidget::visibleRangeChanged, &m_document, &Document::pageRecolour);
    m_document.windowControllerDidLoadNib(this);
    m_document.textStorage().replaceCharactersInRange({}, sample());
    m_document.setDefinitionWithTitle(language);
    m_document.textView().setSelectedRange({caret, 0});
    m_document.textView().setEditable(false);
    applySettings();
}

SampleText::~SampleText()
{
    delete m_view; // it looks at the document to the last
}

void SampleText::applySettings()
{
    m_appearance->apply();
    m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

TextRange SampleText::visibleTextRange()
{
    return m_view->visibleRange();
}

} // namespace quillory
