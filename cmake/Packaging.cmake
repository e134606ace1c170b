# Installing (GNUInstallDirs, any prefix) and the Debian package (`cpack -G DEB` in the build folder).
include(GNUInstallDirs)

install(TARGETS quillet quillet-app RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
add_subdirectory(${PROJECT_SOURCE_DIR}/data ${PROJECT_BINARY_DIR}/data)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quillet)
set(CPACK_PACKAGE_VENDOR "The Quillet developers")
set(CPACK_PACKAGE_CONTACT "The Quillet developers <maintainers@quillet.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "fast, private PDF toolkit: compress, merge, split, convert")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://quillet.org/")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${CPACK_PACKAGE_CONTACT}")
set(CPACK_DEBIAN_PACKAGE_SECTION text)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The standard press profile that print colours are drawn through.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libgs-common")
# The window draws the SVG icons and needs a platform plugin, and OCR reads English with the
# English model; none of them is a linked library.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libqt6svg6, qt6-qpa-plugins, tesseract-ocr-eng")
# CPack puts the summary first and indents the lines; an empty line separates paragraphs.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Quillet works entirely on your own machine: no uploads, no account, no
tracking. It compresses PDFs (quality tiers, lossless, or under a target
size), merges PDFs and images, splits, organizes pages, converts pages to
PNG, JPEG, TIFF or HEIC, builds PDFs from images, cleans metadata, protects
and unprotects with a password, and analyses a PDF to recommend actions.

This package holds the command line (quillet) and the desktop app
(quillet-app) with its desktop entry, D-Bus service, file-manager actions,
man pages and bash completion.")
include(CPack)

if(QUILLET_BUILD_TESTS)
    # Installs into a temporary prefix and checks the installed files with the real validators.
    add_test(NAME quillet_install_validates
             COMMAND ${PROJECT_SOURCE_DIR}/tests/packaging/check-install.sh ${PROJECT_BINARY_DIR}
                     ${CMAKE_COMMAND})
    set_tests_properties(quillet_install_validates PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 60)
endif()
