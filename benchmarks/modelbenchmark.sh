#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
# usage: modelbenchmark.sh MODELBENCHMARK DESKTOPBENCHMARK
# Measures the models for views on 100,000 messages in one channel, and in 100 channels; and the window of
# tidel-desktop on the latter.
set -euo pipefail
program=$1 window=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# tidel sets this too, so all programs run under the same conditions.
export TZ=${TZ-:/etc/localtime}

for channels in 1 100; do
    "$program" fill "$work/$channels" "$channels"
    echo "100,000 messages, number of channels: $channels"
    "$program" show "$work/$channels"
done
echo "tidel-desktop on these"
XDG_DATA_HOME=$work/100 QT_QPA_PLATFORM=offscreen "$window"
