# What `cmake --install` puts into a prefix: headers, library, CMake package, pkg-config file.
#
# The libraries that stand on mlds (libs/NAME) are components of the package: hosts ask for them with
# `find_package(mlds COMPONENTS NAME)` and link with `mlds::NAME`.

include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/mlds)

install(TARGETS mlds EXPORT mldsTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY include/mlds DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")
install(EXPORT mldsTargets NAMESPACE mlds:: DESTINATION ${package_dir})

configure_package_config_file(cmake/mldsConfig.cmake.in ${PROJECT_BINARY_DIR}/mldsConfig.cmake
  INSTALL_DESTINATION ${package_dir}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/mldsConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/mldsConfig.cmake ${PROJECT_BINARY_DIR}/mldsConfigVersion.cmake
  DESTINATION ${package_dir})

# mlds_install_component(NAME): installs the target mlds_NAME of the current folder with the headers
# in its include/.
function(mlds_install_component name)
  install(TARGETS mlds_${name} EXPORT mlds-${name}Targets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(DIRECTORY include/mlds DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")
  install(EXPORT mlds-${name}Targets NAMESPACE mlds:: DESTINATION ${package_dir})
endfunction()

# The pkg-config file finds the prefix from its own place, so that an installation can be moved,
# unless its folder was given as an absolute path.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(pc_prefix "${CMAKE_INSTALL_PREFIX}")
  set(pc_libdir "${CMAKE_INSTALL_LIBDIR}")
else()
  file(RELATIVE_PATH up "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
  string(REGEX REPLACE "/$" "" up "${up}")
  set(pc_prefix "\${pcfiledir}/${up}")
  set(pc_libdir "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
endif()
if(IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  set(pc_includedir "${CMAKE_INSTALL_INCLUDEDIR}")
else()
  set(pc_includedir "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
set(pc_cflags "")
if(NOT BUILD_SHARED_LIBS)
  set(pc_cflags " -DMLDS_STATIC")
endif()
configure_file(cmake/mlds.pc.in ${PROJECT_BINARY_DIR}/mlds.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/mlds.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
