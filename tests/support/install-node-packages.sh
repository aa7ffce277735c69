#!/bin/sh
# install-node-packages.sh NPM SOURCE FOLDER: installs the packages of SOURCE/package-lock.json into FOLDER, unless they
# are there.
set -eu
npm=$1
source=$2
folder=$3
if [ -e "$folder/installed" ] && cmp -s "$source/package-lock.json" "$folder/package-lock.json"; then exit 0; fi
rm -rf "$folder"
mkdir -p "$folder"
cp "$source/package.json" "$source/package-lock.json" "$folder"
cd "$folder"
"$npm" ci --ignore-scripts --no-audit --no-fund --prefer-offline
touch installed
