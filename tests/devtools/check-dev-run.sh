#!/bin/sh
# `./dev.sh run ARGS > file` must leave only the program's output in the
# file: the package check and the build write to stderr. Runs a copy of
# dev.sh beside stand-ins for dpkg-query, cmake and the command-line tool, so
# nothing is built.
set -eu
src=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cp "$src/dev.sh" "$work/dev.sh"
mkdir -p "$work/stubs" "$work/build/bin"
cat > "$work/stubs/dpkg-query" <<'STUB'
#!/bin/sh
printf 'install ok installed'
STUB
cat > "$work/stubs/cmake" <<'STUB'
#!/bin/sh
echo "-- Configuring done (stand-in cmake $*)"
echo "[1/1] Linking CXX executable bin/vetrix-check"
STUB
cat > "$work/build/bin/vetrix-check" <<'STUB'
#!/bin/sh
printf '{"report":"%s"}\n' "$*"
STUB
chmod +x "$work/stubs/dpkg-query" "$work/stubs/cmake" "$work/build/bin/vetrix-check"

env -u DISPLAY -u WAYLAND_DISPLAY PATH="$work/stubs:$PATH" \
    "$work/dev.sh" run --format json >"$work/out" 2>"$work/err"

expected='{"report":"--format json"}'
if [ "$(cat "$work/out")" != "$expected" ]; then
    echo "stdout holds more than the program's output:" >&2
    cat "$work/out" >&2
    exit 1
fi
if ! grep -q 'Linking CXX executable' "$work/err"; then
    echo "the build's output did not reach stderr:" >&2
    cat "$work/err" >&2
    exit 1
fi
echo "stdout carries the program's output only"
