#pragma once

#include <QWidget>
#include <vector>

namespace quillory {

/// The strip between two texts that are compared: shows which lines of one stand for which of the
/// other.
class ComparisonLink : public QWidget
{
    Q_OBJECT

public:
    explicit ComparisonLink(QWidget* parent = nullptr);

    /// From edge to edge: pixels of this widget, the upper and lower end on either side, which may
    /// be the same.
    struct Band
    {
        int left;
        int leftEnd;
        int right;
        int rightEnd;
        QColor colour;
        bool operator==(const Band&) const = default;
    };
    /// \a top: where the texts begin.
    void setBands(const std::vector<Band>& bands, int top, const QColor& background);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<Band> m_bands;
    int m_top = 0;
    QColor m_background;
};

} // namespace quillory
