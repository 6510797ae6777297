# Read by cpack: the C library that what was built needs, by its symbols' versions. dpkg-shlibdeps knows neither the
# device libraries nor another architecture's C library, and would look at each of the profiles' thousands of files.
file(GLOB built ${CPACK_VX_BUILT}/bin/vx* ${CPACK_VX_BUILT}/lib/*.so)
list(FILTER built EXCLUDE REGEX "/bin/(vxboard$|vxcli_)") # a script; test programs
execute_process(COMMAND readelf -V ${built} OUTPUT_VARIABLE versions COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "GLIBC_[0-9.]+" versions "${versions}")
list(SORT versions COMPARE NATURAL)
list(GET versions -1 newest)
string(REPLACE "GLIBC_" "" newest ${newest})
foreach(component TOOL BOARD)
  list(APPEND CPACK_DEBIAN_${component}_PACKAGE_DEPENDS "libc6 (>= ${newest})")
  list(JOIN CPACK_DEBIAN_${component}_PACKAGE_DEPENDS ", " CPACK_DEBIAN_${component}_PACKAGE_DEPENDS)
endforeach()
