#include "app/PreferenceFields.h"

#include "app/PreferenceBindings.h"
#include "app/PreferencesController.h"
#include "app/ViewAppearance.h"
#include "commands/PrintFooter.h"
#include "foundation/UserDefaults.h"
#include "syntax/FontChoice.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace quillory {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("Preferences", text);
}

/// A widget to lay controls out in, side by side.
QWidget* newLine()
{
    auto* line = new QWidget;
    auto* layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    return line;
}

QLabel* addLabel(QWidget& line, const QString& text, QWidget* buddy)
{
    auto* label = new QLabel(text, &line);
    label->setBuddy(buddy);
    buddy->setAccessibleName(QString(text).remove(u'&').remove(u':'));
    line.layout()->addWidget(label);
    line.layout()->addWidget(buddy);
    return label;
}

/// What the fonts are called, and which takes the place of one that is not installed.
void nameFonts(QComboBox& fonts, const UserDefaults& defaults)
{
    const QString standIn = QFontInfo(QFontDatabase::systemFont(QFontDatabase::FixedFont)).family();
    const auto title = [&](const QString& name) {
        return QFontDatabase::hasFamily(name) ? name
                                              : tr("%1 (not installed: %2)").arg(name, standIn);
    };
    const QStringList names = FontChoice::names();
    for (int i = 0; i < names.size(); ++i)
        fonts.setItemText(i, title(names[i]));
    const QString own = defaults.value(keys::customFontName);
    fonts.setItemText(FontChoice::custom, own.isEmpty() ? tr("Another font…") : title(own));
}

} // namespace

QWidget* newFontField(PreferencesController& controller, PreferenceBindings& bindings)
{
    QWidget* const line = newLine();
    auto* layout = static_cast<QHBoxLayout*>(line->layout());
    auto* fonts = new QComboBox(line);
    fonts->setObjectName(QStringLiteral("font"));
    fonts->addItems(QStringList(FontChoice::custom + 1));
    bindings.watch({keys::customFontName.name},
                   [fonts, &controller] { nameFonts(*fonts, controller.defaults()); });
    bindings.bind(*fonts, keys::font, 0);
    QObject::connect(fonts, &QComboBox::activated, &controller, [fonts, &controller](int index) {
        if (index == FontChoice::custom &&
            controller.defaults().value(keys::customFontName).isEmpty())
            controller.chooseFont(fonts->window());
    });
    layout->addWidget(fonts, 1);
    line->setFocusProxy(fonts);

    auto* size = new QSpinBox(line);
    size->setObjectName(QStringLiteral("fontSize"));
    size->setRange(FontChoice::smallest, FontChoice::largest);
    size->setSuffix(tr(" pt"));
    bindings.bind(*size, keys::fontSize, FontChoice::smallest);
    addLabel(*line, tr("Si&ze:"), size);

    auto* choose = new QPushButton(tr("C&hoose…"), line);
    choose->setAutoDefault(false);
    choose->setAccessibleDescription(tr("Choose another font"));
    QObject::connect(choose, &QPushButton::clicked, &controller,
                     [line, &controller] { controller.chooseFont(line->window()); });
    layout->addWidget(choose);
    return line;
}

QWidget* newSchemeThemesField(PreferencesController& controller, PreferenceBindings& bindings)
{
    QWidget* const line = newLine();
    const auto add = [&](const QString& label, const DefaultsKey<QString>& key) {
        auto* themes = new QComboBox(line);
        themes->setModel(&controller.themeModel());
        bindings.bind(*themes, key);
        // The list is read anew each time that the window is shown.
        QObject::connect(&controller.themeModel(), &QAbstractItemModel::modelReset, themes,
                         [themes, &controller, key] {
                             themes->setCurrentIndex(
                                 themes->findData(controller.defaults().value(key)));
                         });
        addLabel(*line, label, themes);
        return themes;
    };
    line->setFocusProxy(add(tr("&Light:"), keys::lightTheme));
    add(tr("Da&rk:"), keys::darkTheme);
    static_cast<QHBoxLayout*>(line->layout())->addStretch(1);
    return line;
}

QWidget* newFolderField(PreferencesController& controller, PreferenceBindings& bindings)
{
    QWidget* const line = newLine();
    auto* path = new QLineEdit(line);
    path->setReadOnly(true);
    auto* choose = new QPushButton(tr("C&hoose…"), line);
    auto* forget = new QPushButton(tr("&Remove"), line);
    choose->setAutoDefault(false);
    forget->setAutoDefault(false);
    choose->setAccessibleDescription(tr("Choose the Dropbox folder"));
    forget->setAccessibleDescription(tr("Have no Dropbox folder"));
    UserDefaults& defaults = controller.defaults();
    QObject::connect(choose, &QPushButton::clicked, &controller,
                     &PreferencesController::selectDropboxPath);
    QObject::connect(forget, &QPushButton::clicked, &controller,
                     [&defaults] { defaults.remove(keys::dropboxPath); });
    bindings.watch({keys::dropboxPath.name}, [path, forget, &defaults] {
        const QUrl folder = defaults.value(keys::dropboxPath);
        path->setText(folder.isEmpty()       ? tr("None is chosen")
                      : folder.isLocalFile() ? folder.toLocalFile()
                                             : folder.toDisplayString());
        path->setEnabled(!folder.isEmpty());
        forget->setEnabled(!folder.isEmpty());
    });
    line->layout()->addWidget(path);
    line->layout()->addWidget(choose);
    line->layout()->addWidget(forget);
    line->setFocusProxy(choose);
    return line;
}

QWidget* newVersionListField(PreferencesController&, PreferenceBindings& bindings)
{
    auto* address = new QLineEdit;
    address->setPlaceholderText(tr("An address is needed: https://…"));
    bindings.bind(*address, keys::versionListAddress);
    return address;
}

QWidget* newFooterSample(PreferencesController& controller, PreferenceBindings& bindings)
{
    auto* sample = new QLabel;
    sample->setTextFormat(Qt::PlainText);
    sample->setAlignment(Qt::AlignCenter);
    sample->setFrameShape(QFrame::StyledPanel);
    sample->setAutoFillBackground(true);
    sample->setMargin(6);
    sample->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed); // however long the footer is
    // Paper is white on a dark desktop too.
    QPalette paper = sample->palette();
    paper.setColor(QPalette::Window, Qt::white);
    paper.setColor(QPalette::WindowText, Qt::black);
    sample->setPalette(paper);
    constexpr int page = 2;
    constexpr int pages = 12;
    bindings.watch(
        {keys::footerIncludeTitle.name, keys::footerTitle.name, keys::footerIncludeAuthor.name,
         keys::footerAuthor.name, keys::prefsPrintNumbers.name, keys::prefsPrintNumbersTag.name,
         keys::convertMarkdown.name, keys::convertedFontName.name, keys::plainFontName.name},
        [sample, &controller] {
            const PrintFooter footer = PrintFooter::from(controller.defaults());
            QFont font = footer.fontName.isEmpty() ? QFont() : QFont(footer.fontName);
            font.setPointSize(PrintFooter::fontSize);
            sample->setFont(font);
            sample->setText(footer.text(page, pages));
        });
    return sample;
}

} // namespace quillory
