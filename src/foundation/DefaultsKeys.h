#pragma once

#include <QString>
#include <QUrl>

namespace quillory {

/// Names a user default and says of what type it is.
template<class T>
struct DefaultsKey
{
    const char* name;
};

/// Every user default. Two of them differ in the case of one letter only and are two.
namespace keys {

// Appearance.
inline constexpr DefaultsKey<int> selectedTheme{"selectedTheme"}; ///< index into the theme list
inline constexpr DefaultsKey<bool> themeFollowsDesktop{"themeFollowsDesktop"}; ///< light or dark
inline constexpr DefaultsKey<QString> lightTheme{"lightTheme"}; ///< by name, while it follows
inline constexpr DefaultsKey<QString> darkTheme{"darkTheme"};
inline constexpr DefaultsKey<int> font{"font"}; ///< 0 Edita, 1 Menlo, 2 Courier, 3 Monaco, 4 custom
inline constexpr DefaultsKey<QString> customFontName{"customFontName"};
inline constexpr DefaultsKey<int> fontSize{"fontSize"}; ///< in points, less 11
inline constexpr DefaultsKey<bool> colourAutocompleteWordsAsKeywords{
    "ColourAutocompleteWordsAsKeywords"};
inline constexpr DefaultsKey<bool> colourMultiLineStrings{"ColourMultiLineStrings"};
inline constexpr DefaultsKey<bool> highlight{"highlight"}; ///< the current line
inline constexpr DefaultsKey<bool> wrapLines{"wrapLines"};
inline constexpr DefaultsKey<bool> proposedSize{"proposedSize"}; ///< of a full-screen window

// Editing.
inline constexpr DefaultsKey<bool> indentNewLinesBraces{"indentNewLinesBraces"};
inline constexpr DefaultsKey<bool> insertClosingParenthesisandBrace{
    "insertClosingParenthesisandBrace"};
inline constexpr DefaultsKey<bool> showCompletions{"showCompletions"};
inline constexpr DefaultsKey<bool> constrainScroll{"constrainScroll"}; ///< typewriter scrolling
inline constexpr DefaultsKey<bool> checkSpelling{"checkSpelling"};
inline constexpr DefaultsKey<QString> spellingLanguage{"spellingLanguage"}; ///< empty: desktop's
inline constexpr DefaultsKey<bool> smartCopy{"smartCopy"};
inline constexpr DefaultsKey<bool> textReplacement{"textReplacement"};

// Preview.
inline constexpr DefaultsKey<bool> enableWebInspector{"enableWebInspector"};
inline constexpr DefaultsKey<bool> webKitDeveloperExtras{"WebKitDeveloperExtras"};

// Documents.
inline constexpr DefaultsKey<bool> autosaveInPlace{"autosaveInPlace"};
inline constexpr DefaultsKey<QUrl> dropboxPath{"dropboxPath"};
inline constexpr DefaultsKey<bool> dontAsk{"dontAsk"}; ///< no settings sheet for new documents
inline constexpr DefaultsKey<bool> restoresWindows{"restoresWindows"}; ///< of the last session
inline constexpr DefaultsKey<bool> firstStartEver{"firstStartEver"};
inline constexpr DefaultsKey<bool> isiCloudAvailable{"isiCloudAvailable"};
inline constexpr DefaultsKey<bool> isIcloudAvailable{"isIcloudAvailable"};

// The program beside its documents.
inline constexpr DefaultsKey<bool> showWelcome{"showWelcome"};             ///< at a bare start
inline constexpr DefaultsKey<bool> checksForVersions{"checksForVersions"}; ///< once a day
inline constexpr DefaultsKey<QString> versionListAddress{"versionListAddress"};
inline constexpr DefaultsKey<QString> lastVersionCheck{"lastVersionCheck"}; ///< ISO 8601, UTC
inline constexpr DefaultsKey<QString> skippedVersion{"skippedVersion"}; ///< not to be told of again
inline constexpr DefaultsKey<QString> cloudBrowserGeometry{"cloudBrowserGeometry"}; ///< base64

// Printing.
inline constexpr DefaultsKey<bool> footerIncludeTitle{"footerIncludeTitle"};
inline constexpr DefaultsKey<QString> footerTitle{"footerTitle"};
inline constexpr DefaultsKey<bool> footerIncludeAuthor{"footerIncludeAuthor"};
inline constexpr DefaultsKey<QString> footerAuthor{"footerAuthor"};
inline constexpr DefaultsKey<int> prefsPrintNumbers{"prefsPrintNumbers"};       ///< 0 or 1
inline constexpr DefaultsKey<int> prefsPrintNumbersTag{"prefsPrintNumbersTag"}; ///< style, 0 to 3
inline constexpr DefaultsKey<bool> prefsSkip1Page{"prefsSkip1Page"};
inline constexpr DefaultsKey<int> previewPageInt{"previewPageInt"}; ///< the page being drawn
inline constexpr DefaultsKey<bool> convertMarkdown{"convertMarkdown"};
inline constexpr DefaultsKey<QString> convertedFontName{"convertedFontName"};
inline constexpr DefaultsKey<QString> plainFontName{"plainFontName"};

} // namespace keys

} // namespace quillory
