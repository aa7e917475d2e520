# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT

# The installation, in three components: what runs, what other programs are built with, what is read.
include(CMakePackageConfigHelpers)

# runtime: the program (its manual page is in host/CMakeLists.txt), the plugin, the stand-in for the
# attendance database.
install(TARGETS talvenhr RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
install(TARGETS TalvenHR LIBRARY DESTINATION "${TALVENHR_PLUGIN_DIR}" COMPONENT runtime)
install(DIRECTORY database/ DESTINATION "${CMAKE_INSTALL_DATADIR}/talvenhr/database"
    COMPONENT runtime)

# development: the static library, the headers, and a CMake package for both.
set(talven_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/TalvenHR")
set(talven_include_dir "${CMAKE_INSTALL_INCLUDEDIR}/talvenhr")

set_target_properties(talvenhr_interfaces PROPERTIES EXPORT_NAME interfaces)
target_include_directories(talvenhr_interfaces INTERFACE $<INSTALL_INTERFACE:${talven_include_dir}>)
target_compile_features(talvenhr_interfaces INTERFACE cxx_std_14)
set_target_properties(talvenhr_core PROPERTIES EXPORT_NAME core)
install(TARGETS talvenhr_interfaces talvenhr_core EXPORT TalvenHRTargets
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development)
install(EXPORT TalvenHRTargets NAMESPACE TalvenHR:: DESTINATION "${talven_package_dir}"
    COMPONENT development)

install(FILES
    src/plugin/serverinterface.h
    src/plugin/verinfointerface.h
    DESTINATION "${talven_include_dir}/plugin" COMPONENT development)
install(FILES
    src/repository/branchesrepository.h
    src/repository/branchrecord.h
    src/repository/groupsplan.h
    src/repository/groupsplanrepo.h
    src/repository/orvdbsettings.h
    src/repository/termsyncrepository.h
    DESTINATION "${talven_include_dir}/repository" COMPONENT development)

configure_package_config_file(cmake/TalvenHRConfig.cmake.in
    "${PROJECT_BINARY_DIR}/TalvenHRConfig.cmake.in"
    INSTALL_DESTINATION "${talven_package_dir}"
    PATH_VARS TALVENHR_PLUGIN_DIR)
# The plugin's file name is known to the generator alone.
file(GENERATE OUTPUT "${PROJECT_BINARY_DIR}/TalvenHRConfig.cmake"
    INPUT "${PROJECT_BINARY_DIR}/TalvenHRConfig.cmake.in")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/TalvenHRConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/TalvenHRConfig.cmake"
    "${PROJECT_BINARY_DIR}/TalvenHRConfigVersion.cmake"
    DESTINATION "${talven_package_dir}" COMPONENT development)

# documents
install(FILES CHANGELOG.md CONTRIBUTING.md LICENSE README.md SECURITY.md
    DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documents)
install(DIRECTORY docs examples DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documents
    PATTERN hooks EXCLUDE)
install(PROGRAMS examples/hooks/mail.py
    DESTINATION "${CMAKE_INSTALL_DOCDIR}/examples/hooks" COMPONENT documents)
