#!/usr/bin/env bash
# Makes the release of the checked-out commit in OUTDIR:
#   vexa_V_amd64.deb, vexa_V_arm64.deb  Debian packages: the static executable,
#                                       its manual page and bash completion
#   vexa-V-win64.zip                    vexa.exe, README.txt, LICENSE
#   vexa-V.tar.gz                       the sources, as git archive gives them
#   SHA256SUMS                          for `sha256sum -c SHA256SUMS`
# V is the version of project() in CMakeLists.txt. Everything is built from
# the commit's files (what the tarball holds), unpacked in a new directory,
# and every time stamp is the commit's: the same commit gives the same bytes
# on every run, wherever the checkout is (.ci/run checks that). Changes not
# committed are not in the release.
# Usage: scripts/release.sh OUTDIR
set -euo pipefail
if [ $# -ne 1 ]; then
  echo "usage: scripts/release.sh OUTDIR" >&2
  exit 2
fi
umask 022
export LC_ALL=C TZ=UTC
root=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$1"
out=$(cd "$1" && pwd)
cd "$root"
VEXA_WANT_WINDOWS=1 VEXA_WANT_RELEASE=1 scripts/setup.sh

# The packages for this machine are named by its architecture; the arm64
# one would collide with it anywhere but on amd64.
if [ "$(dpkg --print-architecture)" != amd64 ]; then
  echo "release: made on amd64 machines only (this one is $(dpkg --print-architecture))" >&2
  exit 1
fi
commit=$(git rev-parse --verify 'HEAD^{commit}')
version=$(git show "$commit:CMakeLists.txt" | sed -n 's/^project(vexa VERSION \([0-9][0-9.]*\)[ )].*/\1/p')
if [ -z "$version" ]; then
  echo "release: no 'project(vexa VERSION ...)' in CMakeLists.txt of $commit" >&2
  exit 1
fi
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct "$commit")
export SOURCE_DATE_EPOCH
if [ -n "$(git status --porcelain --untracked-files=no)" ]; then
  echo "release: note: the release is made of commit $commit; changes not committed are not in it" >&2
fi

name=vexa-$version
work=$(mktemp -d "${TMPDIR:-/tmp}/vexa-release.XXXXXX")
trap 'rm -rf "$work"' EXIT
mkdir "$work/out"
git archive --format=tar --prefix="$name/" "$commit" >"$work/$name.tar"
gzip -9n <"$work/$name.tar" >"$work/out/$name.tar.gz"
tar -xf "$work/$name.tar" -C "$work"
src=$work/$name

# The presets keep the build directory out of the executables
# (-ffile-prefix-map) and strip them; see CMakePresets.json.
for preset in release arm64 windows-release; do
  echo "release: building $preset of $commit" >&2
  (cd "$src" && cmake --preset "$preset" >/dev/null && cmake --build --preset "$preset" >&2)
done

debian=$src/dist/debian
maintainer=$(sed -n 's/^Maintainer: //p' "$debian/control.in")
copyright=$(sed -n 's/^Copyright ([cC]) //p' "$src/LICENSE")
# The license text without its title and copyright line, as DEP-5 wants it:
# indented by one blank, an empty line as " .".
license_text=$(sed -n '/^Permission/,$p' "$src/LICENSE" | sed 's/^$/./; s/^/ /')

# Debian's changelog of a native package: one entry for this version.
changelog() {
  printf 'vexa (%s) unstable; urgency=medium\n\n  * Release %s.\n\n -- %s  %s\n' \
    "$version" "$version" "$maintainer" "$(date -u -R -d "@$SOURCE_DATE_EPOCH")"
}

