# How the shared library is linked, where compiler and linker know the flags.

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)

# Calls from one part of the library to another go straight there, not through a table that some
# other library could have changed. Data and virtual tables stay replaceable: programs may hold
# copies of them.
check_cxx_compiler_flag(-fno-semantic-interposition MLDS_HAS_NO_SEMANTIC_INTERPOSITION)
if(MLDS_HAS_NO_SEMANTIC_INTERPOSITION)
  target_compile_options(mlds_objects PRIVATE -fno-semantic-interposition)
endif()
check_linker_flag(CXX -Wl,-Bsymbolic-functions MLDS_HAS_BSYMBOLIC_FUNCTIONS)
if(MLDS_HAS_BSYMBOLIC_FUNCTIONS)
  target_link_options(mlds PRIVATE -Wl,-Bsymbolic-functions)
endif()

if(NOT MLDS_SANITIZED)
  # A symbol that nobody defines shows when the library is linked, not in a host. The logger is the
  # exception when the host brings it.
  if(MLDS_OKULOG)
    check_linker_flag(CXX -Wl,-z,defs MLDS_HAS_Z_DEFS)
    if(MLDS_HAS_Z_DEFS)
      target_link_options(mlds PRIVATE -Wl,-z,defs)
    endif()
  endif()

  # Templates of the standard library are instantiated in ours with default visibility. They are
  # nobody's interface.
  set(map ${PROJECT_SOURCE_DIR}/src/exports.map)
  set(CMAKE_REQUIRED_LINK_OPTIONS -Wl,--version-script=${map})
  check_cxx_source_compiles("int main() { return 0; }" MLDS_HAS_VERSION_SCRIPT)
  unset(CMAKE_REQUIRED_LINK_OPTIONS)
  if(MLDS_HAS_VERSION_SCRIPT)
    target_link_options(mlds PRIVATE -Wl,--version-script=${map})
    set_property(TARGET mlds APPEND PROPERTY LINK_DEPENDS ${map})
  endif()
endif()
