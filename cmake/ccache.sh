# shellcheck shell=sh
# For the scripts that build, to be sourced from the top folder: the compiler's cache, where there is one, with a place
# for its folder. Copies of the project in other folders share what it holds; precompiled headers are cached on the two
# assumptions stated here.
if command -v ccache >/dev/null && [ -n "${HOME:-}${CCACHE_DIR:-}${XDG_CACHE_HOME:-}" ]; then
  export CMAKE_CXX_COMPILER_LAUNCHER=ccache
  export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
  export CCACHE_SLOPPINESS=pch_defines,time_macros
fi
