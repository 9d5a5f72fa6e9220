# What `cmake --install` lays out, in three components: runtime, development, command. Nothing in it names the prefix,
# so that an installed tree may be moved.
option(KELVAR_INSTALL "Install what is built" ${PROJECT_IS_TOP_LEVEL})
if(NOT KELVAR_INSTALL)
  return()
endif()
include(CMakePackageConfigHelpers)

set(KELVAR_PACKAGE kelvar_summary)
set(KELVAR_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/${KELVAR_PACKAGE})
# The collaborators' headers have common names: they get a folder of their own, beside kelvar/.
set(KELVAR_VOCABULARY_DIR ${CMAKE_INSTALL_INCLUDEDIR}/kelvar-${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(KELVAR_PLATFORM_DIR ${KELVAR_VOCABULARY_DIR}/platform)

# kelvar_install_headers(DESTINATION HEADER...)
function(kelvar_install_headers destination)
  install(FILES ${ARGN} DESTINATION ${destination} COMPONENT development)
endfunction()

# A suite's own headers are installed in place of ours, name by name.
function(kelvar_vocabulary_headers out)
  set(headers)
  foreach(name IN ITEMS courier.h digestio.h resdir.h sitenotes.h toolbelt.h)
    if(KELVAR_COLLABORATOR_HEADERS AND EXISTS ${KELVAR_COLLABORATOR_HEADERS}/${name})
      list(APPEND headers ${KELVAR_COLLABORATOR_HEADERS}/${name})
    else()
      list(APPEND headers ${PROJECT_SOURCE_DIR}/src/vocabulary/${name})
    endif()
  endforeach()
  set(${out} ${headers} PARENT_SCOPE)
endfunction()

# Libraries find one another in their own folder, and the command finds them in its own tree.
function(kelvar_relative_rpath)
  file(RELATIVE_PATH to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  foreach(target IN ITEMS kelvar_summary kelvar_platform)
    if(TARGET ${target})
      set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
    endif()
  endforeach()
  if(TARGET kelvar)
    set_target_properties(kelvar PROPERTIES INSTALL_RPATH "$ORIGIN/${to_lib}")
  endif()
endfunction()

# Headers and the targets that carry them.
file(GLOB kelvar_public_headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/kelvar/*.h)
kelvar_install_headers(${CMAKE_INSTALL_INCLUDEDIR}/kelvar ${kelvar_public_headers})
kelvar_vocabulary_headers(kelvar_vocabulary_files)
kelvar_install_headers(${KELVAR_VOCABULARY_DIR} ${kelvar_vocabulary_files})
target_include_directories(kelvar_headers INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_include_directories(kelvar_vocabulary INTERFACE $<INSTALL_INTERFACE:${KELVAR_VOCABULARY_DIR}>)
target_compile_features(kelvar_vocabulary INTERFACE cxx_std_17)
set_target_properties(kelvar_headers PROPERTIES EXPORT_NAME headers)
set_target_properties(kelvar_vocabulary PROPERTIES EXPORT_NAME vocabulary)

set(kelvar_libraries kelvar_summary)
if(TARGET kelvar_platform)
  list(APPEND kelvar_libraries kelvar_platform)
  kelvar_install_headers(${KELVAR_PLATFORM_DIR} ${PROJECT_SOURCE_DIR}/platform/Annotations.h
    ${PROJECT_SOURCE_DIR}/platform/Diagnosis.h ${PROJECT_SOURCE_DIR}/platform/PlatformExport.h)
  target_include_directories(kelvar_platform PUBLIC $<INSTALL_INTERFACE:${KELVAR_PLATFORM_DIR}>)
endif()

kelvar_relative_rpath()
install(TARGETS ${kelvar_libraries} kelvar_headers kelvar_vocabulary EXPORT kelvar_summaryTargets
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)

# The CMake package.
install(EXPORT kelvar_summaryTargets NAMESPACE kelvar:: DESTINATION ${KELVAR_PACKAGE_DIR} COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/kelvar_summaryConfig.cmake.in
  ${PROJECT_BINARY_DIR}/kelvar_summaryConfig.cmake INSTALL_DESTINATION ${KELVAR_PACKAGE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kelvar_summaryConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kelvar_summaryConfig.cmake ${PROJECT_BINARY_DIR}/kelvar_summaryConfigVersion.cmake
  DESTINATION ${KELVAR_PACKAGE_DIR} COMPONENT development)

# The pkg-config file takes the prefix from its own location.
set(KELVAR_PC_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH KELVAR_PC_TO_PREFIX ${CMAKE_INSTALL_PREFIX}/${KELVAR_PC_DIR} ${CMAKE_INSTALL_PREFIX})
set(KELVAR_PC_LIBS "-L\${libdir} -lkelvar_summary")
set(KELVAR_PC_CFLAGS "-I\${includedir} -I\${prefix}/${KELVAR_VOCABULARY_DIR}")
set(KELVAR_PC_REQUIRES "")
if(TARGET kelvar_platform)
  string(APPEND KELVAR_PC_LIBS " -lkelvar_platform")
  string(APPEND KELVAR_PC_CFLAGS " -I\${prefix}/${KELVAR_PLATFORM_DIR}")
endif()
# A caller finds the shared objects where they are installed, unless the loader looks there by itself.
if(BUILD_SHARED_LIBS AND NOT CMAKE_INSTALL_FULL_LIBDIR IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
  string(APPEND KELVAR_PC_LIBS " -Wl,-rpath,\${libdir}")
endif()
# An archive does not link its dependencies, so they are listed with or without --static.
if(NOT BUILD_SHARED_LIBS)
  string(APPEND KELVAR_PC_LIBS " -lboost_filesystem")
  if(TARGET kelvar_platform)
    set(KELVAR_PC_REQUIRES "sqlite3 >= 3.37, simdjson >= 3.0")
  endif()
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/kelvar_summary.pc.in ${PROJECT_BINARY_DIR}/kelvar_summary.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kelvar_summary.pc DESTINATION ${KELVAR_PC_DIR} COMPONENT development)

# The command, its pages and its completion.
if(TARGET kelvar)
  install(TARGETS kelvar RUNTIME COMPONENT command)
  file(GLOB kelvar_pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/man/*.1)
  install(FILES ${kelvar_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT command)
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/bash-completion/kelvar
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT command)
endif()
include(KelvarPackages)
