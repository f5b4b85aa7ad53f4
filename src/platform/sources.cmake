list(APPEND CORE_SOURCES
    src/platform/keystate.cpp
)
list(APPEND UI_SOURCES
    src/platform/gui_hooks.cpp
    src/platform/eventkeystate.cpp
)
