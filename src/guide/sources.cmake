# Files of src/guide: the machining set-up wizard, the subsequent-part choice and the
# in-run prompts (widgets).
list(APPEND UI_SOURCES
    src/guide/frm_mill.h
    src/guide/frm_mill.cpp
    src/guide/method.cpp
    src/guide/method_panel.h
    src/guide/setmill.h
    src/guide/setmill.cpp
    src/guide/setmill_pages.h
    src/guide/setmill_pages.cpp
    src/guide/setmill_panel.h
    src/guide/setmill_panel.cpp
)
