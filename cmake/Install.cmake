# Everything `cmake --install` puts under the prefix, and the generated files
# for kernel compilers. Included once from the top CMakeLists; other install
# rules (tools) belong here too.
#
#   lib/libocl_ravl_l9.so                 (SONAME libocl_ravl_l9.so)
#   bin/libocl_ravl_l9.dll                the Windows library
#   lib/libocl_ravl_l9.lib, .def          its import library (lld-link /implib:) and exports
#   include/ocl_ravl_l9.h                 the public header
#   lib/pkgconfig/ocl_ravl_l9.pc          pkg-config
#   lib/cmake/ocl_ravl_l9/                find_package(ocl_ravl_l9): ocl_ravl_l9::ocl_ravl_l9
#   share/ocl_ravl_l9/builtins.tsv        export -> OpenCL C built-in map
#   share/ocl_ravl_l9/ocl_ravl_l9.ll      LLVM IR declarations of every export
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(OCL_RAVL_VERSION 1.0.0)

# The .so carries SONAME libocl_ravl_l9.so (CMake's default for an unversioned
# shared library; the install test checks it), so consumers record that name.

# builtins.tsv and ocl_ravl_l9.ll, from the family table and exports/opencl.tsv.
set(OPENCL_TABLE ${CMAKE_SOURCE_DIR}/exports/opencl.tsv)
set(GEN_PACKAGING ${CMAKE_SOURCE_DIR}/exports/gen_packaging.py)
add_custom_command(
  OUTPUT ${GEN}/builtins.tsv ${GEN}/ocl_ravl_l9.ll
  COMMAND ${Python3_EXECUTABLE} ${GEN_PACKAGING} ${FAMILY_TABLE} ${OPENCL_TABLE} ${GEN}
  DEPENDS ${GEN_PACKAGING} ${GEN_EXPORTS} ${FAMILY_TABLE} ${OPENCL_TABLE}
  COMMENT "Generating builtins.tsv and ocl_ravl_l9.ll" VERBATIM)
add_custom_target(compiler_files ALL DEPENDS ${GEN}/builtins.tsv ${GEN}/ocl_ravl_l9.ll)

configure_file(${CMAKE_SOURCE_DIR}/cmake/ocl_ravl_l9.pc.in ${CMAKE_BINARY_DIR}/pkg/ocl_ravl_l9.pc @ONLY)
configure_file(${CMAKE_SOURCE_DIR}/cmake/ocl_ravl_l9Config.cmake.in
               ${CMAKE_BINARY_DIR}/pkg/ocl_ravl_l9Config.cmake @ONLY)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/pkg/ocl_ravl_l9ConfigVersion.cmake
                                 VERSION ${OCL_RAVL_VERSION} COMPATIBILITY SameMajorVersion)

install(TARGETS ocl_ravl_l9 LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${DLL} DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${CMAKE_BINARY_DIR}/libocl_ravl_l9.lib ${GEN}/libocl_ravl_l9.def
        DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${CMAKE_SOURCE_DIR}/include/ocl_ravl_l9.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${CMAKE_BINARY_DIR}/pkg/ocl_ravl_l9.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES ${CMAKE_BINARY_DIR}/pkg/ocl_ravl_l9Config.cmake
              ${CMAKE_BINARY_DIR}/pkg/ocl_ravl_l9ConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ocl_ravl_l9)
install(FILES ${GEN}/builtins.tsv ${GEN}/ocl_ravl_l9.ll DESTINATION ${CMAKE_INSTALL_DATADIR}/ocl_ravl_l9)
