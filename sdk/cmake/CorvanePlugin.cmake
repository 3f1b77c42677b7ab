# corvane_add_plugin(NAME SOURCES source... [NO_INSTALL])
#
# The target NAME: lib<NAME>.so, a library the daemon can load. It exports PLUGIN_INIT and
# PLUGIN_DEINIT and nothing else, so that it can be unloaded, and must define the first.
# `cmake --install` puts it into CORVANE_PLUGIN_DIR.
function(corvane_add_plugin name)
  cmake_parse_arguments(PARSE_ARGV 1 PLUGIN "NO_INSTALL" "" "SOURCES")
  if(PLUGIN_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "corvane_add_plugin(${name}): unknown: ${PLUGIN_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT PLUGIN_SOURCES)
    message(FATAL_ERROR "corvane_add_plugin(${name}): no SOURCES")
  endif()
  if(name MATCHES "\\.so$")
    message(FATAL_ERROR "corvane_add_plugin(${name}): the name is without \"lib\" and \".so\"")
  endif()
  add_library(${name} MODULE ${PLUGIN_SOURCES})
  set_target_properties(${name} PROPERTIES
    PREFIX lib
    SUFFIX .so
    CXX_VISIBILITY_PRESET default  # the version script decides
    VISIBILITY_INLINES_HIDDEN ON
    LINK_DEPENDS "${Corvane_EXPORTS_MAP}")
  target_compile_features(${name} PRIVATE cxx_std_20)
  target_link_options(${name} PRIVATE
    "LINKER:--version-script=${Corvane_EXPORTS_MAP}" LINKER:--require-defined=PLUGIN_INIT)
  target_link_libraries(${name} PRIVATE Corvane::plugin)
  if(NOT PLUGIN_NO_INSTALL)
    install(TARGETS ${name} LIBRARY DESTINATION "${CORVANE_PLUGIN_DIR}")
  endif()
endfunction()
