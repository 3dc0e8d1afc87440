#pragma once

#include "app/PdfSearch.h"

#include <QWidget>

class QLabel;

namespace quillory {

class FindField;
class PagesView;

/// The strip below the pages of a PDF that finds a text in them, marks it and goes from one place
/// to the next. Hidden until it is opened.
class PdfFindBar : public QWidget
{
    Q_OBJECT

public:
    PdfFindBar(PagesView& view, QWidget* parent);

    /// What is searched from now on; the needle stays.
    void setFile(const std::shared_ptr<PdfFile>& file);
    void open();
    void close();
    /// Opens the strip where there is nothing to find yet.
    void findNext(int step = 1);

    QString state() const;
    bool isSearching() const { return m_search.isRunning(); }

private:
    void search();
    void chooseFirst();
    void goTo(int hit);
    void locate();
    void showMarks();
    void showState();

    PagesView& m_view;
    PdfSearch m_search;
    std::shared_ptr<PdfFile> m_file;
    FindField* m_field;
    QLabel* m_state;
    int m_current = -1;  ///< of the search's hits
    int m_firstPage = 0; ///< where the search began
    bool m_shallReveal = false;
};

} // namespace quillory
