# The few functions with which every folder declares its targets.

# Objects come from ccache where it is installed, also in a clone that lies in another folder: paths below the
# source folder count relative to it, and the folder's own name does not count.
find_program(ORLIX_CCACHE ccache)
if(ORLIX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
    CCACHE_SLOPPINESS=pch_defines,time_macros ${ORLIX_CCACHE})
endif()

# Flags that all of the project's own targets share.
add_library(orlix_options INTERFACE)
target_compile_options(orlix_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  -Wnon-virtual-dtor -Woverloaded-virtual -Wno-sign-conversion $<$<BOOL:${ORLIX_WERROR}>:-Werror>)
target_compile_definitions(orlix_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
  QT_NO_KEYWORDS QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_include_directories(orlix_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
if(ORLIX_SANITIZE)
  target_compile_options(orlix_options INTERFACE -fsanitize=${ORLIX_SANITIZE} -fno-omit-frame-pointer)
  target_link_options(orlix_options INTERFACE -fsanitize=${ORLIX_SANITIZE})
endif()

# orlix_library(name [QT] SOURCES ... [LINKS ...]): the static library of one folder, `orlix_<name>`.
function(orlix_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "QT" "" "SOURCES;LINKS")
  add_library(orlix_${name} STATIC ${arg_SOURCES})
  target_link_libraries(orlix_${name} PUBLIC orlix_options ${arg_LINKS})
  if(arg_QT)
    set_target_properties(orlix_${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(orlix_${name} PUBLIC Qt6::Core)
  endif()
endfunction()

# The test programs whose code runs on several threads: what the thread sanitizer builds and runs.
add_custom_target(threaded_tests)
set(ORLIX_THREADED_FOLDERS platform engine game)

# orlix_test(name [QT] SOURCES ... [LINKS ...] [LABELS ...]): the test program `test_<name>`, its cases known to
# ctest. With QT the program runs a QApplication on the offscreen platform. Labels: the name, the folder, those given,
# and "threaded" for the folders above; a test elsewhere that starts threads or engines names that label itself.
# The target `<folder>_tests` builds all test programs of a folder.
function(orlix_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "QT" "" "SOURCES;LINKS;LABELS")
  add_executable(test_${name} ${arg_SOURCES})
  target_link_libraries(test_${name} PRIVATE orlix_options ${arg_LINKS} GTest::gmock)
  target_include_directories(test_${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  if(arg_QT)
    set_target_properties(test_${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(test_${name} PRIVATE orlix_test_support Qt6::Widgets Qt6::Test)
    set_property(GLOBAL APPEND PROPERTY ORLIX_QT_TESTS test_${name})
  else()
    target_link_libraries(test_${name} PRIVATE GTest::gtest_main)
  endif()
  get_filename_component(folder ${CMAKE_CURRENT_SOURCE_DIR} NAME)
  if(NOT TARGET ${folder}_tests)
    add_custom_target(${folder}_tests)
  endif()
  add_dependencies(${folder}_tests test_${name})
  set(labels ${name} ${folder} ${arg_LABELS})
  if(folder IN_LIST ORLIX_THREADED_FOLDERS)
    list(APPEND labels threaded)
  endif()
  list(REMOVE_DUPLICATES labels)
  if("threaded" IN_LIST labels)
    add_dependencies(threaded_tests test_${name})
  endif()
  list(JOIN labels "+" label) # one word: a list would be taken apart on its way, and ctest -L takes a part as well
  include(GoogleTest)
  gtest_discover_tests(test_${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 300 LABELS ${label} ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()
