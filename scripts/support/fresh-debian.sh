# SPDX-License-Identifier: MIT
# Fresh Debians to try the program in, for the scripts that read this in. Needs root, debootstrap, and
# the archive that this machine's apt uses.

[ "$(id -u)" -eq 0 ] || { echo "${0##*/}: run this as root." >&2; exit 1; }
command -v debootstrap >/dev/null || { echo "${0##*/}: install debootstrap." >&2; exit 1; }

# The releases' names in the archive.
declare -A suites=([12]=bookworm [13]=trixie)

# Makes the named release in the folder. Its packages come from where this machine has its own from.
make_debian() { # release folder
    local mirror
    mirror=$(apt-get indextargets --format '$(SITE)' | head -n 1)
    mkdir -p "$2"
    debootstrap --variant=minbase --include=ca-certificates "${suites[$1]}" "$2" "$mirror" >/dev/null
    cp -aL /etc/apt/apt.conf.d "$2/etc/apt/"
    cp -aL /etc/resolv.conf /etc/hosts "$2/etc/"
    cp -a /etc/ssl/certs "$2/etc/ssl/"
    in_debian "$2" apt-get update --quiet >/dev/null
}

# Runs a command in the Debian of the folder as its root: with processes, mounts and devices of its own,
# which end with the command, and without the rest of this machine (a changed root would leave it in
# sight, and the kernel then allows no namespaces within).
in_debian() { # folder command...
    local root
    root=$(realpath "$1")
    shift
    unshare --mount --pid --fork --kill-child --propagation private bash -c '
        set -e
        root=$1; shift
        mount --bind "$root" "$root"
        mkdir -p "$root/outside"
        mount --rbind /dev "$root/dev"
        mount -t tmpfs tmpfs "$root/dev/shm"
        mount --rbind /sys "$root/sys"
        mount -t proc proc "$root/proc"
        mount -t tmpfs tmpfs "$root/run"
        cd "$root"
        pivot_root . outside
        umount --lazy /outside
        exec env --ignore-environment PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
            HOME=/root LC_ALL=C.UTF-8 TERM=dumb DEBIAN_FRONTEND=noninteractive "$@"' in-debian "$root" "$@"
}

# A clone of what is committed here, for a person there, who may become root by sudo if there is one.
clone_to() { # folder person
    git clone --quiet --no-hardlinks . "$(home_of "$1" "$2")/trolleo"
    in_debian "$1" sh -c "chown --recursive $2: ~$2/trolleo"
}

# The home of a person there, as this machine sees it.
home_of() { # folder person
    echo "$1$(in_debian "$1" sh -c "echo ~$2")"
}

install_in() { # folder package...
    local root=$1
    shift
    in_debian "$root" apt-get install --yes --quiet --no-install-recommends "$@" >/dev/null
}

# The command that starts what is named on a screen of its own, and ends it once its window shows.
shown() { # command
    echo "timeout 3600 xvfb-run --auto-servernum bash -c '
        $1 & program=\$!
        until xwininfo -name Trolleo >/dev/null 2>&1; do kill -0 \$program || exit; sleep 0.1; done
        kill \$program; wait \$program || true'"
}
