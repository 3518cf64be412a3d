# Writes the text TEXT: whose work is linked into the Windows programs, and under which licenses.
# They are taken from where this system keeps those of the packages that were built from the same sources.
set(packages qt6-base-dev libsqlite3-dev libxxhash-dev g++-mingw-w64-x86-64-posix
    mingw-w64-x86-64-dev nsis)
set(licenses LGPL-3 GPL-3 LGPL-2.1 LGPL-2 GPL-2 Apache-2.0)

set(text "What others have written
=======================

Worklog Remote itself is under the license in LICENSE.txt. Its programs for Windows contain parts that
others have written: Qt, used under the GNU Lesser General Public License 3, with what comes with
it; SQLite; xxHash; the libraries of the GCC and MinGW-w64 compilers; and the setup program and the
uninstaller are made with NSIS. Each is unchanged, from the source package of Debian 12 that is
named below. The sources of Worklog Remote have a script, packaging/windows/build.sh, that builds
everything from those packages; who changes one of them, or takes a newer one, gets programs with
that.

The texts below are those of the source packages. They name parts, too, that are not in these
programs.
")
string(REPEAT "=" 100 line)
foreach(package ${packages})
    execute_process(COMMAND dpkg-query --show
        "--showformat=\${source:Package} \${source:Version}" ${package}
        OUTPUT_VARIABLE source COMMAND_ERROR_IS_FATAL ANY)
    file(READ /usr/share/doc/${package}/copyright copyright)
    string(APPEND text "\n\n${line}\n${source}\n${line}\n\n${copyright}")
endforeach()
foreach(license ${licenses})
    file(READ /usr/share/common-licenses/${license} words)
    string(APPEND text "\n\n${line}\n${license}\n${line}\n\n${words}")
endforeach()
string(REPLACE "\r" "" text "${text}")
string(REPLACE "\n" "\r\n" text "${text}")
file(WRITE ${TEXT} "${text}")
