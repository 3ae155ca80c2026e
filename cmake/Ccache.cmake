# Compiles through ccache where it is installed. The sloppiness settings are
# what ccache needs to cache sources that use a precompiled header.
find_program(PANEL_CCACHE ccache)
if(PANEL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      ${PANEL_CCACHE})
  set(CMAKE_PCH_INSTANTIATE_TEMPLATES OFF)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess)
  endif()
endif()
