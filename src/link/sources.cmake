# The controller link: protocol, spindle and door, the machining stream (Qt Core); the alarm
# window and the machining screen (widgets).
list(APPEND CORE_SOURCES
    src/link/link_screen.cpp
    src/link/comms.cpp
    src/link/spindle.cpp
    src/link/stream.cpp

    src/link/keycontrol.cpp
)
list(APPEND UI_SOURCES
    src/link/frm_skull.h
    src/link/frm_skull.cpp
    src/link/machining_screen.h
    src/link/machining_screen.cpp

    src/link/keyboard_panel.h
    src/link/keyboard_panel.cpp
    src/link/keyboard_art.cpp
)
# The rate test: its arithmetic (Qt Core) and its window.
list(APPEND CORE_SOURCES
    src/link/rate_test.cpp
)
list(APPEND UI_SOURCES
    src/link/frm_rate_test.h
    src/link/frm_rate_test.cpp
)
