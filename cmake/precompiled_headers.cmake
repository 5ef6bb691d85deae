# Headers that many sources share, compiled once for all of them: half the time of a build from nothing. Releases go
# without, and so does clang-tidy: there every file has to include what it uses.
option(ORLIX_PRECOMPILE "Compile the headers that many sources share only once" OFF)
if(NOT ORLIX_PRECOMPILE OR CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  return()
endif()

# orlix_precompile(name [LINKS ...] USERS ...): precompiled/<name>.h for all these targets. What the users define on
# their command line must hold what the links define.
function(orlix_precompile name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINKS;USERS")
  set(owner orlix_headers_${name})
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/${owner}.cpp CONTENT "// Compiled for its headers.\n")
  add_library(${owner} OBJECT ${CMAKE_BINARY_DIR}/${owner}.cpp)
  target_link_libraries(${owner} PRIVATE orlix_options ${arg_LINKS})
  target_precompile_headers(${owner} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/precompiled/${name}.h)
  foreach(user ${arg_USERS})
    if(TARGET ${user})
      target_precompile_headers(${user} REUSE_FROM ${owner})
      # For ccache, which reads the preprocessed text.
      target_compile_options(${user} PRIVATE -fpch-preprocess)
    endif()
  endforeach()
endfunction()

orlix_precompile(widgets
  LINKS Qt6::Widgets
  USERS orlix_automatch orlix_engine orlix_game orlix_l10n orlix_platform orlix_ui)
get_property(qt_tests GLOBAL PROPERTY ORLIX_QT_TESTS)
orlix_precompile(widget_tests
  LINKS GTest::gmock Qt6::Widgets
  USERS ${qt_tests})
orlix_precompile(plain_tests
  LINKS GTest::gmock
  USERS test_core test_core_proofs test_house)
