#include "app/PageSetupDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLocale>

namespace quillory {

namespace {

constexpr QPageSize::PageSizeId papers[] = {
    QPageSize::A3,     QPageSize::A4,    QPageSize::A5,      QPageSize::B4,       QPageSize::B5,
    QPageSize::Letter, QPageSize::Legal, QPageSize::Tabloid, QPageSize::Executive};
constexpr double widestMargin = 0.4; ///< part of the paper

} // namespace

PageSetupDialog::PageSetupDialog(const QPageLayout& layout, QWidget* parent)
    : QDialog(parent), m_layout(layout), m_paper(new QComboBox(this)),
      m_orientation(new QComboBox(this))
{
    setWindowTitle(tr("Page Setup"));
    const bool isMetric = QLocale().measurementSystem() == QLocale::MetricSystem;
    m_layout.setUnits(isMetric ? QPageLayout::Millimeter : QPageLayout::Inch);
    for (const QPageSize::PageSizeId paper : papers)
        m_paper->addItem(QPageSize::name(paper), int(paper));
    int current = m_paper->findData(int(layout.pageSize().id()));
    if (current < 0) {
        current = m_paper->count();
        m_paper->addItem(layout.pageSize().name(), -1);
    }
    m_paper->setCurrentIndex(current);
    m_orientation->addItems({tr("Portrait"), tr("Landscape")});
    m_orientation->setCurrentIndex(layout.orientation() == QPageLayout::Landscape ? 1 : 0);

    auto* form = new QFormLayout;
    form->addRow(tr("&Paper:"), m_paper);
    form->addRow(tr("&Orientation:"), m_orientation);
    const QMarginsF margins = m_layout.margins();
    const double values[] = {margins.left(), margins.top(), margins.right(), margins.bottom()};
    const QString names[] = {tr("&Left margin:"), tr("&Top margin:"), tr("&Right margin:"),
                             tr("&Bottom margin:")};
    const QSizeF paper = m_layout.pageSize().size(QPageSize::Unit(m_layout.units()));
    for (size_t i = 0; i < m_margins.size(); ++i) {
        m_margins[i] = new QDoubleSpinBox(this);
        m_margins[i]->setRange(0, std::min(paper.width(), paper.height()) * widestMargin);
        m_margins[i]->setDecimals(isMetric ? 1 : 2);
        m_margins[i]->setSingleStep(isMetric ? 1 : 0.05);
        m_margins[i]->setSuffix(isMetric ? tr(" mm") : tr(" in"));
        m_margins[i]->setValue(values[i]);
        form->addRow(names[i], m_margins[i]);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* all = new QVBoxLayout(this);
    all->addLayout(form);
    all->addWidget(buttons);
    all->setSizeConstraint(QLayout::SetFixedSize);
}

QPageLayout PageSetupDialog::pageLayout() const
{
    QPageLayout layout = m_layout;
    if (const int paper = m_paper->currentData().toInt(); paper >= 0)
        layout.setPageSize(QPageSize(QPageSize::PageSizeId(paper)));
    layout.setOrientation(m_orientation->currentIndex() == 1 ? QPageLayout::Landscape
                                                             : QPageLayout::Portrait);
    layout.setMinimumMargins({});
    layout.setMargins({m_margins[0]->value(), m_margins[1]->value(), m_margins[2]->value(),
                       m_margins[3]->value()});
    return layout;
}

} // namespace quillory
