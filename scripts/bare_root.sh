# A bare Debian 12 folder (debootstrap, minbase, with git) that a chroot makes the root; sourced, not run. It takes over
# this machine's way to the package registry and shares nothing else with it.
# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash

# Only what this machine already uses to reach its registry is used again.
main_mirror() {
  # shellcheck disable=SC2016  # apt's own placeholders
  apt-get indextargets --format '$(REPO_URI) $(CODENAME) $(COMPONENT)' 'Created-By: Packages' |
    awk '$2 == "bookworm" && $3 == "main" { print $1; exit }'
}

# make_bare_archive CACHE: has the archive of the bare system in a folder; sets `mirror` and `archive`.
make_bare_archive() {
  local cache
  ((EUID == 0)) || fail "a chroot takes root: run this as root, or under sudo"
  command -v debootstrap >/dev/null ||
    fail "debootstrap is missing: scripts/bootstrap --also bare-machine"
  mkdir -p "$1"
  cache=$(cd "$1" && pwd)
  archive=$cache/bookworm-minbase-git.tar
  mirror=$(main_mirror)
  [[ -n $mirror ]] || fail "this machine's apt sources name no Debian 12 main archive (try apt-get update)"
  if [[ ! -f $archive ]]; then
    rm -rf "$cache/base"
    quietly "$cache/debootstrap.log" "making a bare Debian 12" \
      debootstrap --variant=minbase --include=git bookworm "$cache/base" "$mirror"
    rm -rf "$cache/base/var/cache/apt/archives/"*.deb "$cache/base/var/lib/apt/lists/"*
    tar -C "$cache/base" -cf "$archive.part" .
    mv "$archive.part" "$archive"
    rm -rf "$cache/base"
  fi
  say "bare system: $(du -h "$archive" | cut -f1) archive, git, bash and apt"
}

# close_bare_root: takes the root away that open_bare_root made, or with keep=yes leaves it.
close_bare_root() {
  mountpoint -q "$root/dev/pts" && umount "$root/dev/pts"
  mountpoint -q "$root/proc" && umount "$root/proc"
  if [[ ${keep:-no} == yes ]]; then
    say "kept: $root"
  elif ! mountpoint -q "$root/proc" && ! mountpoint -q "$root/dev/pts"; then
    rm -rf --one-file-system "$root"
  fi
}

# open_bare_root: unpacks the archive beside it and makes it ready; sets `root`, and has it closed at the script's end.
open_bare_root() {
  local item
  root=$(mktemp -d "$(dirname "$archive")/root.XXXXXX")
  trap close_bare_root EXIT
  chmod 755 "$root"
  tar -C "$root" -xf "$archive"
  mount -t proc proc "$root/proc"
  # A machine has terminals; a test types at one.
  mkdir -p "$root/dev/pts"
  mount -t devpts -o newinstance,ptmxmode=0666 devpts "$root/dev/pts"
  ln -sfn pts/ptmx "$root/dev/ptmx"

  # The way to the registry: sources, the keys they name, proxy and date settings, names and resolver.
  # Other makers' archives stay out: they may want keys and certificates that a bare system has not.
  rm -rf "$root/etc/apt/sources.list" "$root/etc/apt/sources.list.d"
  mkdir "$root/etc/apt/sources.list.d"
  for item in /etc/apt/sources.list /etc/apt/sources.list.d/*.{list,sources}; do
    [[ ! -f $item ]] || ! grep -qF "${mirror%/}" "$item" || cp "$item" "$root$item"
  done
  [[ ! -d /etc/apt/trusted.gpg.d ]] || cp -rnT /etc/apt/trusted.gpg.d "$root/etc/apt/trusted.gpg.d"
  [[ ! -d /usr/share/keyrings ]] || cp -rnT /usr/share/keyrings "$root/usr/share/keyrings"
  apt-config dump | grep -E '^Acquire::(https?|Check-|Retries|IndexTargets::deb::DEP-11)' \
    >"$root/etc/apt/apt.conf.d/90this-machine" || true
  for item in /etc/resolv.conf /etc/hosts; do
    [[ ! -e $item ]] || cat "$item" >"$root$item"
  done
}

# inside_words: how a program of the bare root is started, one word a line.
inside_words() {
  printf '%s\n' chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root TERM=dumb \
    DEBIAN_FRONTEND=noninteractive ${http_proxy:+http_proxy="$http_proxy"} ${https_proxy:+https_proxy="$https_proxy"}
}

# inside TEXT: runs shell text in the bare root.
inside() {
  local words
  mapfile -t words < <(inside_words)
  "${words[@]}" bash -c "$1"
}
