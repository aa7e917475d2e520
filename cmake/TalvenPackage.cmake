# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT

# What other programs build with: the static library, its headers, and a CMake package for both.
include(CMakePackageConfigHelpers)

set(talven_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/TalvenHR")
set(talven_include_dir "${CMAKE_INSTALL_INCLUDEDIR}/talvenhr")

set_target_properties(talvenhr_core PROPERTIES EXPORT_NAME core)
target_include_directories(talvenhr_core INTERFACE $<INSTALL_INTERFACE:${talven_include_dir}>)
install(TARGETS talvenhr_core EXPORT TalvenHRTargets
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(EXPORT TalvenHRTargets NAMESPACE TalvenHR:: DESTINATION "${talven_package_dir}")

install(FILES
    src/plugin/serverinterface.h
    src/plugin/verinfointerface.h
    DESTINATION "${talven_include_dir}/plugin")
install(FILES
    src/repository/branchesrepository.h
    src/repository/branchrecord.h
    src/repository/groupsplan.h
    src/repository/groupsplanrepo.h
    src/repository/orvdbsettings.h
    src/repository/termsyncrepository.h
    DESTINATION "${talven_include_dir}/repository")

target_compile_features(talvenhr_core INTERFACE cxx_std_14)

configure_package_config_file(cmake/TalvenHRConfig.cmake.in
    "${PROJECT_BINARY_DIR}/TalvenHRConfig.cmake"
    INSTALL_DESTINATION "${talven_package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/TalvenHRConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/TalvenHRConfig.cmake"
    "${PROJECT_BINARY_DIR}/TalvenHRConfigVersion.cmake"
    DESTINATION "${talven_package_dir}")
