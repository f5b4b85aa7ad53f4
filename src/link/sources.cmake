# The controller link: protocol, spindle and door (Qt Core), the alarm window (widgets).
list(APPEND CORE_SOURCES
    src/link/link_screen.cpp
    src/link/comms.cpp
    src/link/spindle.cpp
    src/link/keycontrol.cpp
)
list(APPEND UI_SOURCES
    src/link/frm_skull.h
    src/link/frm_skull.cpp
    src/link/keyboard_panel.h
    src/link/keyboard_panel.cpp
    src/link/keyboard_art.cpp
)
