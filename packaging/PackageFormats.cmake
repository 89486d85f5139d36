# SPDX-License-Identifier: MIT
# Read by cpack before each format: the archive holds one folder, the package the files of a system.
if(CPACK_GENERATOR STREQUAL "DEB")
  list(GET CPACK_INSTALL_CMAKE_PROJECTS 0 build)
  list(GET CPACK_INSTALL_CMAKE_PROJECTS 1 project)
  set(CPACK_INSTALL_CMAKE_PROJECTS "${build};${project};system;/")
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
endif()
