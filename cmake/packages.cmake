# What is installed, and the Debian packages made of it (scripts/package). An install rule names its component:
#
#   tool   vxcli, and nothing else: what a unit gets       vxcli
#   board  the virtual unit and its device libraries       vxcli-board
#   dev    the headers of the device libraries             vxcli-dev
#
# In src/ and in board/ a rule without a name belongs to the tool and to the board.

set(VX_COMPONENTS tool dev)
if(NOT LIBVX_ROOT)
  list(APPEND VX_COMPONENTS board)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vxcli)
set(CPACK_PACKAGE_CONTACT "vxcli maintainers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL ${VX_COMPONENTS})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_LIST_DIR}/package-depends.cmake) # adds the C library to the Depends
set(CPACK_VX_BUILT ${CMAKE_BINARY_DIR})
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
elseif(CMAKE_CROSSCOMPILING)
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${CMAKE_SYSTEM_PROCESSOR})
endif()

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME vxcli)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_TOOL_PACKAGE_RECOMMENDS vxcli-board)
set(CPACK_DEBIAN_TOOL_DESCRIPTION "factory and engineering tool of a PON optical network unit
vxcli calibrates and tests the optical transceiver of a unit, keeps its
manufacturing information, and shows and sets its PON link and its ports.

The device libraries that it needs are part of a unit's firmware. Elsewhere
the package vxcli-board has them, with virtual units to run vxcli on.")

set(CPACK_DEBIAN_BOARD_PACKAGE_NAME vxcli-board)
set(CPACK_DEBIAN_BOARD_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_BOARD_PACKAGE_DEPENDS "bubblewrap | proot")
set(CPACK_DEBIAN_BOARD_PACKAGE_RECOMMENDS "vxcli, procps")
set(CPACK_DEBIAN_BOARD_DESCRIPTION "virtual PON optical network units for vxcli
vxboard makes virtual units and runs vxcli, or any script around it, on them:
transceivers that page, latch, wait and forget like the chips, flash that
erases like flash, and stand-ins for the unit's programs and drivers.

The package has the device libraries that do on a virtual unit what vxcli
asks for.")
file(WRITE ${CMAKE_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_BOARD_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/triggers)

set(CPACK_DEBIAN_DEV_PACKAGE_NAME vxcli-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_RECOMMENDS vxcli-board)
set(CPACK_DEBIAN_DEV_DESCRIPTION "headers of the device libraries that vxcli uses
The C declarations of libvx and libvxvoip_api. There is no further name to
link with: libvx.so and libvxvoip_api.so are called so at run time, too. They
are in the SDK of a unit and, for virtual units, in the package vxcli-board.")

include(CPack)

install(FILES include/libvx.h include/libvxvoip_api.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)
install(FILES README.md docs/architecture.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vxcli COMPONENT tool)
if(NOT LIBVX_ROOT)
  install(FILES docs/board-directory.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vxcli-board COMPONENT board)
endif()
foreach(component ${VX_COMPONENTS})
  string(TOUPPER ${component} COMPONENT)
  install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME}
      RENAME copyright COMPONENT ${component})
endforeach()
