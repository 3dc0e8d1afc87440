#include "app/ProgressBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace quillory {

namespace {

constexpr int longestName = 120; ///< pixels

} // namespace

ProgressBar::ProgressBar(QWidget* parent) : QFrame(parent)
{
    hide();
}

void ProgressBar::build()
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 3, 6, 3);
    layout->setSpacing(8);
    m_text = new QLabel(this);
    m_text->setTextFormat(Qt::PlainText);
    // However long the file's name is, the window stays as wide as it is.
    m_text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_progress = new QProgressBar(this);
    m_progress->setRange(0, 100);
    m_progress->setMinimumWidth(160);
    m_cancel = new QPushButton(tr("Cancel"), this);
    m_cancel->setFocusPolicy(Qt::NoFocus); // the keyboard stays with the text
    connect(m_cancel, &QPushButton::clicked, this, &ProgressBar::cancelClicked);
    layout->addWidget(m_text, 3);
    layout->addWidget(m_progress, 2);
    layout->addWidget(m_cancel);
}

void ProgressBar::begin(const Work& work)
{
    if (!m_text)
        build();
    const QString shown = m_text->fontMetrics().elidedText(work.name, Qt::ElideMiddle, longestName);
    m_text->setText(work.text.arg(shown));
    m_text->setToolTip(work.name);
    m_cancel->setToolTip(work.cancel);
    m_progress->setAccessibleName(m_text->text());
    m_progress->setValue(percent());
    show();
}

void ProgressBar::setShare(double share)
{
    m_share = share;
    if (m_progress)
        m_progress->setValue(percent());
}

void ProgressBar::end()
{
    hide();
    m_share = 0;
}

int ProgressBar::percent() const
{
    return int(m_share * 100);
}

} // namespace quillory
