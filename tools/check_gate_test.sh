#!/bin/sh
# The check of the gate must fail for each way past it and pass without them.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$scratch/desktop/wiring" "$scratch/desktop/widgets" "$scratch/desktop/system"

try() { # expected result, file, its text
    printf '%b\n' "$3" >"$scratch/desktop/$2"
    result=passes
    "$here/check_gate.sh" "$scratch" >/dev/null || result=fails
    rm "$scratch/desktop/$2"
    [ "$result" = "$1" ] || {
        echo "$2 with $3: the check $result"
        exit 1
    }
}
try passes wiring/Application.cpp 'frame.onCommand(gate.listener([this] { run(); }));'
try passes wiring/Application.cpp 'QObject::connect(skin, &SkinView::loaded, skin, [this] { layOut(); });'
try passes wiring/Application.cpp 'QObject::connect(\n    skin, &SkinView::loaded, skin, [this] { layOut(); });'
try passes wiring/Application.cpp '// A comment that names connect(x, y).'
try passes wiring/Application.cpp 'disconnect(a); connectPlayer();'
try fails wiring/Application.cpp 'QObject::connect(skin, &SkinView::clicked, skin, [this] { run(); });'
try fails wiring/Application.cpp 'QObject::connect(\n    skin, &SkinView::clicked, skin, [this] { run(); });'
try fails wiring/Application.cpp 'connect(timer, &QTimer::timeout, this, &Application::run);'
try fails wiring/Application.cpp 'frame.installEventFilter(this);'
try fails wiring/Application.h 'void keyPressEvent(QKeyEvent* event) override;'
try fails wiring/Application.cpp 'menu.addAction(text, [this] { run(); });'
try fails wiring/Application.cpp 'QTimer::singleShot(10, [this] { run(); });'
try fails wiring/Application.cpp 'QMetaObject::invokeMethod(qApp, [this] { run(); });'
try passes widgets/SkinView.h 'void onClick(GatedListener<std::string> listener);'
try fails widgets/SkinView.h 'void onClick(std::function<void(const std::string&)> listener);'
try fails system/Knob.h 'using Turned = std::function<void(int)>;'
try passes system/QtTimer.h 'void onTick(std::function<void()> tick) override;'
try passes system/Host.h '#include "ports/Timer.h"'
try fails widgets/SkinView.cpp '#include "playback/frmCurve.h"'
