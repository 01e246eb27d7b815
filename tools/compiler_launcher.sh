#!/bin/sh
# Usage: tools/compiler_launcher.sh CCACHE COMPILER ARGUMENT...
# Compiles through ccache. The former precompiled header goes before a new one is made: ccache would
# take it for what the header holds, and hand out an old one when the header has changed.
ccache=$1
shift
header=no
output=""
previous=""
for argument in "$@"; do
    [ "$argument" = c++-header ] && header=yes
    [ "$previous" = -o ] && output=$argument
    previous=$argument
done
[ "$header" = no ] || [ -z "$output" ] || rm -f "$output"
# The sloppiness is what ccache asks for where headers are precompiled.
CCACHE_SLOPPINESS=pch_defines,time_macros exec "$ccache" "$@"
