# SPDX-License-Identifier: MIT
# Functions for scripts that test the program in a fresh Debian; to be sourced. Needs root, debootstrap,
# and the package archive that apt uses here.

[ "$(id -u)" -eq 0 ] || { echo "${0##*/}: run this as root." >&2; exit 1; }
command -v debootstrap >/dev/null || { echo "${0##*/}: install debootstrap." >&2; exit 1; }

# Names of the releases in the archive.
declare -A suites=([12]=bookworm [13]=trixie)

# Installs the release in the folder, from the package archive that apt uses here.
make_debian() { # release folder
    local mirror
    mirror=$(apt-get indextargets --format '$(SITE)' | head -n 1)
    mkdir -p "$2"
    debootstrap --variant=minbase --include=ca-certificates "${suites[$1]}" "$2" "$mirror" >/dev/null
    local file
    for file in /etc/apt/apt.conf.d/*; do
        # Those of packages come with the packages there; apt would ask which of the two to keep.
        dpkg-query --search "$file" >/dev/null 2>&1 || cp -L "$file" "$2/etc/apt/apt.conf.d/"
    done
    cp -aL /etc/resolv.conf /etc/hosts "$2/etc/"
    cp -a /etc/ssl/certs "$2/etc/ssl/"
    in_debian "$2" apt-get update --quiet >/dev/null
}

# Runs a command as root in the Debian in the folder. It has its own processes, mounts and devices, which
# end with the command, and cannot see the host. It uses pivot_root, because with chroot the host would
# stay visible, and the kernel would allow no namespaces inside.
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

# Clones the committed state of this repository into the home of a user in the Debian in the folder.
clone_to() { # folder person
    git clone --quiet --no-hardlinks . "$(home_of "$1" "$2")/trolleo"
    in_debian "$1" sh -c "chown --recursive $2: ~$2/trolleo"
}

# Prints the path of a user's home as seen from the host.
home_of() { # folder person
    echo "$1$(in_debian "$1" sh -c "echo ~$2")"
}

install_in() { # folder package...
    local root=$1
    shift
    in_debian "$root" apt-get install --yes --quiet --no-install-recommends "$@" >/dev/null
}

# Prints a command that starts the given one on its own screen, and ends it once its window is shown.
shown() { # command
    echo "timeout 3600 xvfb-run --auto-servernum bash -c '
        $1 & program=\$!
        until xwininfo -name Trolleo >/dev/null 2>&1; do kill -0 \$program || exit; sleep 0.1; done
        kill \$program; wait \$program || true'"
}
