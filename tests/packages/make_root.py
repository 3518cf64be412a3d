#!/usr/bin/env python3
"""Lays down the smallest system that can hold a package: make_root.py FOLDER PACKAGE.deb

What every Debian system has and what the package depends on, copied from what is installed here, so
that nothing is downloaded. The folder's package list knows these and no others: dpkg installs the
package there only if it names all that it needs.
"""

import os
import re
import shutil
import stat
import subprocess
import sys

FIELDS = ("Package", "Architecture", "Status", "Essential", "Provides", "Pre-Depends", "Depends")
# What only people read, and the drivers of graphics cards, which are most of all bytes.
LEFT_OUT = re.compile(r"/usr/share/(doc|info|locale|man|perl)/|/usr/lib/[^/]*/(dri/|libLLVM)")


def output_of(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def alternatives(depends):
    """The names in a field like "a (>= 1) | b, c": [["a", "b"], ["c"]]."""
    return [
        [re.split(r"[ (:]", name.strip())[0] for name in choice.split("|")]
        for choice in depends.split(",")
        if choice.strip()
    ]


def installed_packages():
    """Every installed package by its name and by the names that it provides."""
    lines = output_of("dpkg-query", "-W", "-f", "\t".join(f"${{{f}}}" for f in FIELDS) + "\n")
    packages = {}
    provided = {}
    for line in lines.splitlines():
        package = dict(zip(FIELDS, line.split("\t")))
        if not package["Status"].endswith(" installed"):
            continue
        packages.setdefault(package["Package"], package)
        for names in alternatives(package["Provides"]):
            provided.setdefault(names[0], package)
    return {**provided, **packages}


def needed_packages(deb):
    known = installed_packages()
    wanted = alternatives(output_of("dpkg-deb", "--field", deb, "Depends"))
    wanted += [[name] for name, package in known.items() if package["Essential"] == "yes"]
    needed = {}
    while wanted:
        choice = wanted.pop()
        package = next((known[name] for name in choice if name in known), None)
        if package is None:
            sys.exit("not installed here: " + " | ".join(choice))
        if package["Package"] in needed:
            continue
        needed[package["Package"]] = package
        wanted += alternatives(package["Pre-Depends"]) + alternatives(package["Depends"])
    return needed.values()


def copy(path, root):
    target = root + path
    if LEFT_OUT.match(path) or os.path.lexists(target):
        return
    try:
        mode = os.lstat(path).st_mode
        os.makedirs(os.path.dirname(target), exist_ok=True)
        if stat.S_ISLNK(mode):
            os.symlink(os.readlink(path), target)
        elif stat.S_ISDIR(mode):
            os.mkdir(target)
        elif stat.S_ISREG(mode):
            shutil.copy(path, target)
    except (FileNotFoundError, PermissionError):
        pass  # the administrator has removed it, or keeps it from this user


def main():
    root, deb = os.path.abspath(sys.argv[1]), sys.argv[2]
    os.makedirs(root)
    for name in ("/bin", "/sbin", "/lib", "/lib32", "/lib64", "/libx32"):
        if os.path.islink(name):
            copy(name, root)
            os.makedirs(root + os.path.realpath(name), exist_ok=True)
    for folder in ("/tmp", "/var/lib/dpkg/info", "/var/lib/dpkg/updates"):
        os.makedirs(root + folder)

    packages = [
        package["Package"] + ("" if package["Architecture"] == "all" else ":" + package["Architecture"])
        for package in needed_packages(deb)
    ]
    for path in output_of("dpkg-query", "-L", *packages).splitlines():
        if path.startswith("/") and path != "/.":
            copy(path, root)
    with open(root + "/var/lib/dpkg/status", "w", encoding="utf-8") as status:
        status.write(output_of("dpkg-query", "-s", *packages))
    for package in packages:
        lists = [f"/var/lib/dpkg/info/{name}.list" for name in (package, package.split(":")[0])]
        copy(next(name for name in lists if os.path.exists(name)), root)


if __name__ == "__main__":
    main()
