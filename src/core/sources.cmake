list(APPEND CORE_SOURCES
    src/core/vb.cpp
    src/core/vb_rnd.cpp
    src/core/hooks.cpp
    src/core/logger.cpp
    src/core/msgbox.cpp
    src/core/store.cpp
    src/core/state.cpp
    src/core/filenum.cpp
)
# The start, the stop and the main window (widgets).
list(APPEND UI_SOURCES
    src/core/artwork.cpp
    src/core/busy.cpp
    src/core/f1mill.cpp
    src/core/frm_about.cpp
    src/core/frm_main.cpp
    src/core/frm_main_modes.cpp
    src/core/frm_splash.cpp
    src/core/help_calc.cpp
    src/core/main_menu_panel.cpp
    src/core/main_panels.cpp
    src/core/window_hook.cpp
)
