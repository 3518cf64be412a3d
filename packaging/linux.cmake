# What a user of a Debian system gets: a portable archive, and a .deb that installs for all users.
# Two components of the same programs: "portable" is one folder, "system" follows the system's ways.
include(GNUInstallDirs)
set(app_id org.worklogremote.WorklogRemote)
set(programs WorklogRemote exchange_client worklog_report)
set(program_folder lib/worklog-remote)

install(TARGETS ${programs} RUNTIME DESTINATION . COMPONENT portable)
install(FILES ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/WL.HLP ${PROJECT_SOURCE_DIR}/LICENSE
    DESTINATION . COMPONENT portable)
install(FILES README.txt man/worklog-report.1 DESTINATION . COMPONENT portable)

install(TARGETS ${programs} RUNTIME DESTINATION ${program_folder} COMPONENT system)
install(FILES ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/WL.HLP
    DESTINATION ${program_folder} COMPONENT system)
install(PROGRAMS worklog-remote DESTINATION bin COMPONENT system)

# What the start script reports with where there is no terminal.
add_executable(show_message show-message.cpp)
set_target_properties(show_message PROPERTIES OUTPUT_NAME show-message)
target_link_libraries(show_message PRIVATE platform project_warnings)
install(TARGETS show_message RUNTIME DESTINATION ${program_folder} COMPONENT system)
install(FILES ${app_id}.desktop DESTINATION share/applications COMPONENT system)
install(FILES ${app_id}.metainfo.xml DESTINATION share/metainfo COMPONENT system)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE
    DESTINATION share/doc/worklog-remote RENAME copyright COMPONENT system)
install(FILES icons/worklog-remote.svg
    DESTINATION share/icons/hicolor/scalable/apps RENAME ${app_id}.svg COMPONENT system)
foreach(size 16 22 24 32 48 64 128 256 512)
    install(FILES icons/worklog-remote-${size}.png
        DESTINATION share/icons/hicolor/${size}x${size}/apps
        RENAME ${app_id}.png COMPONENT system)
endforeach()

# The same script under its other name.
file(CREATE_LINK worklog-remote ${CMAKE_CURRENT_BINARY_DIR}/worklog-report SYMBOLIC)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/worklog-report DESTINATION bin COMPONENT system)

find_program(GZIP gzip REQUIRED)
function(pack source packed folder)
    set(packed ${CMAKE_CURRENT_BINARY_DIR}/${packed})
    add_custom_command(OUTPUT ${packed} COMMAND ${GZIP} -9 -n -c ${source} > ${packed}
        DEPENDS ${source} VERBATIM)
    install(FILES ${packed} DESTINATION ${folder} COMPONENT system)
    set(packed_pages ${packed_pages} ${packed} PARENT_SCOPE)
endfunction()
foreach(page worklog-remote.1 worklog-report.1)
    pack(${CMAKE_CURRENT_SOURCE_DIR}/man/${page} ${page}.gz share/man/man1)
endforeach()
pack(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog.gz share/doc/worklog-remote)
add_custom_target(packed_pages ALL DEPENDS ${packed_pages})

set(CPACK_PACKAGE_NAME worklog-remote)
set(CPACK_PACKAGE_VENDOR "The Worklog Remote developers")
set(CPACK_PACKAGE_CONTACT "The Worklog Remote developers <developers@worklogremote.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "write down hours and expenses away from the office")
set(CPACK_PACKAGE_DESCRIPTION
    "Time and expense entry for people who work away from the office, against\nthe \
customers, projects and activities of an accounting system. One button\nhands the \
entries over and brings fresh data.")
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_GENERATOR "TGZ;DEB")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_SOURCE_DIR}/generators.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/open-folders.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS fonts-dejavu-core)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
include(CPack)
