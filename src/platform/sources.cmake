list(APPEND UI_SOURCES
    src/platform/gui_hooks.cpp
    src/platform/forms.cpp
    src/platform/keystate_min.cpp
    src/platform/msgbox_gui.cpp
    src/platform/instance_guard.cpp
)
