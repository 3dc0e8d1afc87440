#pragma once

#include "document/CloudListing.h"

#include <QPointer>
#include <QWidget>

class QLabel;
class QLineEdit;
class QModelIndex;
class QPushButton;
class QStackedWidget;
class QTreeView;

namespace quillory {

class CloudFilter;
class CloudModel;
class DocumentController;
class DocumentWindow;
struct DocumentEnvironment;

/// The window that lists the files of the shared folder, to search for one and open it. The
/// keyboard stays with the field to search in: arrows move in the list, Return opens.
class CloudBrowser : public QWidget
{
    Q_OBJECT

public:
    /// Both outlive this.
    CloudBrowser(DocumentController& controller, const DocumentEnvironment& environment);
    ~CloudBrowser() override;

    /// The folder that the user chose; empty for none.
    static QString folderOf(const DocumentEnvironment& environment);

    /// Lists the folder anew and comes to the front. What is opened may take the place of \a
    /// opener.
    void present(DocumentWindow& opener);
    /// Lists the folder anew.
    void queryiCloud();
    /// The same while the window is shown.
    void renew();
    /// Opens the selected file; this window goes out of the way.
    void openiCloudDocument();
    /// Shows the selected file in the file manager.
    void showiCloudDocumentInFinder();

    const CloudListing& listing() const { return m_listing; }
    QTreeView& table() const { return *m_table; }
    QLineEdit& searchField() const { return *m_search; }
    /// What stands below the list, or in its place.
    QString stateText() const;

Q_SIGNALS:
    void preferencesRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void build();
    void connectAll();
    void search(const QString& text);
    void move(int key);
    void showState();
    void showMenu(const QPoint& place);
    QModelIndex current() const;

    DocumentController& m_controller;
    const DocumentEnvironment& m_environment;
    CloudListing m_listing;
    CloudModel* m_model;
    CloudFilter* m_filter;
    QPointer<DocumentWindow> m_opener;
    QLineEdit* m_search;
    QTreeView* m_table;
    QStackedWidget* m_pages; ///< the table, or a note in its place
    QLabel* m_note;
    QLabel* m_status;
    QPushButton* m_open;
    QPushButton* m_reveal;
    QPushButton* m_stop;
    QPushButton* m_preferences;
    QString m_folder;
    bool m_isPlaced = false; ///< on the screen, by the user
    bool m_isFolder = true;  ///< the last listing found a folder
};

} // namespace quillory
