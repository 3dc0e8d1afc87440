#include "app/LoadingBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace quillory {

namespace {

constexpr int longestName = 120; ///< pixels

} // namespace

LoadingBar::LoadingBar(QWidget* parent) : QFrame(parent)
{
    hide();
}

void LoadingBar::build()
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
    m_cancel->setToolTip(tr("Stop reading and close the file (Esc)"));
    m_cancel->setFocusPolicy(Qt::NoFocus); // the keyboard stays with the text
    connect(m_cancel, &QPushButton::clicked, this, &LoadingBar::cancelClicked);
    layout->addWidget(m_text, 3);
    layout->addWidget(m_progress, 2);
    layout->addWidget(m_cancel);
}

void LoadingBar::begin(const QString& name)
{
    if (!m_text)
        build();
    const QString shown = m_text->fontMetrics().elidedText(name, Qt::ElideMiddle, longestName);
    m_text->setText(tr("Reading “%1”; it can be edited afterwards").arg(shown));
    m_text->setToolTip(name);
    m_progress->setAccessibleName(m_text->text());
    m_progress->setValue(percent());
    show();
}

void LoadingBar::setShare(double share)
{
    m_share = share;
    if (m_progress)
        m_progress->setValue(percent());
}

void LoadingBar::end()
{
    hide();
}

int LoadingBar::percent() const
{
    return int(m_share * 100);
}

} // namespace quillory
