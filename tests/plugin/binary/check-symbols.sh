#!/bin/sh
# check-symbols.sh PLUGIN: checks the plug-in's exports, undefined symbols, libraries and hardening.
set -eu
plugin=$1

fail() {
  echo "$*"
  exit 1
}

exported=$(nm -DC --defined-only "$plugin" | cut -d ' ' -f 3- | sed 's/(.*//' | LC_ALL=C sort | tr '\n' ' ')
[ "$exported" = "AppleScript::ExportFrontDocumentAsXML AppleScript::GetFrontDocumentName AppleScript::Run \
AppleScript::SaveFrontDocumentAsXML FMExternCallProc gFMX_ExternCallPtr " ] || fail "exports: $exported"

# Each undefined symbol is one of the host's, one of libxcb's, weak, or versioned: bound to a library at link time.
undefined=$(nm -D --undefined-only "$plugin" | awk '$1 == "U" {print $2}')
strange=$(echo "$undefined" | grep -v -e '^FM_[A-Z]' -e '^xcb_' -e '@' || true)
[ -z "$strange" ] || fail "undefined: $strange"
echo "$undefined" | grep -qx FM_Text_Assign || fail "the host's functions are not undefined"

dynamic=$(readelf -dW "$plugin")
needed=$(echo "$dynamic" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
strange=$(echo "$needed" | grep -v -e '^libFMWrapper\.so$' -e '^libstdc++\.so' -e '^libgcc_s\.so' -e '^libc\.so' \
  -e '^libm\.so' -e '^libxcb\(-[a-z]*\)\?\.so' -e '^libcurl\.so' -e '^ld-linux' || true)
[ -z "$strange" ] || fail "needs: $strange"
echo "$needed" | grep -qx libFMWrapper.so || fail "does not need libFMWrapper.so"
if echo "$dynamic" | grep -q -e RPATH -e RUNPATH; then fail "has a run-time search path"; fi

echo "$undefined" | grep -q '^__stack_chk_fail@' || fail "functions do not check their stack"
echo "$undefined" | grep '_chk@' | grep -qv '^__stack_chk' || fail "calls no fortified function"
readelf -lW "$plugin" | grep -q GNU_RELRO || fail "the tables of the linker stay writable"
echo "$dynamic" | grep -q 'FLAGS.*NOW' || fail "symbols are bound late"
