#!/usr/bin/env bash
# make install and make deb, checked: the installed tree passes the desktop
# validators, runs from where it was put (the app finds its plug-in and the
# plug-in its resources beside themselves, not in the build tree), and the
# Debian package holds the same files.
#   install_test.sh BUILD_DIR
set -euo pipefail
build=$1
work=$(mktemp -d /tmp/stagebeacon-install.XXXXXX)
trap 'rm -rf "$work"' EXIT
fail() { echo "install_test: $*" >&2; exit 1; }

DESTDIR=$work/dest cmake --install "$build" --prefix /usr >/dev/null
root=$work/dest/usr
expected=(
  bin/stagebeacon bin/stagebeacon-player bin/stagebeacon-service
  lib/stagebeacon/libstagebeacon.so
  lib/stagebeacon/resources/preferences.ui lib/stagebeacon/resources/notify.ui
  lib/stagebeacon/resources/buyTicketsSmall.png lib/stagebeacon/resources/Stagebeacon_iCalExport.so
  share/applications/org.stagebeacon.Stagebeacon.desktop
  share/metainfo/org.stagebeacon.Stagebeacon.metainfo.xml
  share/icons/hicolor/scalable/apps/org.stagebeacon.Stagebeacon.svg
  share/icons/hicolor/48x48/apps/org.stagebeacon.Stagebeacon.png
  share/icons/hicolor/256x256/apps/org.stagebeacon.Stagebeacon.png
  share/man/man1/stagebeacon.1 share/man/man1/stagebeacon-player.1
  share/man/man8/stagebeacon-service.8
  lib/systemd/system/stagebeacon-service.service lib/sysusers.d/stagebeacon.conf
)
for f in "${expected[@]}"; do [[ -e "$root/$f" ]] || fail "not installed: $f"; done

desktop-file-validate "$root/share/applications/org.stagebeacon.Stagebeacon.desktop"
appstreamcli validate --no-net "$root/share/metainfo/org.stagebeacon.Stagebeacon.metainfo.xml" >/dev/null
for page in "$root"/share/man/man*/*; do
  warnings=$(groff -man -ww -z "$page" 2>&1) || fail "$page: $warnings"
  [[ -z "$warnings" ]] || fail "$page: $warnings"
done
unit=$root/lib/systemd/system/stagebeacon-service.service
for option in "ExecStart=/usr/bin/stagebeacon-service " "User=stagebeacon" "StateDirectory=stagebeacon" \
  "--db /var/lib/stagebeacon/" "ProtectSystem=strict" "PrivateTmp=yes" "NoNewPrivileges=yes"; do
  grep -q -- "$option" "$unit" || fail "the unit lacks $option"
done
[[ $(head -c 8 "$root/share/icons/hicolor/48x48/apps/org.stagebeacon.Stagebeacon.png" | od -An -c | tr -d ' ') == *PNG* ]] ||
  fail "the 48x48 icon is no PNG"

# Moved elsewhere, the tree still runs: the first frame comes from the
# installed plug-in with its installed resources.
mv "$work/dest" "$work/moved"
root=$work/moved/usr
export HOME=$work/home XDG_CONFIG_HOME=$work/home/config STAGEBEACON_SERVICE=http://127.0.0.1:9
unset STAGEBEACON_RESOURCES DBUS_SESSION_BUS_ADDRESS
mkdir -p "$HOME"
timeout 60 "$root/bin/stagebeacon" --headless --exit-after-first-frame --log "$work/app.log" ||
  fail "the installed app failed: $(cat "$work/app.log")"
grep -q '^first frame at ' "$work/app.log" || fail "the installed app drew no frame: $(cat "$work/app.log")"
wrong_plugin=$(LD_DEBUG= timeout 60 "$root/bin/stagebeacon" --plugin /nonexistent --headless 2>&1 || true)
[[ "$wrong_plugin" == *"/nonexistent"* ]] || fail "a wrong --plugin is not reported: $wrong_plugin"

# The package: built by CPack, holding the same files under /usr.
(cd "$build" && cpack -G DEB -B "$work/deb" >/dev/null) || fail "cpack failed"
deb=$(ls "$work"/deb/stagebeacon_*.deb)
contents=$(dpkg-deb -c "$deb" | awk '{print $6}')
for f in "${expected[@]}"; do
  grep -qx "./usr/$f" <<<"$contents" || fail "the package lacks /usr/$f"
done
[[ $(dpkg-deb -f "$deb" Package) == stagebeacon ]] || fail "wrong package name"
dpkg-deb -f "$deb" Depends | grep -q libgtk-3 || fail "the package does not depend on GTK"
echo "install_test: installed tree and package checked"
