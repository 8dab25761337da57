# What scripts that look into binaries share.

stop() {
    printf '%s: %s\n' "$(basename "$0")" "$1" >&2
    exit 1
}

# choose_tools BINARY: sets $processor to the one that the file is for, and $tools to what the names of the GNU tools
# that read it begin with.
choose_tools() {
    [ -f "$1" ] || stop "there is no file '$1'."
    case $(readelf -h "$1") in
        *X86-64*) processor=x86_64 ;;
        *AArch64*) processor=aarch64 ;;
        *) stop "$1 is for a processor that it does not know." ;;
    esac
    tools=
    [ "$processor" = "$(uname -m)" ] || tools=$processor-linux-gnu-
}
