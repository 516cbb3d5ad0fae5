#!/usr/bin/env bash
# Installs what the real-browser test needs, each only when it is missing:
# Chromium and Node.js from Debian, and the npm packages pinned in
# package-lock.json (the timeline viewer and the browser driver). When an
# install fails (no network, not root) the browser test cannot run: under CI
# that fails the run here, elsewhere the test reports itself skipped.
set -uo pipefail
cd "$(dirname "$0")/.."

failed=()
sudo=()
[[ $(id -u) -eq 0 ]] || sudo=(sudo)
apt_install() {
    echo "installing missing packages: $*"
    { "${sudo[@]}" apt-get update -q &&
        "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q "$@"; } > /dev/null ||
        failed+=("$*")
}
[ -x /usr/bin/chromium ] || apt_install chromium
command -v npm > /dev/null || apt_install nodejs npm
if command -v npm > /dev/null && ! npm ls --depth=0 > /dev/null 2>&1; then
    # playwright-core only drives the browser installed above; it downloads none.
    npm ci --ignore-scripts --no-audit --no-fund > /dev/null || failed+=("npm packages")
fi

if [ ${#failed[@]} -gt 0 ]; then
    echo "install_browser_test_dependencies: could not install: ${failed[*]}; the browser test cannot run" >&2
    [ -z "${CI:-}" ] || exit 1
fi
exit 0
