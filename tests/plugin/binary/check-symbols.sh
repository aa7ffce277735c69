#!/bin/sh
# check-symbols.sh PLUGIN: it exports its entry point and call record and nothing else, leaves nothing undefined but the
# host's functions and what its libraries have, and needs no library beyond the host's and the system's.
set -eu
plugin=$1

exported=$(nm -D --defined-only "$plugin" | awk '{print $3}' | LC_ALL=C sort | tr '\n' ' ')
if [ "$exported" != "FMExternCallProc gFMX_ExternCallPtr " ]; then
  echo "exports: $exported"
  exit 1
fi

# Each undefined symbol is one of the host's, one of libxcb's, weak, or versioned: bound to a library at link time.
strange=$(nm -D --undefined-only "$plugin" | awk '$1 == "U" {print $2}' | grep -v -e '^FM_[A-Z]' -e '^xcb_' -e '@' || true)
if [ -n "$strange" ]; then
  echo "undefined: $strange"
  exit 1
fi
nm -D --undefined-only "$plugin" | grep -q ' FM_Text_Assign$' || { echo "the host's functions are not undefined"; exit 1; }

needed=$(readelf -d "$plugin" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | LC_ALL=C sort)
strange=$(echo "$needed" | grep -v -e '^libFMWrapper\.so$' -e '^libstdc++\.so' -e '^libgcc_s\.so' -e '^libc\.so' \
  -e '^libm\.so' -e '^libxcb\.so' -e '^libcurl\.so' -e '^ld-linux' || true)
if [ -n "$strange" ]; then
  echo "needs: $strange"
  exit 1
fi
echo "$needed" | grep -qx libFMWrapper.so || { echo "does not need libFMWrapper.so"; exit 1; }
readelf -d "$plugin" | grep -q -e RPATH -e RUNPATH && { echo "has a run-time search path"; exit 1; }
exit 0
