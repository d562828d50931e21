# shellcheck shell=bash disable=SC2154,SC2034
# Installs the Debian packages that the project needs, and nothing when they are there. Sourced after common.sh.

test_packages='googletest unixodbc python3-pyodbc' # besides those of the list

# What building and opening the editor needs.
package_list() {
    cat <<'LIST'
g++ cmake ninja-build
g++-multilib
g++-mingw-w64-i686-posix mingw-w64-tools
unixodbc-dev libsqlite3-dev
libodbc2:i386 odbcinst:i386 unixodbc-dev:i386 libsqlite3-0:i386
wine wine32:i386 fonts-wine fonts-liberation
xvfb xdotool imagemagick
LIST
    printf '%s\n' "${KV_MORE_PACKAGES:-}" # of a command that needs more
}

# missing_packages: the names from the list that are not installed, one a line.
missing_packages() {
    dpkg-query -W -f '${Package}:${Architecture} ${db:Status-Status}\n' 2>/dev/null |
        awk -v wanted="$(package_list | tr '\n' ' ')" -v native="$(dpkg --print-architecture)" '
            $2 == "installed" { installed[$1] = 1 }
            END {
                count = split(wanted, name, " ")
                for (i = 1; i <= count; i++) {
                    full = name[i] ~ /:/ ? name[i] : name[i] ":" native
                    any = name[i] ~ /:/ ? full : name[i] ":all"
                    if (!(full in installed) && !(any in installed)) print name[i]
                }
            }'
}

# as_root COMMAND...: directly for root, through sudo for everyone else.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# ask_for_root WHY...: ends the script, with these lines, unless as_root will work. A password is asked for here.
ask_for_root() {
    [ "$(id -u)" -ne 0 ] || return 0
    command -v sudo >/dev/null || fail "packages are missing, and this user is neither root nor has sudo" "$@"
    note "as root, through sudo"
    sudo -n true 2>/dev/null && return
    note "sudo asks for the password of $(id -un)"
    sudo -v || fail "packages are missing, and sudo does not let this user install them" "$@"
}

apt_install() {
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "$@"
}

install_packages() {
    local missing codename way options log=$logs/packages.log
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        fail "this is not a Debian system: dpkg-query or apt-get is missing" "Required packages: $(package_list | tr '\n' ' ')"
    fi
    mapfile -t missing < <(missing_packages)
    if [ ${#missing[@]} -eq 0 ]; then
        step "Packages: all installed"
        return
    fi
    step "Packages: installing ${#missing[@]}: ${missing[*]}"
    : >"$log"
    if [ "$(dpkg --print-architecture)" != amd64 ]; then
        fail "the project is built on 64-bit PCs (amd64), this machine is $(dpkg --print-architecture)"
    fi
    ask_for_root "An administrator can install them: dpkg --add-architecture i386; apt-get update;" \
        "apt-get install --no-install-recommends ${missing[*]}"
    if ! dpkg --print-foreign-architectures | grep -qx i386; then
        note "adding the architecture i386 to dpkg"
        as_root dpkg --add-architecture i386
    fi
    note "apt-get update"
    as_root apt-get update -q >>"$log" 2>&1 || note "apt-get update reported errors (see $log); going on with what it has read"
    # 32-bit packages must have exactly the version of their 64-bit twins. Where the index of one architecture lacks an
    # update that is already installed for the other, the release's own versions fit together.
    codename=$(. /etc/os-release && printf '%s' "${VERSION_CODENAME:-}")
    printf 'Package: *\nPin: release n=%s\nPin-Priority: 1001\n' "$codename" >"$build/apt-preferences"
    for way in "plain apt-get install" \
        "apt-get install -t $codename --allow-downgrades" \
        "apt-get install --allow-downgrades with every package pinned to $codename"; do
        note "$way (one to three minutes)"
        case $way in
            plain*) options=() ;;
            *-t*) options=(-t "$codename" --allow-downgrades) ;;
            *) options=(-o "Dir::Etc::Preferences=$build/apt-preferences" --allow-downgrades) ;;
        esac
        if apt_install ${options[@]+"${options[@]}"} "${missing[@]}" >>"$log" 2>&1; then break; fi
        note "this way failed"
    done
    mapfile -t missing < <(missing_packages)
    if [ ${#missing[@]} -ne 0 ]; then
        tail -n 25 "$log" >&2
        fail "these packages could not be installed: ${missing[*]}" "apt's whole output: $log"
    fi
    note "installed by: $way"
}
