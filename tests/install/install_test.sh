#!/usr/bin/env bash
# The program as a new user gets it, in one of two ways:
#   install_test.sh BUILD_DIR program   installs into a temporary prefix and starts the installed
#                                       program as the menu would, from a home of its own (needs a display);
#   install_test.sh BUILD_DIR package   makes the Debian package and reads its files and dependencies.
set -euo pipefail
build=$(cd "$1" && pwd)
tmp=$(mktemp -d "${TMPDIR:-/tmp}/hexfold-install-XXXXXX")
trap 'rm -rf "$tmp"' EXIT

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

# What a user finds installed, relative to the prefix; the icon in every size.
installed=(bin/hexfold bin/make_map share/applications/hexfold.desktop share/doc/hexfold/guide.md
  share/hexfold/maps/qm2207.txt)
for name in verdana.glf back.dds qm2207.map6 items.dat skills.dat factions.dat characters.idx npcs.idx "Mara Vell.chr"; do
  installed+=("share/hexfold/campaign/$name")
done
sizes=(48 128 256)
for size in "${sizes[@]}"; do
  installed+=("share/icons/hicolor/${size}x${size}/apps/hexfold.png")
done

program() {
  local prefix=$tmp/prefix home=$tmp/home
  cmake --install "$build" --prefix "$prefix" >"$tmp/install.log"
  for f in "${installed[@]}"; do
    [ -f "$prefix/$f" ] || fail "not installed: $f"
  done
  for size in "${sizes[@]}"; do
    file -b "$prefix/share/icons/hicolor/${size}x${size}/apps/hexfold.png" |
      grep -q "^PNG image data, $size x $size, 8-bit/color RGBA" || fail "the ${size}x${size} icon is no such PNG"
  done
  desktop-file-validate "$prefix/share/applications/hexfold.desktop" || fail "the menu entry is not valid"

  # As the menu starts it: its Exec line, found on the PATH, in the home directory. The test's hook
  # saves a character after the first frame and ends the program.
  local exec campaign=$home/data/hexfold/campaign out
  exec=$(sed -n 's/^Exec=//p' "$prefix/share/applications/hexfold.desktop")
  mkdir -p "$home"
  start() {
    (cd "$home" && env HOME="$home" XDG_DATA_HOME="$home/data" PATH="$prefix/bin:$PATH" \
      HEXFOLD_SAVE_AND_QUIT="Mara Vell" $exec)
  }
  out=$(start) || fail "the first start ended with status $?"
  [ "$out" = "hexfold: campaign directory $campaign (new: a copy of the sample campaign)" ] ||
    fail "the first start said: $out"
  diff -r "$prefix/share/hexfold/campaign" "$campaign" || fail "the new campaign is not the sample"

  # The second start takes the campaign as it is, and the save lands in it.
  touch -d 2000-01-01 "$campaign"/*
  out=$(start) || fail "the second start ended with status $?"
  [ "$out" = "hexfold: campaign directory $campaign" ] || fail "the second start said: $out"
  local written
  written=$(cd "$campaign" && find . -type f -newermt 2000-01-02)
  [ "$written" = "./Mara Vell.chr" ] || fail "the second start wrote: ${written:-nothing}"
  cmp "$prefix/share/hexfold/campaign/Mara Vell.chr" "$campaign/Mara Vell.chr" || fail "the saved character differs"
}

package() {
  cpack -G DEB -B "$tmp/package" --config "$build/CPackConfig.cmake" >"$tmp/cpack.log" 2>&1 ||
    { cat "$tmp/cpack.log"; fail "cpack"; }
  local deb contents depends
  deb=$(echo "$tmp"/package/*.deb)
  contents=$(dpkg-deb --contents "$deb" | awk '{ $1 = $2 = $3 = $4 = $5 = ""; sub(/^ +/, ""); print }')
  for f in "${installed[@]}"; do
    grep -qxF "./usr/$f" <<<"$contents" || fail "not in the package: /usr/$f"
  done
  [ "$(grep -c '^\./usr/bin/.' <<<"$contents")" = 2 ] || fail "more programs than two: $(grep '^\./usr/bin/' <<<"$contents")"
  # None of these is named in the build files: dpkg-shlibdeps finds them in the program's links.
  depends=$(dpkg-deb --field "$deb" Depends)
  local names
  names=$(tr ',' '\n' <<<"$depends" | sed 's/^ *//; s/ .*//')
  for p in libc6 libstdc++6 libglfw3 libglew2.2 libdevil1c2; do
    grep -qxF "$p" <<<"$names" || fail "Depends lacks $p: $depends"
  done
}

case ${2:-} in
  program | package) "$2" ;;
  *) fail "usage: install_test.sh BUILD_DIR program|package" ;;
esac
