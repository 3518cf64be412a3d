# The flags that every target of ours is compiled with. Warnings are errors; Qt's and SQLite's
# headers are system headers and exempt. Compiler presets add what differs between builds.
add_library(project_warnings INTERFACE)
target_compile_options(project_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Werror
    -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wold-style-cast -Wcast-align -Wformat=2 -Wnull-dereference -Wimplicit-fallthrough)
target_compile_definitions(project_warnings INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_STRICT_ITERATORS)
# Includes are written from the project's root, so that their first word names the module.
target_include_directories(project_warnings INTERFACE ${PROJECT_SOURCE_DIR})