make_deb() {
  local build=$1 arch=$2
  local stage=$work/deb-$arch
  DESTDIR=$stage cmake --install "$src/$build" --prefix /usr >/dev/null
  local doc=$stage/usr/share/doc/vexa
  # In a Debian package the license is in the copyright file.
  rm "$doc/LICENSE"
  gzip -9n "$stage/usr/share/man/man1/vexa.1"
  while IFS= read -r line; do
    case $line in
      *@MAINTAINER@*) printf '%s\n' "${line//@MAINTAINER@/$maintainer}" ;;
      *@COPYRIGHT@*) printf '%s\n' "${line//@COPYRIGHT@/$copyright}" ;;
      @LICENSE@) printf '%s\n' "$license_text" ;;
      *) printf '%s\n' "$line" ;;
    esac
  done <"$debian/copyright.in" >"$doc/copyright"
  changelog | gzip -9n >"$doc/changelog.gz"
  mkdir -p "$stage/usr/share/lintian/overrides"
  cp "$debian/lintian-overrides" "$stage/usr/share/lintian/overrides/vexa"

  find "$stage" -type d -exec chmod 755 {} +
  find "$stage" -type f -exec chmod 644 {} +
  chmod 755 "$stage/usr/bin/vexa"
  # Installed-Size as dpkg-gencontrol counts it: KiB of each file, rounded
  # up, and one for each directory; not du, whose directory sizes depend on
  # the file system.
  local size
  size=$(cd "$stage" && find usr \( -type f -printf '%s\n' \) -o \( -type d -printf '1024\n' \) |
         awk '{ kib += int(($1 + 1023) / 1024) } END { print kib }')
  mkdir "$stage/DEBIAN"
  (cd "$stage" && find usr -type f -print0 | sort -z | xargs -0 md5sum) >"$stage/DEBIAN/md5sums"
  sed -e "s/@VERSION@/$version/" -e "s/@ARCH@/$arch/" -e "s/@SIZE@/$size/" \
    "$debian/control.in" >"$stage/DEBIAN/control"
  chmod 644 "$stage/DEBIAN/control" "$stage/DEBIAN/md5sums"
  find "$stage" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
  # One compressor thread: threaded xz writes other bytes than a single
  # thread, and the number of threads would follow the machine.
  dpkg-deb --root-owner-group -Zxz -z9 --threads-max=1 --build "$stage" "$work/out/vexa_${version}_$arch.deb" >/dev/null
}
make_deb build-release amd64
make_deb build-arm64 arm64

# The zip: in this order, regular files of mode 644 (the .exe 755), the
# commit's time (zip keeps local time without a zone: the UTC reading, never
# before 1980); the texts with CR LF, for Notepad of old.
DESTDIR="" cmake --install "$src/build-windows-release" --prefix "$work/win" >/dev/null
python3 - "$work/out/$name-win64.zip" "$SOURCE_DATE_EPOCH" "$work/win" <<'EOF'
import sys, time, zipfile
path, epoch, staged = sys.argv[1], int(sys.argv[2]), sys.argv[3]
stamp = time.gmtime(max(epoch, 315532800))[:6]
def text(name):
    with open(f"{staged}/{name}", "rb") as f:
        return f.read().replace(b"\r\n", b"\n").replace(b"\n", b"\r\n")
with open(f"{staged}/vexa.exe", "rb") as f:
    exe = f.read()
members = [("vexa.exe", exe, 0o755), ("README.txt", text("README.md"), 0o644), ("LICENSE", text("LICENSE"), 0o644)]
with zipfile.ZipFile(path, "w") as archive:
    for name, data, mode in members:
        info = zipfile.ZipInfo(name, stamp)
        info.compress_type = zipfile.ZIP_DEFLATED
        info.create_system = 3
        info.external_attr = (0o100000 | mode) << 16
        archive.writestr(info, data, compresslevel=9)
EOF

files=("vexa_${version}_amd64.deb" "vexa_${version}_arm64.deb" "$name-win64.zip" "$name.tar.gz")
(cd "$work/out" && sha256sum "${files[@]}" >SHA256SUMS)
for file in "${files[@]}" SHA256SUMS; do
  mv -f "$work/out/$file" "$out/$file"
done
echo "release: $commit as $version in $out:" >&2
(cd "$out" && ls -l "${files[@]}" SHA256SUMS) >&2
