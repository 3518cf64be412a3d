# windows_resources(<executable> DESCRIPTION <text>): the icon, the version and the manifest that a
# program carries in its file on Windows. The text is what Windows calls the program, in its list of
# running programs for one. Elsewhere it does nothing.
if(WIN32)
    enable_language(RC)
endif()

function(windows_resources target)
    if(NOT WIN32)
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "DESCRIPTION" "")
    set(icon ${PROJECT_SOURCE_DIR}/packaging/icons/worklog-remote.ico)
    set(manifest ${PROJECT_SOURCE_DIR}/packaging/windows/program.manifest)
    file(STRINGS ${PROJECT_SOURCE_DIR}/LICENSE copyright REGEX "^Copyright")
    get_target_property(name ${target} OUTPUT_NAME)
    if(NOT name)
        set(name ${target})
    endif()
    get_target_property(suffix ${target} SUFFIX)
    if(suffix STREQUAL "suffix-NOTFOUND")
        set(suffix .exe)
    endif()
    set(file_name ${name}${suffix})
    set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${script} @ONLY)
    set_source_files_properties(${script} PROPERTIES OBJECT_DEPENDS "${icon};${manifest}")
    # A target of its own: the flags of a program are a compiler's, which the resource compiler
    # does not know.
    add_library(${target}_resources OBJECT ${script})
    set_target_properties(${target}_resources PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_resources>)
endfunction()
