#pragma once

#include <QDialog>
#include <QPageLayout>
#include <array>

class QComboBox;
class QDoubleSpinBox;

namespace quillory {

/// Asks for paper, orientation and margins. It looks for no printer, so it opens at once whatever
/// the print service does.
class PageSetupDialog : public QDialog
{
    Q_OBJECT

public:
    PageSetupDialog(const QPageLayout& layout, QWidget* parent);

    QPageLayout pageLayout() const;

private:
    QPageLayout m_layout;
    QComboBox* m_paper;
    QComboBox* m_orientation;
    std::array<QDoubleSpinBox*, 4> m_margins; ///< left, top, right, bottom
};

} // namespace quillory
