# The start every e2e script shares (sourced): strict mode, the program and
# the source tree named, a scratch folder removed on exit, none of the user's
# own settings or cache, and the folder for pictures to look at.
set -euo pipefail
: "${QUILLET:?}" "${QUILLET_SOURCE_DIR:?}"
lib="$QUILLET_SOURCE_DIR/tests/e2e/lib"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export QUILLET_CONFIG_DIR="$work/config" XDG_CACHE_HOME="$work/cache"
artefacts="${QUILLET_BUILD_DIR:-$work}/artefacts"
mkdir -p "$artefacts"
