# mlds_own_target(TARGET): how our own code is compiled. None of it reaches a program that uses the
# library.

if(MLDS_LTO)
  include(CheckIPOSupported)
  check_ipo_supported(LANGUAGES CXX)
endif()

function(mlds_own_target target)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    INTERPROCEDURAL_OPTIMIZATION ${MLDS_LTO})
  target_compile_features(${target} PRIVATE cxx_std_20)
  if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(${target} PRIVATE
      -Wall -Wextra -Wpedantic -Wconversion -Wshadow $<$<BOOL:${MLDS_WERROR}>:-Werror>)
  endif()
  # g++ 12 sees overlapping copies inside std::string's operator+ where there are none.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
endfunction()
