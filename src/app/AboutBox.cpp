#include "app/AboutBox.h"

#include <QCoreApplication>
#include <QIcon>
#include <QMessageBox>

namespace quillory {

void showAboutBox(QWidget* window)
{
    const auto tr = [](const char* text) { return QCoreApplication::translate("AboutBox", text); };
    auto* box = new QMessageBox(QMessageBox::NoIcon, tr("About Quillory"),
                                tr("Quillory %1").arg(QLatin1StringView(QUILLORY_VERSION)),
                                QMessageBox::Close, window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setIconPixmap(QIcon(QStringLiteral(":/icons/quillory.svg")).pixmap(64, 64));
    box->setInformativeText(tr("An editor for text and source code.\n"
                               "Free software under the MIT licence."));
    box->open();
}

} // namespace quillory
