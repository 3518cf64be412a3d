#!/usr/bin/env bash
# Makes what the Windows programs are linked with, from the sources of this system's packages: Qt,
# SQLite, GoogleTest and the header of xxHash, all static. It takes a while and is kept in the
# user's cache folder, keyed by the versions. Prints the folder; progress goes to standard
# error.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)

# To be counted up when what is built below changes and the versions do not.
recipe=1
version_of() { dpkg-query -W -f="\${$2}" "$1"; }
qt_version=$(version_of qt6-base-dev source:Version)
sqlite_version=$(version_of libsqlite3-dev source:Version)
gcc_version=$(version_of g++-mingw-w64-x86-64-posix Version)
cache=${XDG_CACHE_HOME:-$HOME/.cache}/worklog-remote
export WORKLOG_WINDOWS_TOOLCHAIN=$cache/windows-qt$qt_version-sqlite$sqlite_version-gcc$gcc_version-$recipe
prefix=$WORKLOG_WINDOWS_TOOLCHAIN
echo "$prefix"
exec >&2
[ ! -e "$prefix/complete" ] || exit 0

# Two at once would build into each other's folders.
mkdir -p "$cache"
exec 9>"$cache/lock"
flock 9
[ ! -e "$prefix/complete" ] || exit 0

work=$cache/work
rm -rf "$work" "$prefix"
mkdir -p "$work" "$prefix"/{include,lib}

# Sources come from where this system gets its packages. The lists are kept in a folder of their own,
# so that no setting of the system changes and the user need not be root.
fetch_source() { # name version
    local apt=$work/apt
    local settings=(-o "Dir::Etc::SourceList=$apt/sources.list" -o Dir::Etc::SourceParts=/dev/null
        -o "Dir::State::Lists=$apt/lists" -o "Dir::Cache=$apt/cache" -o APT::Sandbox::User=root)
    if [ ! -d "$apt" ]; then
        mkdir -p "$apt/lists/partial" "$apt/cache/archives/partial"
        apt-get indextargets --format 'deb-src $(REPO_URI) $(RELEASE) $(COMPONENT)' \
            'Created-By: Packages' | sort -u >"$apt/sources.list"
        apt-get "${settings[@]}" update -q
    fi
    (cd "$work" && apt-get "${settings[@]}" source -q --download-only "$1=$2")
    (cd "$work" && dpkg-source --no-check -x "$1_${2#*:}.dsc")
}

build() { # source folder, build folder, CMake's arguments
    local source=$1 folder=$2
    shift 2
    cmake -G Ninja -S "$source" -B "$folder" -DCMAKE_TOOLCHAIN_FILE="$here/mingw.cmake" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" -DBUILD_SHARED_LIBS=OFF "$@"
    cmake --build "$folder"
    cmake --install "$folder"
}

echo "Building Qt $qt_version for Windows. This is done once and takes a quarter of an hour or more."
fetch_source qt6-base "$qt_version"
features=()
# What no program of ours uses, what mingw cannot build, and (system_...) what Qt brings along.
for off in concurrent dbus direct2d directwrite3 dynamicgl glib icu network opengl pkg_config printsupport sql \
    tabletevent vulkan xml system_freetype system_harfbuzz system_jpeg system_pcre2 system_png \
    system_zlib; do
    features+=("-DFEATURE_$off=OFF")
done
build "$work"/qt6-base-*/ "$work/qt-build" -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF \
    "${features[@]}"

echo "Building SQLite $sqlite_version for Windows."
fetch_source sqlite3 "$sqlite_version"
mkdir "$work/sqlite-build"
(cd "$work/sqlite-build" && "$work"/sqlite3-*/configure --disable-tcl --disable-readline \
    && make sqlite3.c)
# As Debian builds its own: threads may share the library, and what is deleted is overwritten.
x86_64-w64-mingw32-gcc-posix -O2 -DSQLITE_THREADSAFE=1 -DSQLITE_SECURE_DELETE \
    -c "$work/sqlite-build/sqlite3.c" -o "$work/sqlite3.o"
x86_64-w64-mingw32-ar rcs "$prefix/lib/libsqlite3.a" "$work/sqlite3.o"
cp "$work/sqlite-build/sqlite3.h" "$prefix/include"

echo "Building GoogleTest for Windows."
build /usr/src/googletest "$work/googletest-build"

cp /usr/include/xxhash.h "$prefix/include"

rm -rf "$work"
touch "$prefix/complete"
