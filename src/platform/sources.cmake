list(APPEND UI_SOURCES
    src/platform/gui_hooks.cpp
)
