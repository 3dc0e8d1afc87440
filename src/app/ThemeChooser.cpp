#include "app/ThemeChooser.h"

#include "app/PreferencesController.h"
#include "app/SampleText.h"
#include "app/ThemeRowDelegate.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QListView>

namespace quillory {

namespace {

constexpr int rowsShown = 5;
constexpr int sampleColumns = 64;
constexpr int textWidth = 20; ///< characters of a theme's name that are shown at least

} // namespace

QWidget* newThemeChooser(PreferencesController& controller, PreferenceBindings&)
{
    auto* chooser = new QWidget;
    auto* themes = new QListView(chooser);
    themes->setObjectName(QStringLiteral("themes"));
    themes->setModel(&controller.themeModel());
    themes->setSelectionModel(&controller.themesArrayController());
    themes->setItemDelegate(new ThemeRowDelegate(themes));
    themes->setUniformItemSizes(true);
    themes->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    themes->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    themes->setMouseTracking(false);
    const int letters = themes->fontMetrics().averageCharWidth() * textWidth;
    const int row = themes->fontMetrics().height() * 2;
    themes->setFixedWidth(letters + 4 * row);
    themes->setMinimumHeight(row * rowsShown);
    themes->setAccessibleName(QCoreApplication::translate("Preferences", "Theme"));

    auto* sample = new SampleText(controller.environment(), chooser);
    sample->setMinimumWidth(sample->fontMetrics().averageCharWidth() * sampleColumns);
    auto* layout = new QHBoxLayout(chooser);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(themes);
    layout->addWidget(sample, 1);
    chooser->setFocusProxy(themes);
    return chooser;
}

} // namespace quillory
