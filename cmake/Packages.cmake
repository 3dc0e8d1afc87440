# Debian packages: "cmake --build BUILD --target package". The web engine is 150 MB, so the preview
# that needs it is a package of its own.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quillory)
set(CPACK_PACKAGE_CONTACT "The Quillory engineers <quillory@quillory.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL editor)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION editors)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)

set(CPACK_DEBIAN_EDITOR_PACKAGE_NAME quillory)
set(CPACK_DEBIAN_EDITOR_PACKAGE_RECOMMENDS
  "cups-client, libenchant-2-2, qt6-wayland, fonts-dejavu-core")
set(CPACK_DEBIAN_EDITOR_PACKAGE_SUGGESTS "hunspell-en-us")
set(CPACK_DEBIAN_EDITOR_DESCRIPTION "Quillory opens text and source code of any size at once, in any encoding and
with any line breaks, and writes it back without losing a character.
Languages, themes and commands are plain files that its user can write.")

if(TARGET quillory-preview)
  list(APPEND CPACK_COMPONENTS_ALL preview)
  string(APPEND CPACK_DEBIAN_EDITOR_PACKAGE_RECOMMENDS ", quillory-preview")
  set(CPACK_DEBIAN_PREVIEW_PACKAGE_NAME quillory-preview)
  set(CPACK_DEBIAN_PREVIEW_PACKAGE_DEPENDS "quillory (= ${PROJECT_VERSION})")
  set(CPACK_DEBIAN_PREVIEW_DESCRIPTION "The web preview: shows HTML and Markdown as a web page while it is written.
The page reads what lies in the document's folder, and from servers once the
user allows it.")
endif()
include(CPack)
