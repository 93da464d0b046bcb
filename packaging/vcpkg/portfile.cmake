# The source is the tree that this port is part of.
get_filename_component(SOURCE_PATH "${CURRENT_PORT_DIR}/../.." ABSOLUTE)

vcpkg_check_features(OUT_FEATURE_OPTIONS features FEATURES isal QUILLON_USE_ISAL)
if("isal" IN_LIST FEATURES)
  list(APPEND features -DCMAKE_REQUIRE_FIND_PACKAGE_isal=ON)  # asked for and not found is an error
endif()
vcpkg_cmake_configure(
  SOURCE_PATH "${SOURCE_PATH}"
  OPTIONS ${features} -DQUILLON_TESTS=OFF -DQUILLON_BUILD_APPS=OFF)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(CONFIG_PATH lib/cmake/quillon)
vcpkg_fixup_pkgconfig()

file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include")
file(INSTALL "${CURRENT_PORT_DIR}/usage" DESTINATION "${CURRENT_PACKAGES_DIR}/share/${PORT}")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE")
