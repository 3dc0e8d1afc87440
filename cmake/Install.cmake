# Where "cmake --install" puts things. The programs find their resources and plugins from where
# they lie themselves, so the tree may be moved (foundation/ApplicationFolders.h).
include(GNUInstallDirs)
set(quillory_id org.quillory.Quillory)
set(quillory_documentation ${CMAKE_INSTALL_DATADIR}/doc/quillory)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME editor)

install(TARGETS quillory quillory-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS quillory_network quillory_pdf LIBRARY DESTINATION lib/quillory)
if(TARGET quillory-preview)
  install(TARGETS quillory-preview RUNTIME DESTINATION lib/quillory COMPONENT preview)
endif()

install(DIRECTORY resources/Definitions resources/Themes resources/Preview
  DESTINATION ${CMAKE_INSTALL_DATADIR}/quillory)
install(FILES resources/Encodings.plist resources/Replacements.plist
  DESTINATION ${CMAKE_INSTALL_DATADIR}/quillory)

install(FILES resources/desktop/${quillory_id}.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES resources/desktop/${quillory_id}.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES resources/desktop/${quillory_id}.mime.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages RENAME ${quillory_id}.xml)
install(FILES resources/icons/quillory.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps RENAME ${quillory_id}.svg)

# quillory_install_compressed(<file> TO <folder> [AS <name>]): without a time in it, so that two
# builds of the same sources are the same.
find_program(GZIP_PROGRAM gzip REQUIRED)
file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/compressed)
function(quillory_install_compressed file)
  cmake_parse_arguments(ARG "" "TO;AS" "" ${ARGN})
  cmake_path(GET file FILENAME name)
  if(ARG_AS)
    set(name ${ARG_AS})
  endif()
  set(compressed ${CMAKE_CURRENT_BINARY_DIR}/compressed/${name}.gz)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  execute_process(COMMAND ${GZIP_PROGRAM} -9nc ${CMAKE_CURRENT_SOURCE_DIR}/${file}
    OUTPUT_FILE ${compressed} COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${compressed} DESTINATION ${ARG_TO})
endfunction()

quillory_install_compressed(docs/man/quillory.1 TO ${CMAKE_INSTALL_MANDIR}/man1)
quillory_install_compressed(docs/man/quillory-cli.1 TO ${CMAKE_INSTALL_MANDIR}/man1)
quillory_install_compressed(CHANGELOG.md TO ${quillory_documentation} AS changelog)
install(FILES docs/users-guide.md docs/definitions.md docs/formats.md
  DESTINATION ${quillory_documentation})
install(FILES LICENSE DESTINATION ${quillory_documentation} RENAME copyright)
if(TARGET quillory-preview)
  set(preview_documentation ${CMAKE_INSTALL_DATADIR}/doc/quillory-preview)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/compressed/changelog.gz
    DESTINATION ${preview_documentation} COMPONENT preview)
  install(FILES LICENSE DESTINATION ${preview_documentation} RENAME copyright COMPONENT preview)
endif()
foreach(program quillory quillory-cli)
  install(FILES resources/completions/quillory.bash
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME ${program})
  install(FILES resources/completions/${program}.fish
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endforeach()
install(FILES resources/completions/quillory.zsh
  DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions RENAME _quillory)
