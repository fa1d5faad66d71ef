#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test through CTest.
# KVL_SANITIZE=1 ./test.sh builds and runs the tests with AddressSanitizer and
# UndefinedBehaviorSanitizer in build-asan/ instead of build/.
set -euo pipefail
cd "$(dirname "$0")"

./setup.sh

build_dir=build
cmake_args=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)
if [ "${KVL_SANITIZE:-0}" = "1" ]; then
  build_dir=build-asan
  cmake_args=(-DCMAKE_BUILD_TYPE=Debug -DKVL_SANITIZE=ON -DKVL_BENCHMARKS=OFF)
  # Mesa and SDL keep some allocations until exit; leaks of the project's own
  # objects are caught by the destructor tests instead.
  export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=0}"
  export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1}"
fi

cmake -S . -B "$build_dir" "${cmake_args[@]}" >/dev/null
cmake --build "$build_dir" -j "$(nproc)"

# No sound card is needed: SDL's dummy driver plays silently.
export SDL_AUDIODRIVER="${SDL_AUDIODRIVER:-dummy}"

ctest_command=(ctest --test-dir "$build_dir" --output-on-failure -j "$(nproc)" "$@")

if [ -n "${DISPLAY:-}" ]; then
  "${ctest_command[@]}"
else
  # The GL tests and the end-to-end tests need an X server with GLX; Mesa's
  # llvmpipe renders in software. -noreset keeps the server up between the
  # test processes, which connect and leave all the time.
  xvfb-run -a -s "-screen 0 1280x1024x24 +extension GLX +render -noreset" "${ctest_command[@]}"
fi
