# Flags that every target of the project shares.
add_library(quillory_flags INTERFACE)
target_include_directories(quillory_flags INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_definitions(quillory_flags INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_USE_QSTRINGBUILDER
  QT_DISABLE_DEPRECATED_BEFORE=0x060400
  QUILLORY_VERSION="${PROJECT_VERSION}")
target_compile_options(quillory_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
if(QUILLORY_WERROR)
  target_compile_options(quillory_flags INTERFACE -Werror)
endif()
if(CMAKE_BUILD_TYPE STREQUAL "Debug" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_definitions(quillory_flags INTERFACE _GLIBCXX_ASSERTIONS)
endif()
if(QUILLORY_SANITIZE)
  target_compile_options(quillory_flags INTERFACE
    -O1 -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(quillory_flags INTERFACE -fsanitize=address,undefined)
endif()
if(QUILLORY_FUZZ)
  # libFuzzer steers by the coverage of the code under test, so every room is instrumented.
  target_compile_options(quillory_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
