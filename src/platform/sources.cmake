list(APPEND CORE_SOURCES
    src/platform/clock.cpp
    src/platform/serial_port.h
    src/platform/serial_port.cpp
    src/platform/controller_emulator.cpp
    src/platform/emulator_port.h
    src/platform/emulator_port.cpp
    src/platform/keystate.cpp
)
list(APPEND UI_SOURCES
    src/platform/gui_hooks.cpp
    src/platform/qt_serial_port.h
    src/platform/qt_serial_port.cpp
    src/platform/eventkeystate.cpp
    src/platform/forms.cpp
    src/platform/msgbox_gui.cpp
    src/platform/instance_guard.cpp
)
