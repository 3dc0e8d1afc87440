#include "app/PreferencesTable.h"

#include "app/PreferenceFields.h"
#include "app/ThemeChooser.h"

#include <array>

namespace quillory {

namespace {

constexpr std::array pageNumberStyles{
    PREFERENCE("1"),
    PREFERENCE("-- 1 --"),
    PREFERENCE("Page 1"),
    PREFERENCE("Page 1 of 12"),
};

constexpr PreferenceRow appearance[]{
    {.heading = PREFERENCE("&Theme:"), .field = OwnField{newThemeChooser, true}},
    {.label = PREFERENCE("Follow the &desktop:"),
     .help = PREFERENCE("Changes the theme as the desktop changes between light and dark."),
     .flag = &keys::themeFollowsDesktop,
     .field = OwnField{newSchemeThemesField}},
    {.heading = PREFERENCE("&Font:"), .field = OwnField{newFontField}},
    {.heading = PREFERENCE("Text:"),
     .label = PREFERENCE("&Wrap lines at the edge of the window"),
     .flag = &keys::wrapLines},
    {.label = PREFERENCE("Highli&ght the lines of the selection"), .flag = &keys::highlight},
    {.heading = PREFERENCE("Colours:"),
     .label = PREFERENCE("Colour &strings that go over several lines"),
     .flag = &keys::colourMultiLineStrings},
    {.label = PREFERENCE("Colour w&ords of all kinds as keywords"),
     .help =
         PREFERENCE("Kinds with a colour of their own keep it where a word is spelt as listed."),
     .flag = &keys::colourAutocompleteWordsAsKeywords},
};

constexpr PreferenceRow editing[]{
    {.heading = PREFERENCE("Typing:"),
     .label = PREFERENCE("&Indent new lines like the line before"),
     .help = PREFERENCE("One tab deeper after “{”; “}” goes back to where its line began."),
     .flag = &keys::indentNewLinesBraces},
    {.label = PREFERENCE("Close &brackets when they are opened"),
     .help = PREFERENCE("Parentheses, braces, brackets and “<”, also where it compares."),
     .flag = &keys::insertClosingParenthesisandBrace},
    {.label = PREFERENCE("&Replace shortcuts by the texts of your list"),
     .help = PREFERENCE("Edit > Edit Text Replacements opens the list."),
     .flag = &keys::textReplacement},
    {.label = PREFERENCE("&Keep typing at the same height of the window"),
     .help = PREFERENCE("Typewriter scrolling: the text moves, not the line that you type on."),
     .flag = &keys::constrainScroll},
    {.heading = PREFERENCE("Words:"),
     .label = PREFERENCE("&Offer completions when typing pauses"),
     .help = PREFERENCE("Ctrl+Space offers them at any time."),
     .flag = &keys::showCompletions},
    {.label = PREFERENCE("Check &spelling while typing"),
     .help = PREFERENCE("Edit > Spelling Language chooses the language."),
     .flag = &keys::checkSpelling},
    {.label = PREFERENCE("Keep the spaces right when whole &words are cut and pasted"),
     .help = PREFERENCE("Words are whole when a double click selected them."),
     .flag = &keys::smartCopy},
    {.heading = PREFERENCE("Saving:"),
     .label = PREFERENCE("Save by itsel&f when typing pauses"),
     .help = PREFERENCE("Documents that have a file. File > Revert To brings back what it held."),
     .flag = &keys::autosaveInPlace},
};

constexpr PreferenceRow printing[]{
    {.heading = PREFERENCE("Footer:"),
     .label = PREFERENCE("&Title:"),
     .flag = &keys::footerIncludeTitle,
     .field = TextField{&keys::footerTitle}},
    {.label = PREFERENCE("A&uthor:"),
     .flag = &keys::footerIncludeAuthor,
     .field = TextField{&keys::footerAuthor}},
    {.label = PREFERENCE("Page &numbers:"),
     .flag = &keys::prefsPrintNumbers,
     .field = ChoiceField{&keys::prefsPrintNumbersTag, pageNumberStyles}},
    {.label = PREFERENCE("No footer on the &first page"), .flag = &keys::prefsSkip1Page},
    {.heading = PREFERENCE("F&ont:"), .field = FontField{&keys::plainFontName}},
    {.label = PREFERENCE("Use th&is font instead:"),
     .flag = &keys::convertMarkdown,
     .field = FontField{&keys::convertedFontName}},
    {.heading = PREFERENCE("Sample:"), .field = OwnField{newFooterSample}},
};

constexpr PreferenceRow advanced[]{
    {.heading = PREFERENCE("At the start:"),
     .label = PREFERENCE("Sho&w the welcome window"),
     .help = PREFERENCE("When no file is named. Help > Welcome shows it at any time."),
     .flag = &keys::showWelcome},
    {.label = PREFERENCE("&Bring back the windows of the last session"),
     .help = PREFERENCE("With their texts, also those that were not saved."),
     .flag = &keys::restoresWindows},
    {.heading = PREFERENCE("New documents:"),
     .label = PREFERENCE("A&sk for language, encoding and line breaks"),
     .help = PREFERENCE("A moment after they open, until you begin to type."),
     .flag = &keys::dontAsk,
     .isInverted = true},
    {.heading = PREFERENCE("Full screen:"),
     .label = PREFERENCE("&Keep the width of the window"),
     .help = PREFERENCE("The text gets the full height of the screen, and no longer lines."),
     .flag = &keys::proposedSize},
    {.heading = PREFERENCE("Web preview:"),
     .label = PREFERENCE("Offer the &inspector for web pages"),
     .flag = &keys::enableWebInspector},
    {.heading = PREFERENCE("New versions:"),
     .label = PREFERENCE("&Look once a day at:"),
     .help = PREFERENCE("The address of a version list. Nothing is asked until there is one."),
     .flag = &keys::checksForVersions,
     .field = OwnField{newVersionListField}},
    {.heading = PREFERENCE("Dropbox &folder:"), .field = OwnField{newFolderField}},
};

} // namespace

std::span<const PreferencesPaneDefinition> preferencesTable()
{
    static constexpr std::array panes{
        PreferencesPaneDefinition{PREFERENCE("&Appearance"), "appearance", appearance},
        PreferencesPaneDefinition{PREFERENCE("&Editing"), "editing", editing},
        PreferencesPaneDefinition{PREFERENCE("&Printing"), "printing", printing},
        PreferencesPaneDefinition{PREFERENCE("Ad&vanced"), "advanced", advanced},
    };
    return panes;
}

QString preferenceText(const char* text)
{
    return QCoreApplication::translate("Preferences", text);
}

} // namespace quillory
