# Sanitizers, for everything in the build. Whether they come from MLDS_SANITIZE or from flags that
# somebody passed, MLDS_SANITIZED tells the rest of the build: it then leaves alone what hides
# mistakes (pools) and what does not link (undefined symbols are resolved by the program).

set(all_flags "${CMAKE_CXX_FLAGS} ${CMAKE_SHARED_LINKER_FLAGS} ${CMAKE_EXE_LINKER_FLAGS}")
if(CMAKE_BUILD_TYPE)
  string(TOUPPER "${CMAKE_BUILD_TYPE}" build_type)
  string(APPEND all_flags " ${CMAKE_CXX_FLAGS_${build_type}}")
endif()

set(MLDS_SANITIZED OFF)
if(MLDS_SANITIZE OR all_flags MATCHES "-fsanitize=")
  set(MLDS_SANITIZED ON)
endif()

if(MLDS_SANITIZE)
  add_compile_options(-fsanitize=${MLDS_SANITIZE} -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${MLDS_SANITIZE})
endif()
