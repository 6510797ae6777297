# An example: the SDK that a unit's maker gives out. Copy it, set what your SDK has elsewhere, and build with
#
#   cmake --preset release -B build/unit --toolchain cmake/toolchain-vendor-sdk.cmake -DVENDOR_SDK=/opt/sdk
#   cmake --build build/unit
#
# Expected in the SDK:  bin/PREFIX-g++ ...         the compiler; C++20, so GCC 11 or clang 14 at least
#                       sysroot/                   the unit's file system, as far as compiling needs it
#                       sysroot/usr/lib/libvx.so   and libvxvoip_api.so, in the version that is on the unit

set(VENDOR_SDK "" CACHE PATH "Where the maker's SDK is")
set(VENDOR_SDK_PREFIX aarch64-linux-gnu CACHE STRING "What the names of the SDK's compiler begin with")
set(VENDOR_SDK_FLAGS "" CACHE STRING "Compiler options that the unit needs, such as -mcpu=cortex-a53")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VENDOR_SDK VENDOR_SDK_PREFIX VENDOR_SDK_FLAGS)
if(NOT VENDOR_SDK OR NOT EXISTS ${VENDOR_SDK}/bin/${VENDOR_SDK_PREFIX}-g++)
  message(FATAL_ERROR "no ${VENDOR_SDK}/bin/${VENDOR_SDK_PREFIX}-g++: set VENDOR_SDK and VENDOR_SDK_PREFIX")
endif()

set(CMAKE_SYSTEM_NAME Linux)
string(REGEX REPLACE "-.*" "" CMAKE_SYSTEM_PROCESSOR ${VENDOR_SDK_PREFIX})
set(CMAKE_C_COMPILER ${VENDOR_SDK}/bin/${VENDOR_SDK_PREFIX}-gcc)
set(CMAKE_CXX_COMPILER ${VENDOR_SDK}/bin/${VENDOR_SDK_PREFIX}-g++)
set(CMAKE_C_FLAGS_INIT "${VENDOR_SDK_FLAGS}")
set(CMAKE_CXX_FLAGS_INIT "${VENDOR_SDK_FLAGS}")

set(CMAKE_SYSROOT ${VENDOR_SDK}/sysroot)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

# The maker's libraries in place of the virtual board's, which is not built.
set(LIBVX_ROOT ${CMAKE_SYSROOT}/usr CACHE PATH "Device libraries of the SDK")
