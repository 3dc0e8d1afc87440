# quillory_room(<folder> [EXCEPT <subfolder>] LINKS <targets...>): the static library of one folder
# of src/, without what is built apart from it.
# quillory_tests(<folder> LINKS <targets...>): the test program of one folder of tests/.
# Sources are whatever stands in the folder, so that a new file needs no edit here.

function(quillory_room room)
  cmake_parse_arguments(ARG "" "EXCEPT" "LINKS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS *.cpp *.h)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  if(ARG_EXCEPT)
    list(FILTER sources EXCLUDE REGEX "/${room}/${ARG_EXCEPT}/")
  endif()
  add_library(quillory_${room} STATIC ${sources})
  target_link_libraries(quillory_${room} PUBLIC quillory_flags ${ARG_LINKS})
endfunction()

function(quillory_tests room)
  cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS *.cpp *.h)
  list(FILTER sources EXCLUDE REGEX "/golden/") # samples to be coloured, not to be built
  add_executable(${room}_tests ${sources})
  target_link_libraries(${room}_tests PRIVATE quillory_test_support ${ARG_LINKS})
  target_precompile_headers(${room}_tests REUSE_FROM quillory_test_support)
  gtest_discover_tests(${room}_tests
    TEST_PREFIX ${room}. NO_PRETTY_VALUES DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8" TIMEOUT 900)
endfunction()
